// Rows to write and to remove, and the rows that every item of the model has alike.
#pragma once
#include "object_model/object_model.h"
#include "records/property_numbers.h"

#include <algorithm>
#include <array>

// A buffer that is used again.
class CRecordRows
{
public:
    void Clear();
    void Number(CEPROPID id, qint64 number) { m_put.emplace_back(id, number); }
    void Text(CEPROPID id, const QString& text);      // empty: removed
    void Bytes(CEPROPID id, const QByteArray& bytes); // empty: removed
    void Remove(CEPROPID id) { m_remove.push_back(id); }
    CStatus Write(CPropertyVolume& volume, const QString& database, CEOID oid, CEOID* written,
                  quint32* recordNumber);

private:
    std::vector<CEPROPVAL> m_put;
    std::vector<CEPROPID> m_remove;
};

// What an imported file said: read from rows in the order of these numbers.
constexpr CEPROPID kForeignRows[] = {Prop::Uid,          Prop::Sequence,    Prop::EqualsIndex,
                                     Prop::OccurrenceId, Prop::Organizer,   Prop::ContentHash,
                                     Prop::LastChange,   Prop::ForeignText, Prop::SourceRule};
template <size_t N> constexpr auto WithForeignRows(const CEPROPID (&own)[N])
{
    std::array<CEPROPID, N + std::size(kForeignRows)> all{};
    std::copy(std::begin(own), std::end(own), all.begin());
    std::copy(std::begin(kForeignRows), std::end(kForeignRows), all.begin() + N);
    return all;
}
CForeignData ReadForeign(std::span<const CEPROPVAL> rows);
void PutForeign(CRecordRows& rows, const CForeignData& foreign);
// Of a copy: without what identifies the original.
CForeignData ForeignOfCopy(const CForeignData& original);
