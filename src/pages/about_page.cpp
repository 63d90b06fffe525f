#include "pages/about_page.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "drawing/text.h"
#include "forms/field_row.h"
#include "forms/form_parts.h"
#include "forms/menu_bars.h"
#include "touch/virtual_keys.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QDate>
#include <QImage>
#include <QLocale>
#include <QPainter>

namespace
{
constexpr int kMargin = 10; // design pixels
constexpr int kFontText = 0, kFontProduct = 1;
constexpr unsigned kFlags = kTextCentre | kTextWordBreak | kTextNoPrefix;

// As the compiler tells it: "Mar  9 2026".
QString BuildDate()
{
    const QDate date =
        QLocale::c().toDate(QString::fromLatin1(__DATE__).simplified(), QStringLiteral("MMM d yyyy"));
    return date.isValid() ? FieldDateText(DayNumberOf(date.year(), date.month(), date.day()))
                          : QString::fromLatin1(__DATE__);
}
} // namespace

CAboutPage::CAboutPage()
    : CFormDialog(GetString(StrAbout)),
      m_lines{GetString(StrAboutProduct), GetString(StrAboutBuildDate) + GetString(StrAboutBuild),
              FillText(GetString(StrAboutVersion), {QStringLiteral(TESSERA_VERSION), BuildDate()})}
{
    setAccessibleDescription(m_lines.join(u'\n'));
}

int CAboutPage::GetMenuBarId() const
{
    return kMenuBarOk;
}

int CAboutPage::LineHeight(int line, int width) const
{
    QImage scratch(1, 1, QImage::Format_RGB32);
    QPainter dc(&scratch);
    dc.setFont(g_ImageStore.Font(line == 0 ? kFontProduct : kFontText));
    QRect rect(0, 0, width - 2 * D(kMargin), 0);
    return DrawText(dc, m_lines[line], rect, kFlags | kTextCalcRect);
}

int CAboutPage::ContentHeight(int width)
{
    int height = 3 * D(kMargin) + g_ImageStore.Image(PictureSettingsAbout).Height();
    for (int line = 0; line < m_lines.size(); ++line)
        height += LineHeight(line, width) + D(kMargin) / 2;
    return height;
}

void CAboutPage::PaintContent(QPainter& dc, const QRect& client)
{
    const CAlphaImage& picture = g_ImageStore.Image(PictureSettingsAbout);
    int y = client.y() + D(kMargin);
    DrawImage(picture, dc, client.x() + (client.width() - picture.Width()) / 2, y);
    y += picture.Height() + D(kMargin);
    dc.setPen(ToQColor(kFormInk));
    for (int line = 0; line < m_lines.size(); ++line) {
        dc.setFont(g_ImageStore.Font(line == 0 ? kFontProduct : kFontText));
        const int height = LineHeight(line, client.width());
        QRect rect(client.x() + D(kMargin), y, client.width() - 2 * D(kMargin), height);
        DrawText(dc, m_lines[line], rect, kFlags);
        y += height + D(kMargin) / 2;
    }
}

void CAboutPage::OnKey(int key)
{
    if (key == kKeyReturn)
        End(kDone);
}
