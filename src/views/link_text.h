// A block of text in which telephone numbers, mail and web addresses show as links.
// Units: surface pixels; rectangles are relative to the block's top left corner.
// The text is laid out once, when it is set.
#pragma once
#include "util/color.h"
#include "util/text_links.h"

#include <QFont>
#include <QRect>
#include <QTextLayout>
#include <vector>

class QPainter;

class CLinkText
{
public:
    // `group` is the block's number in the links' list; below 0 none are looked for.
    void Set(const QString& text, const QFont& font, int width, int group);
    int Height() const { return m_height; } // 0 for an empty text
    int Width() const { return m_width; }   // of the longest line
    QString Text() const;                   // its lines end in LF
    const CTextLinkList& Links() const { return m_links; }
    // The parts of a link, one for each line that it runs over.
    std::vector<QRect> RectsOf(const CTextLink& link) const;
    // Draws the lines that the visible part of the surface shows, and may draw more. `focused` is the
    // link that the keyboard stands on, or null.
    void Paint(QPainter& dc, QPoint at, const QRect& visible, COLORREF color, const CTextLink* focused) const;

private:
    template <typename EndOf> int FirstLine(EndOf endOf, qreal behind) const;

    QTextLayout m_layout;
    CTextLinkList m_links;
    int m_height = 0, m_width = 0;
};
