#pragma once

#include <QLabel>
#include <QStringList>

/**
 * A label for texts of any length in a place of fixed size. The text is plain, never markup. It wraps between
 * words, or inside a word that is wider than the label, and ends in "…" if the label is too low for it.
 * text() returns all of it.
 */
class ElidedLabel : public QLabel
{
public:
    /** Creates an empty label. */
    explicit ElidedLabel(QWidget* pParent = nullptr);

    /** Returns the height of one line; the width is 0. */
    QSize sizeHint() const override;

    /** Returns sizeHint(). */
    QSize minimumSizeHint() const override;

    /** Returns the height in pixels of the whole text, wrapped at nWidth pixels. */
    int heightForWidth(int nWidth) const override;

protected:
    /** Paints the frame and the lines that fit. */
    void paintEvent(QPaintEvent* pEvent) override;

private:
    QStringList wrappedLines(int nWidth, int nMaxLines) const;
};
