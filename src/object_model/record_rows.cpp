#include "object_model/record_rows.h"

void CRecordRows::Clear()
{
    m_put.clear();
    m_remove.clear();
}

void CRecordRows::Text(CEPROPID id, const QString& text)
{
    if (text.isEmpty())
        m_remove.push_back(id);
    else
        m_put.emplace_back(id, text);
}

void CRecordRows::Bytes(CEPROPID id, const QByteArray& bytes)
{
    if (bytes.isEmpty())
        m_remove.push_back(id);
    else
        m_put.emplace_back(id, bytes);
}

CStatus CRecordRows::Write(CPropertyVolume& volume, const QString& database, CEOID oid, CEOID* written,
                           quint32* recordNumber)
{
    if (oid == 0)
        m_remove.clear();
    return volume.WriteRecord(database, oid, m_put, m_remove, written, recordNumber);
}

// ---- what an imported file said

CForeignData ReadForeign(std::span<const CEPROPVAL> rows)
{
    enum {
        kUid,
        kSequence,
        kEqualsIndex,
        kOccurrenceId,
        kOrganizer,
        kContentHash,
        kLastChange,
        kText,
        kRule
    };
    const auto number = [&rows](size_t row) { return rows[row].Found() ? rows[row].Number : 0; };
    CForeignData foreign;
    foreign.Uid = rows[kUid].Text;
    foreign.Sequence = quint32(number(kSequence));
    foreign.EqualsIndex = quint32(number(kEqualsIndex));
    foreign.OccurrenceId = rows[kOccurrenceId].Text;
    foreign.Organizer = rows[kOrganizer].Text;
    foreign.ContentHash = rows[kContentHash].Bytes;
    foreign.LastChange = number(kLastChange);
    foreign.Text = rows[kText].Text;
    foreign.SourceRule = rows[kRule].Text;
    return foreign;
}

void PutForeign(CRecordRows& rows, const CForeignData& foreign)
{
    rows.Text(Prop::Uid, foreign.Uid);
    rows.Text(Prop::OccurrenceId, foreign.OccurrenceId);
    rows.Text(Prop::Organizer, foreign.Organizer);
    rows.Text(Prop::ForeignText, foreign.Text);
    rows.Text(Prop::SourceRule, foreign.SourceRule);
    rows.Bytes(Prop::ContentHash, foreign.ContentHash);
    const std::pair<CEPROPID, qint64> numbers[] = {{Prop::Sequence, foreign.Sequence},
                                                   {Prop::EqualsIndex, foreign.EqualsIndex},
                                                   {Prop::LastChange, foreign.LastChange}};
    for (const auto& [id, number] : numbers) {
        if (number != 0)
            rows.Number(id, number);
        else
            rows.Remove(id);
    }
}

CForeignData ForeignOfCopy(const CForeignData& original)
{
    CForeignData foreign;
    foreign.Organizer = original.Organizer;
    foreign.Text = original.Text;
    if (original.OccurrenceId.isEmpty()) // else the rule is that of several records
        foreign.SourceRule = original.SourceRule;
    foreign.LastChange = Clock().GetUtcTime();
    return foreign;
}
