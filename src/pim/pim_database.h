// One open database of the volume, with a place in one sort order.
// Errors: a database that cannot be opened gives no records; callers go on without it.
#pragma once
#include "platform/property_volume.h"

class CPimDatabase
{
public:
    // A reader asks for auto-increment, so that each read moves to the next record. An empty sort
    // goes by CEOID.
    bool Open(const std::shared_ptr<CPropertyVolume>& volume, const QString& name, bool autoIncrement,
              const CSortOrder& sortSpec = {});
    void Close();
    bool IsOpen() const { return m_handle != nullptr; }
    CEOID Seek(SeekType seekType, const CEPROPVAL& value = {}); // the CEOID found, 0 if none
    CEOID ReadRecordProps(std::span<const CEPROPID> ids, std::vector<CEPROPVAL>& rows); // 0 at the end

private:
    std::shared_ptr<CPropertyVolume> m_volume; // goes after the handle
    std::unique_ptr<CPropertyDatabase> m_handle;
};
