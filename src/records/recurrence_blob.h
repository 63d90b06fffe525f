// The two stored blobs of a series, both ways. Byte layouts stand atop the sources.
// Errors: reading never looks past the end; a malformed blob yields what was read so far.
#pragma once
#include "records/recurrence_pattern.h"

#include <span>

// Result: bytes used; -1 if the two counts disagree (the deletions stand); 0 for an unknown type.
int ParseRecurrence(CRecurrencePattern& pattern, std::span<const uchar> blob);
void ParseRecurrenceZone(CRecurrencePattern& pattern, std::span<const uchar> blob);
inline std::span<const uchar> BytesOf(const QByteArray& blob)
{
    return {reinterpret_cast<const uchar*>(blob.constData()), size_t(blob.size())};
}

// The note of a changed occurrence, in a form of our own; takes the place of a foreign one.
void SetOccurrenceNote(CRecurrenceException& exception, const QString& note);
// The series' own note holds again.
void ClearOccurrenceNote(CRecurrenceException& exception);

// Version 5 layout. Exceptions that are not deleted stand in the deleted list too.
QByteArray WriteRecurrence(const CRecurrencePattern& pattern);
QByteArray WriteRecurrenceZone(const CRecurrencePattern& pattern);
