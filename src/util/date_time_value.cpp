#include "platform/locale.h"
#include "util/date_time.h"

namespace
{
constexpr double kMaxSpanDays = 3615897.0;
}

CDateTimeSpan::CDateTimeSpan(double days) : m_span(days), m_status(std::fabs(days) <= kMaxSpanDays ? 0 : 1) {}

CDateTime::CDateTime(int year, int month, int day, int hour, int minute, int second) : m_status(1)
{
    for (int part : {year, month, day, hour, minute, second})
        if (part < 0 || part > 9999)
            return;
    SystemTime asked;
    asked.wYear = quint16(year);
    asked.wMonth = quint16(month);
    asked.wDay = quint16(day);
    asked.wHour = quint16(hour);
    asked.wMinute = quint16(minute);
    asked.wSecond = quint16(second);
    DATE date = 0;
    SystemTime back;
    if (!SystemTimeToVariantTime(asked, &date) || !VariantTimeToSystemTime(date, &back))
        return;
    back.wDayOfWeek = 0;
    back.wMilliseconds = 0;
    if (!(back == asked))
        return;
    m_date = date;
    m_status = 0;
}

CDateTime CDateTime::FromFileTime(FileTime utc)
{
    FileTime local = 0;
    SystemTime time;
    if (FileTimeToLocalFileTime(utc, &local) && FileTimeToSystemTime(local, &time))
        return CDateTime(time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond);
    CDateTime invalid;
    invalid.m_status = 1;
    return invalid;
}

int CDateTime::GetYear() const
{
    SystemTime time;
    return IsValid() && VariantTimeToSystemTime(m_date, &time) ? time.wYear : -1;
}

int CDateTime::GetDayOfWeek() const
{
    SystemTime time;
    return IsValid() && VariantTimeToSystemTime(m_date, &time) ? time.wDayOfWeek + 1 : -1;
}

CDateTime& CDateTime::operator+=(const CDateTimeSpan& span)
{
    if (span.m_status != 0)
        m_status = 1;
    m_date = DateOfSigned(SignedOf(m_date) + span.m_span);
    return *this;
}

CDateTime& CDateTime::operator-=(const CDateTimeSpan& span)
{
    if (span.m_status != 0)
        m_status = 1;
    m_date = DateOfSigned(SignedOf(m_date) - span.m_span);
    return *this;
}

QString CDateTime::Format(const QString& picture) const
{
    SystemTime time;
    if (!IsValid() || !VariantTimeToSystemTime(m_date, &time))
        return QStringLiteral("Invalid DateTime");
    return GetDateFormat(DateFlag::Picture, time, picture);
}
