// tessera-pim agenda: what a range of days holds, as the day cache has it.
#include "tools/tessera_pim/agenda_json.h"
#include "tools/tessera_pim/commands.h"

#include "pim/pim_store.h"
#include "platform/locale.h"
#include "records/property_numbers.h"
#include "settings/settings.h"

#include <algorithm>
#include <cstdio>

namespace
{
constexpr int kMaxDaysAtOnce = 70; // what the cache holds

int LastDayOfMonth(int day)
{
    SystemTime first, last;
    GetMonthBounds(SystemTimeOf(day), &first, &last);
    return DayNumber(DateOf(last));
}

// A text on one line of a terminal, whatever it holds.
QByteArray OneLine(const QString& text)
{
    QString line = text;
    for (QChar& c : line) {
        if (c.category() == QChar::Other_Control)
            c = u' ';
    }
    return line.toLocal8Bit();
}

QByteArray TimeText(DATE date)
{
    const SystemTime time = SystemTimeOf(date);
    char text[16];
    std::snprintf(text, sizeof text, "%02u:%02u", unsigned(time.wHour), unsigned(time.wMinute));
    return text;
}

QByteArray TimesOnDay(const CAppointment& item, int day)
{
    if (item.AllDay)
        return "all day";
    const QByteArray open = "...  ";
    const bool startsHere = DayNumber(item.Start) == day;
    const bool endsHere = DayNumber(item.End) == day || item.EndsPreviousDay ||
                          (DayNumber(item.End) == day + 1 && item.End == std::trunc(item.End));
    return (startsHere ? TimeText(item.Start) : open) + "-" + (endsHere ? TimeText(item.End) : open);
}

bool PrintDay(const CDayItems& day)
{
    if (day.Appointments.empty() && day.Tasks.empty())
        return true;
    const SystemTime date = SystemTimeOf(day.Day);
    std::printf("%04d-%02d-%02d %s\n", date.wYear, date.wMonth, date.wDay,
                Locale().DayName(date.wDayOfWeek, false).toLocal8Bit().constData());
    for (const auto& item : day.Appointments) {
        std::printf("  %-11s  %s", TimesOnDay(*item, day.Day).constData(),
                    OneLine(item->Subject).constData());
        if (!item->Location.isEmpty())
            std::printf(" (%s)", OneLine(item->Location).constData());
        std::printf("\n");
    }
    for (const auto& task : day.Tasks)
        std::printf("  %-11s  %s\n", task->Complete ? "done" : "to do", OneLine(task->Subject).constData());
    return std::fflush(stdout) == 0;
}

class CAgenda
{
public:
    CAgenda(const std::shared_ptr<CPropertyVolume>& volume, bool asJson)
        : m_asJson(asJson), m_json(m_store.Categories())
    {
        m_store.Initialize(volume);
        m_store.KeepUids(asJson);
    }
    bool Print(int first, int last);
    bool Finish() { return m_json.Flush(); }

private:
    bool PrintDay(const CDayItems& day);

    CPimStore m_store;
    bool m_asJson;
    CAgendaJson m_json;
};

bool CAgenda::PrintDay(const CDayItems& day)
{
    if (!m_asJson)
        return ::PrintDay(day);
    m_json.BeginDay(day.Day);
    for (const auto& item : day.Appointments) {
        m_json.AddAppointment(*item, m_store.GetUid(item->RecordOid));
        if (m_json.IsFull() && !m_json.Flush())
            return false;
    }
    for (const auto& task : day.Tasks) {
        m_json.AddTask(*task, m_store.GetUid(task->RecordOid));
        if (m_json.IsFull() && !m_json.Flush())
            return false;
    }
    return true;
}

bool CAgenda::Print(int first, int last)
{
    while (first <= last) {
        const int until = last - first < kMaxDaysAtOnce ? last : LastDayOfMonth(first);
        m_store.LoadRange(first, first, until);
        for (; first <= until; ++first) {
            const CDayItems* day = m_store.FindDay(first);
            if (day && !PrintDay(*day))
                return false;
        }
    }
    return true;
}
} // namespace

int RunAgenda(const CAgendaOptions& options)
{
    std::shared_ptr<CPropertyVolume> volume;
    const CStatus status =
        CPropertyVolume::Open(options.Volume, PimSchema(), CPropertyVolume::Mode::ReadOnly, volume);
    if (!status) {
        PrintError(status.Text());
        return kExitNothing;
    }
    g_Settings.Load(false);
    CAgenda agenda(volume, options.Json);
    const bool printed = agenda.Print(options.FirstDay, options.LastDay) && agenda.Finish();
    if (!printed) {
        PrintError(QStringLiteral("The output cannot be written."));
        return kExitNothing;
    }
    const CStatus fault = volume->TakeReadFault();
    if (!fault) {
        PrintError(fault.Text());
        return kExitLeftOut;
    }
    return kExitDone;
}
