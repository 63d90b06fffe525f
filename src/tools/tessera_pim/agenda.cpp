// tessera-pim agenda: what a range of days holds, as the day cache has it.
#include "tools/tessera_pim/agenda_json.h"
#include "tools/tessera_pim/commands.h"
#include "tools/tessera_pim/item_lines.h"

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

bool PrintDay(const CDayItems& day)
{
    if (day.Appointments.empty() && day.Tasks.empty())
        return true;
    std::printf("%s %s\n", IsoDay(day.Day).constData(),
                Locale().DayName(DayOfWeekOf(day.Day), false).toLocal8Bit().constData());
    for (const auto& item : day.Appointments)
        std::printf("  %s\n", LineOf(*item, day.Day).constData());
    for (const auto& task : day.Tasks)
        std::printf("  %s\n", LineOf(*task).constData());
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
