#pragma once

class QAbstractScrollArea;

/** Lets a finger drag the contents of a scroll area or a view. A movement below Tap::distance() reaches the
 * contents as a tap. */
void letFingerScroll(QAbstractScrollArea* pArea);
