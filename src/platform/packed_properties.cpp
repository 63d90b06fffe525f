#include "platform/packed_properties.h"

#include <QtEndian>
#include <algorithm>

PropStorage StorageOf(CEPROPID id)
{
    switch (PropTypeOf(id)) {
    case PropType::String:
        return PropStorage::Text;
    case PropType::Blob:
    case PropType::Document:
        return PropStorage::Bytes;
    default:
        return PropStorage::Number;
    }
}

qint64 NormalizedNumber(CEPROPID id, qint64 number)
{
    switch (PropTypeOf(id)) {
    case PropType::Int32:
        return qint32(number);
    case PropType::Bool:
        return number != 0;
    case PropType::UInt32:
    case PropType::RecordNumber:
        return quint32(number);
    default:
        return number;
    }
}

QByteArray PackProperties(std::span<const CEPROPVAL> rows)
{
    QByteArray packed;
    const auto append = [&packed](auto number) {
        char bytes[sizeof(number)];
        qToLittleEndian(number, bytes);
        packed.append(bytes, sizeof(number));
    };
    for (const CEPROPVAL& row : rows) {
        append(row.propid);
        switch (StorageOf(row.propid)) {
        case PropStorage::Number:
            append(quint32(8));
            append(NormalizedNumber(row.propid, row.Number));
            break;
        case PropStorage::Text:
            append(quint32(row.Text.size() * 2));
            for (const QChar c : row.Text)
                append(quint16(c.unicode()));
            break;
        case PropStorage::Bytes:
            append(quint32(row.Bytes.size()));
            packed.append(row.Bytes);
            break;
        }
    }
    return packed;
}

bool UnpackProperties(const QByteArray& packed, std::vector<CEPROPVAL>& rows)
{
    qsizetype at = 0;
    while (packed.size() - at >= 8) {
        CEPROPVAL row;
        row.propid = qFromLittleEndian<quint32>(packed.constData() + at);
        const qsizetype length = qFromLittleEndian<quint32>(packed.constData() + at + 4);
        const char* value = packed.constData() + at + 8;
        if (length > packed.size() - at - 8)
            return false;
        switch (StorageOf(row.propid)) {
        case PropStorage::Number:
            if (length != 8)
                return false;
            row.Number = qFromLittleEndian<qint64>(value);
            break;
        case PropStorage::Text:
            if (length % 2 != 0)
                return false;
            row.Text.resize(length / 2);
            for (qsizetype i = 0; i < length / 2; ++i)
                row.Text[i] = QChar(qFromLittleEndian<quint16>(value + 2 * i));
            break;
        case PropStorage::Bytes:
            row.Bytes = QByteArray(value, length);
            break;
        }
        rows.push_back(std::move(row));
        at += 8 + length;
    }
    return at == packed.size();
}

void PutProperty(std::vector<CEPROPVAL>& rows, const CEPROPVAL& row)
{
    const auto place = std::find_if(rows.begin(), rows.end(),
                                    [&row](const CEPROPVAL& other) { return other.propid == row.propid; });
    if (!row.Found()) {
        if (place != rows.end())
            rows.erase(place);
    } else if (place != rows.end()) {
        *place = row;
    } else {
        rows.push_back(row);
    }
}
