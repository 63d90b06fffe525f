#include "pim/pim_database.h"

bool CPimDatabase::Open(const std::shared_ptr<CPropertyVolume>& volume, const QString& name,
                        bool autoIncrement, const CSortOrder& sortSpec)
{
    Close();
    m_volume = volume;
    if (volume)
        m_handle = volume->OpenDatabase(name, sortSpec, autoIncrement);
    return IsOpen();
}

void CPimDatabase::Close()
{
    m_handle.reset();
    m_volume.reset();
}

CEOID CPimDatabase::Seek(SeekType seekType, const CEPROPVAL& value)
{
    return m_handle ? m_handle->Seek(seekType, value) : 0;
}

CEOID CPimDatabase::ReadRecordProps(std::span<const CEPROPID> ids, std::vector<CEPROPVAL>& rows)
{
    return m_handle ? m_handle->ReadRecordProps(ids, rows) : 0;
}
