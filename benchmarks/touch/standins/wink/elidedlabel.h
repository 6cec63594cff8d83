#pragma once

#include <QLabel>

// Stands in for src/wink/elidedlabel.h, which the forms of the overlays include: in the bare program their
// labels are plain ones.
using ElidedLabel = QLabel;
