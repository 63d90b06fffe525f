// Layout, little-endian: for each attendee its name, then its address; a text is a 16-bit count
// of characters and that many UTF-16 units. Nothing stands before or between. Texts longer than
// 65535 characters are cut; a list is cut at kMaxAttendees.
#include "records/attendees_blob.h"

#include <QtEndian>
#include <algorithm>

namespace
{
constexpr size_t kMaxAttendees = 10000;
constexpr qsizetype kMaxText = 65535;

void AppendText(QByteArray& blob, const QString& text)
{
    const qsizetype length = std::min(text.size(), kMaxText);
    const qsizetype at = blob.size();
    blob.resize(at + 2 + length * 2);
    qToLittleEndian(quint16(length), blob.data() + at);
    for (qsizetype i = 0; i < length; ++i)
        qToLittleEndian(text[i].unicode(), blob.data() + at + 2 + i * 2);
}

bool ReadText(const QByteArray& blob, qsizetype& at, QString& text)
{
    if (blob.size() - at < 2)
        return false;
    const qsizetype length = qFromLittleEndian<quint16>(blob.constData() + at);
    if (blob.size() - at - 2 < length * 2)
        return false;
    text.resize(length);
    for (qsizetype i = 0; i < length; ++i)
        text[i] = QChar(qFromLittleEndian<quint16>(blob.constData() + at + 2 + i * 2));
    at += 2 + length * 2;
    return true;
}
} // namespace

std::vector<CAttendee> ParseAttendees(const QByteArray& blob)
{
    std::vector<CAttendee> attendees;
    qsizetype at = 0;
    CAttendee attendee;
    while (attendees.size() < kMaxAttendees && ReadText(blob, at, attendee.Name) &&
           ReadText(blob, at, attendee.Address))
        attendees.push_back(attendee);
    return attendees;
}

QByteArray WriteAttendees(const std::vector<CAttendee>& attendees)
{
    QByteArray blob;
    for (size_t i = 0; i < std::min(attendees.size(), kMaxAttendees); ++i) {
        AppendText(blob, attendees[i].Name);
        AppendText(blob, attendees[i].Address);
    }
    return blob;
}
