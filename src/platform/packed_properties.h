// Properties that a volume has no column for, packed into one blob.
// Layout, little-endian, one after the other: identifier (4), length (4), value. A scalar has
//   8 bytes, a text its UTF-16 units, a blob its bytes.
// Errors: a malformed tail is dropped; what stands before it is given.
#pragma once
#include "platform/property_volume.h"

enum class PropStorage { Number, Text, Bytes };
PropStorage StorageOf(CEPROPID id);
// A scalar brought into the range of its type, so that equal values are stored equal.
qint64 NormalizedNumber(CEPROPID id, qint64 number);

QByteArray PackProperties(std::span<const CEPROPVAL> rows);
// False when bytes were left over.
bool UnpackProperties(const QByteArray& packed, std::vector<CEPROPVAL>& rows);
// Puts or replaces one row of an unpacked list; with CEDB_PROPNOTFOUND takes it away.
void PutProperty(std::vector<CEPROPVAL>& rows, const CEPROPVAL& row);
