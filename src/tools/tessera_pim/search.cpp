// tessera-pim search: the items whose subject fits, as the search view finds them.
#include "tools/tessera_pim/agenda_json.h"
#include "tools/tessera_pim/commands.h"
#include "tools/tessera_pim/item_lines.h"

#include "pim/item_search.h"
#include "pim/pim_store.h"
#include "records/property_numbers.h"
#include "settings/settings.h"

#include <cstdio>

namespace
{
class CPrintMatches : public ISearchSink
{
public:
    CPrintMatches(CPimStore& store, bool asJson) : m_store(store), m_asJson(asJson), m_json(store.Categories()) {}
    bool ShouldStop() override { return !m_good; }
    void OnMatch(const CPimItem& item) override
    {
        const auto* task = item.GetKind() == kKindTask ? static_cast<const CTask*>(&item) : nullptr;
        const auto* appointment = task ? nullptr : static_cast<const CAppointment*>(&item);
        const DATE day = ResultDay(item);
        if (m_asJson) {
            m_json.BeginDay(day);
            const QString uid = m_store.GetUid(item.RecordOid);
            if (task)
                m_json.AddTask(*task, uid);
            else
                m_json.AddAppointment(*appointment, uid);
            return;
        }
        const QByteArray line = task ? LineOf(*task) : LineOf(*appointment, DayNumber(day));
        std::printf("%-10s  %s\n", day == NO_DATE ? "" : IsoDay(DayNumber(day)).constData(), line.constData());
    }
    void OnProgress() override { m_good = Finish(); } // what was found so far is there to read
    bool Finish() { return m_good && (m_asJson ? m_json.Flush() : std::fflush(stdout) == 0); }

private:
    CPimStore& m_store;
    bool m_asJson;
    bool m_good = true;
    CAgendaJson m_json;
};
} // namespace

int RunSearch(const CSearchOptions& options)
{
    std::shared_ptr<CPropertyVolume> volume;
    const CStatus status =
        CPropertyVolume::Open(options.Volume, PimSchema(), CPropertyVolume::Mode::ReadOnly, volume);
    if (!status) {
        PrintError(status.Text());
        return kExitNothing;
    }
    g_Settings.Load(false);
    CPimStore store;
    store.Initialize(volume);
    CSearchRequest request;
    request.Text = options.Text;
    request.Contains = !options.StartsWith;
    request.SearchTasks = options.Tasks;
    request.SearchAppointments = options.Appointments;
    request.Limit = options.Limit;
    CPrintMatches matches(store, options.Json);
    store.Search(request, &matches);
    if (!matches.Finish()) {
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
