// Tasks of a file into the volume.
#include "interchange/calendar_importer.h"
#include "interchange/content_hash.h"
#include "interchange/import_limits.h"

// Identity is that of an event. A task is one record at its present date, whatever its rule.
void CCalendarImporter::TakeTask(CImportedEvent& event, const std::string& method)
{
    if (event.RecurrenceId) {
        m_report.LeftOut(event.Line, QStringLiteral("a changed occurrence of a task"));
        return;
    }
    const QString& uid = event.Uid;
    const quint64 hash =
        HashOf({reinterpret_cast<const char*>(uid.constData()), size_t(uid.size()) * sizeof(QChar)});
    const auto [place, isFirst] = m_tasksSeen.try_emplace(hash);
    Seen& seen = place->second;
    if (!isFirst && event.Sequence < seen.Sequence) {
        ++m_report.Unchanged;
        return;
    }
    if (isFirst || event.Sequence > seen.Sequence)
        seen = {event.Sequence, 0};
    if (seen.Count >= ImportLimit::EqualUids) {
        m_report.LeftOut(event.Line, QStringLiteral("one more task of the same identifier"));
        return;
    }
    const quint32 index = seen.Count++;
    std::vector<CForeignKey> keys;
    if (m_volumeHasUids || !isFirst || method == "CANCEL")
        keys = m_app.FindTasksByUid(uid);
    const Known known = Sort(keys, event, index);
    const bool same =
        known.Lead && known.LeadIsSame && known.Lead->ContentHash == CItemWriter::HashBytes(event.Hash);
    if (known.Superseded || same) {
        ++m_report.Unchanged;
        return;
    }
    if (method == "CANCEL" && !known.Any) {
        m_report.LeftOut(event.Line, QStringLiteral("it cancels an item that is not there"));
        return;
    }
    event.Cancelled = event.Cancelled || method == "CANCEL";
    ++m_inBatch;
    if (const CStatus status = WriteTask(event, known, index); !status)
        Fail(status, event.Line);
    else
        ++(known.Lead ? m_report.Updated : m_report.Created);
}

CStatus CCalendarImporter::WriteTask(const CImportedEvent& event, const Known& known, quint32 index)
{
    CSeriesPlan plan;
    if (event.Dates.Rule) {
        CImportReport unheard; // of occurrences, which a task has none of
        plan = CSeriesBuilder(m_currentYear, &m_ruleBudget, unheard).Build(event.Dates);
    }
    const bool recurs = plan.Records.size() == 1 && plan.Records[0].IsSeries;
    if (event.Dates.Rule && !recurs)
        m_report.Note(
            event.Line,
            QStringLiteral("the task's rule is kept, but no pattern holds it: %1").arg(event.RuleText));
    for (const CForeignKey* other : known.Others) {
        std::unique_ptr<ITask> item;
        CStatus status = m_app.GetTaskFromOid(other->ItemId, item);
        if (status)
            status = item->Delete();
        if (!status && status.Kind() != StatusKind::NotFound)
            return status;
    }
    std::unique_ptr<ITask> reused;
    if (known.Lead && !m_app.GetTaskFromOid(known.Lead->ItemId, reused))
        reused.reset();
    const bool keepsRule = event.Dates.Rule && (!recurs || plan.KeepsRule);
    return m_writer.WriteTask(event, recurs ? &plan.Records[0].Pattern : nullptr, index,
                              !recurs || plan.KeepsExcluded ? event.Kept + event.ExcludedText : event.Kept,
                              keepsRule ? event.RuleText : QString(), reused.get());
}
