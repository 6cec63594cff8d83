#pragma once

#include <QLabel>

using ElidedLabel = QLabel; // the forms of the overlays ask for the panel's own
