// Reading and writing of the blobs' little-endian bytes, with the length checked before each read.
#pragma once
#include "platform/system_time.h"

#include <QByteArray>
#include <QString>
#include <QtEndian>
#include <span>

template <typename T> bool ReadAt(std::span<const uchar> bytes, size_t at, T* value)
{
    if (at > bytes.size() || bytes.size() - at < sizeof(T))
        return false;
    *value = qFromLittleEndian<T>(bytes.data() + at);
    return true;
}
inline bool Read16(std::span<const uchar> bytes, size_t at, quint16* value)
{
    return ReadAt(bytes, at, value);
}
inline bool Read32(std::span<const uchar> bytes, size_t at, quint32* value)
{
    return ReadAt(bytes, at, value);
}

inline void Append16(QByteArray& blob, quint16 value)
{
    const quint16 little = qToLittleEndian(value);
    blob.append(reinterpret_cast<const char*>(&little), 2);
}
inline void Append32(QByteArray& blob, quint32 value)
{
    const quint32 little = qToLittleEndian(value);
    blob.append(reinterpret_cast<const char*>(&little), 4);
}
inline void AppendUtf16(QByteArray& blob, const QString& text)
{
    for (QChar c : text)
        Append16(blob, c.unicode());
}
inline QString Utf16Of(std::span<const uchar> bytes)
{
    QString text(qsizetype(bytes.size() / 2), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i)
        text[i] = QChar(qFromLittleEndian<quint16>(bytes.data() + i * 2));
    return text;
}

// A place in a blob that moves on with each read; a read that does not fit leaves it alone.
class CBlobReader
{
public:
    CBlobReader(std::span<const uchar> bytes, size_t at) : m_bytes(bytes), m_at(at) {}
    int At() const { return int(m_at); }
    bool Get16(quint16* value) { return Get(value); }
    bool Get32(quint32* value) { return Get(value); }
    bool GetBytes(size_t length, std::span<const uchar>* bytes)
    {
        if (m_bytes.size() - m_at < length)
            return false;
        *bytes = m_bytes.subspan(m_at, length);
        m_at += length;
        return true;
    }
    QByteArray Rest() const
    {
        const std::span<const uchar> rest = m_bytes.subspan(m_at);
        return QByteArray(reinterpret_cast<const char*>(rest.data()), qsizetype(rest.size()));
    }

private:
    template <typename T> bool Get(T* value)
    {
        if (!ReadAt(m_bytes, m_at, value))
            return false;
        m_at += sizeof(T);
        return true;
    }
    std::span<const uchar> m_bytes;
    size_t m_at; // never past the end
};

inline void ReadSystemTime(std::span<const uchar> bytes, size_t at, SystemTime* time)
{
    quint16* const fields[] = {&time->wYear, &time->wMonth,  &time->wDayOfWeek, &time->wDay,
                               &time->wHour, &time->wMinute, &time->wSecond,    &time->wMilliseconds};
    for (size_t i = 0; i < std::size(fields); ++i)
        Read16(bytes, at + i * 2, fields[i]);
}

inline void WriteSystemTime(const SystemTime& time, char* target)
{
    const quint16 fields[] = {time.wYear, time.wMonth,  time.wDayOfWeek, time.wDay,
                              time.wHour, time.wMinute, time.wSecond,    time.wMilliseconds};
    for (size_t i = 0; i < std::size(fields); ++i)
        qToLittleEndian(fields[i], target + i * 2);
}
