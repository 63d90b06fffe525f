#include "shell/command_request.h"

#include <QStringList>

CCommandRequest g_CommandRequest;

namespace
{
constexpr int kShortest = 7;
constexpr int kFields = 5;
constexpr double kMinutesPerDay = 1440.0;
constexpr double kNoDateMinutes = 1367997120.0; // NO_DATE

// Blanks, a sign, digits, and an end at anything else; beyond 32 bits it wraps, so that an item
// identifier may be written signed or unsigned.
qint32 LeadingNumber(const QString& text)
{
    qsizetype at = 0;
    while (at < text.size() && text[at].isSpace())
        ++at;
    const bool negative = at < text.size() && text[at] == u'-';
    if (at < text.size() && (text[at] == u'-' || text[at] == u'+'))
        ++at;
    quint32 value = 0;
    for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at)
        value = value * 10 + quint32(text[at].unicode() - u'0');
    return qint32(negative ? 0u - value : value);
}

DATE DateOfToken(const QString& token)
{
    double minutes = token.isEmpty() ? 0.0 : double(LeadingNumber(token));
    if (minutes == 0.0)
        minutes = kNoDateMinutes;
    return minutes / kMinutesPerDay;
}

qint32 ViewOfWord(const QString& word)
{
    static const QStringList words = {QStringLiteral("DAILY"), QStringLiteral("LIST"), QStringLiteral("GRID"),
                                      QStringLiteral("MONTHLY"), QStringLiteral("TASKS")};
    return qint32(words.indexOf(word));
}

// Writes the kind only when the word is one of the two.
void SetKindByWord(CCommandRequest& request, const QString& word, RequestKind appointment, RequestKind task)
{
    if (word == QLatin1String("APPT"))
        request.Kind = appointment;
    else if (word == QLatin1String("TASK"))
        request.Kind = task;
}

void ParseItem(CCommandRequest& request, const QStringList& token, RequestKind appointment, RequestKind task)
{
    request.ItemId = token[1].isNull() ? kNoItem : quint32(LeadingNumber(token[1]));
    request.Date1 = DateOfToken(token[2]);
    if (request.ItemId != kNoItem)
        SetKindByWord(request, token[3], appointment, task);
}

void ParseCreate(CCommandRequest& request, const QStringList& token)
{
    request.Date1 = DateOfToken(token[1]);
    request.Date2 = DateOfToken(token[2]);
    request.Category = token[4];
    SetKindByWord(request, token[3], RequestKind::CreateAppointment, RequestKind::CreateTask);
}

constexpr int kFirstYear = 1900, kLastYear = 4500;

bool IsShowable(DATE date)
{
    static const int first = DayNumberOf(kFirstYear, 1, 1), last = DayNumberOf(kLastYear, 12, 31);
    return date != NO_DATE && date >= first && date < last + 1;
}
} // namespace

bool CCommandRequest::HasDate() const
{
    return IsShowable(Date1);
}

bool CCommandRequest::HasEnd() const
{
    return IsShowable(Date2);
}

void CCommandRequest::Clear()
{
    *this = CCommandRequest{.RawText = RawText};
}

bool CCommandRequest::IsSingleItem() const
{
    return Kind != RequestKind::None && Kind != RequestKind::OpenView && Kind != RequestKind::ReportDensity &&
           Kind != RequestKind::SoftKeyDialog;
}

void ParseCommandLine(CCommandRequest& request, const QString& text)
{
    if (text.isNull())
        return;
    request.RawText = text;
    if (text.size() < kShortest)
        return;
    // Neighbouring separators are one, so that an empty field cannot be written.
    QStringList token = text.split(u'|', Qt::SkipEmptyParts).mid(0, kFields);
    token.resize(kFields);
    const QString& action = token[0];
    if (action == QLatin1String("OPEN")) {
        request.Kind = RequestKind::OpenView;
        request.View = ViewOfWord(token[1]);
        request.Date1 = DateOfToken(token[2]);
    } else if (action == QLatin1String("VIEW")) {
        ParseItem(request, token, RequestKind::ViewAppointment, RequestKind::ViewTask);
    } else if (action == QLatin1String("EDIT")) {
        ParseItem(request, token, RequestKind::EditAppointment, RequestKind::EditTask);
    } else if (action == QLatin1String("CREATE")) {
        ParseCreate(request, token);
    } else if (action == QLatin1String("REPORTLOGPIXELS")) {
        request.Kind = RequestKind::ReportDensity;
    } else if (action == QLatin1String("SHOWSOFTKEYDIALOG")) {
        request.Kind = RequestKind::SoftKeyDialog;
    }
}
