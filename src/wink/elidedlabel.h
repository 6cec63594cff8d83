#pragma once

#include <QLabel>
#include <QStringList>

/**
 * A label for texts of any length in a place of fixed size. The text is plain, never markup; it is wrapped,
 * inside words where it must be, and ends in "…" where the height is not enough. text() stays whole.
 */
class ElidedLabel : public QLabel
{
public:
    /** Makes an empty label for plain text. */
    explicit ElidedLabel(QWidget* pParent = nullptr);

    /** Returns the size of one line, without a demand for width. */
    QSize sizeHint() const override;

    /** Returns sizeHint(). */
    QSize minimumSizeHint() const override;

    /** Returns the height in pixels of all lines that the text takes in nWidth pixels. */
    int heightForWidth(int nWidth) const override;

protected:
    /** Paints the frame and the lines that fit. */
    void paintEvent(QPaintEvent* pEvent) override;

private:
    QStringList wrappedLines(int nWidth, int nMaxLines) const;
};
