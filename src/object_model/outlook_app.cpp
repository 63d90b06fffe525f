#include "object_model/outlook_app.h"

#include "object_model/appointment_object.h"
#include "object_model/appointment_record.h"
#include "object_model/contact_object.h"
#include "object_model/infrared_folder.h"
#include "object_model/task_object.h"
#include "records/property_numbers.h"
#include "records/recurrence_blob.h"

#include <algorithm>

namespace
{
struct CTableRow {
    const QString& Database;
    quint32 Tag;
    CEPROPID Zone, Recurrence;
    const char* Missing;
};
const CTableRow& RowOf(ItemTable table)
{
    static const CTableRow kTables[] = {
        {kAppointmentsDatabase, kAppointmentTag, Prop::Zone, Prop::Recurrence, "There is no appointment %1."},
        {kTasksDatabase, kTaskTag, Prop::TaskZone, Prop::TaskRecurrence, "There is no task %1."},
        {kContactsDatabase, kContactTag, 0, 0, "There is no contact %1."}};
    return kTables[size_t(table)];
}
} // namespace

std::unique_ptr<IPOutlookApp> MakePOutlookApp(std::shared_ptr<CPropertyVolume> volume)
{
    return volume ? std::make_unique<COutlookApp>(std::move(volume)) : nullptr;
}

COutlookApp::COutlookApp(std::shared_ptr<CPropertyVolume> volume)
    : m_volume(std::move(volume)), m_categories(*m_volume)
{
    ReadZone();
}

COutlookApp::~COutlookApp()
{
    Logoff();
}

CStatus COutlookApp::Logon()
{
    auto& byNumber = ReadersOf(ItemTable::Appointments).ByNumber;
    byNumber = m_volume->OpenDatabase(kAppointmentsDatabase, {{Prop::RecId}}, false);
    if (!byNumber)
        return {StatusKind::Corrupt,
                QStringLiteral("The volume %1 holds no appointments database.").arg(m_volume->Path())};
    return {};
}

void COutlookApp::Logoff()
{
    AbandonBatch();
}

std::unique_ptr<IFolder> COutlookApp::GetDefaultFolder(int folder)
{
    return folder == olFolderInfrared ? std::make_unique<CInfraredFolder>(*this, m_transport) : nullptr;
}

// Within a batch the zone stands still, as one look-up per item would cost more than its write.
void COutlookApp::ReadZone()
{
    if (!m_batch)
        GetTimeZoneInformation(&m_zone);
}

std::unique_ptr<IAppointment> COutlookApp::CreateAppointment()
{
    ReadZone();
    return std::make_unique<CAppointmentObject>(*this);
}

CStatus COutlookApp::GetAppointmentFromOid(quint32 itemId, std::unique_ptr<IAppointment>& item)
{
    std::unique_ptr<CAppointmentObject> loaded;
    const CStatus status = Load(itemId, loaded);
    if (status)
        item = std::move(loaded);
    return status;
}

std::unique_ptr<ITask> COutlookApp::CreateTask()
{
    ReadZone();
    return std::make_unique<CTaskObject>(*this);
}

CStatus COutlookApp::GetTaskFromOid(quint32 itemId, std::unique_ptr<ITask>& item)
{
    CEOID oid = 0;
    const CStatus status = ReadItem(ItemTable::Tasks, itemId, TaskRows(), &oid);
    if (status)
        item = std::make_unique<CTaskObject>(*this, oid, itemId, m_rows);
    return status;
}

std::unique_ptr<IContact> COutlookApp::CreateContact()
{
    return std::make_unique<CContactObject>(*this);
}

CStatus COutlookApp::GetContactFromOid(quint32 itemId, std::unique_ptr<IContact>& item)
{
    CEOID oid = 0;
    const CStatus status = ReadItem(ItemTable::Contacts, itemId, ContactRows(), &oid);
    if (status)
        item = std::make_unique<CContactObject>(*this, oid, itemId, m_rows);
    return status;
}

CStatus COutlookApp::Load(quint32 itemId, std::unique_ptr<CAppointmentObject>& item)
{
    CEOID oid = 0;
    const CStatus status = ReadItem(ItemTable::Appointments, itemId, AppointmentRows(), &oid);
    if (status)
        item = std::make_unique<CAppointmentObject>(*this, oid, itemId, m_rows);
    return status;
}

CStatus COutlookApp::ReadItem(ItemTable table, quint32 itemId, std::span<const CEPROPID> ids, CEOID* oid)
{
    auto& reader = ReadersOf(table).ByNumber;
    if (!reader)
        reader = m_volume->OpenDatabase(RowOf(table).Database, {{Prop::RecId}}, false);
    ReadZone();
    *oid = 0;
    if (reader &&
        reader->Seek(SeekType::ValueFirstEqual, {Prop::RecId, qint64(itemId - RowOf(table).Tag)}) != 0)
        *oid = reader->ReadRecordProps(ids, m_rows);
    const CStatus fault = m_volume->TakeReadFault();
    if (!fault)
        return fault;
    if (*oid == 0)
        return {StatusKind::NotFound, QString::fromLatin1(RowOf(table).Missing).arg(qint32(itemId))};
    return {};
}

CStatus COutlookApp::ReadPattern(ItemTable table, CEOID oid, CRecurrencePattern& pattern)
{
    auto& reader = ReadersOf(table).ByOid;
    if (!reader)
        reader = m_volume->OpenDatabase(RowOf(table).Database, {}, false);
    const CEPROPID ids[] = {RowOf(table).Zone, RowOf(table).Recurrence};
    const bool found = reader && reader->Seek(SeekType::CeOid, {Prop::RecId, qint64(oid)}) == oid &&
                       reader->ReadRecordProps(ids, m_rows) == oid;
    const CStatus fault = m_volume->TakeReadFault();
    if (!fault)
        return fault;
    if (!found)
        return {StatusKind::NotFound, QStringLiteral("The item is no longer there.")};
    pattern = CRecurrencePattern();
    if (m_rows[0].Found())
        ParseRecurrenceZone(pattern, BytesOf(m_rows[0].Bytes));
    if (m_rows[1].Found())
        ParseRecurrence(pattern, BytesOf(m_rows[1].Bytes));
    return {};
}

// ---- transactions

CStatus COutlookApp::BeginSave()
{
    const CStatus status = m_volume->Begin();
    if (status && !m_batch)
        m_categories.Revalidate();
    return status;
}

CStatus COutlookApp::EndSave(const CStatus& work)
{
    if (work && !m_batch)
        m_categories.RememberState();
    const CStatus status = work ? m_volume->Commit() : work;
    if (!work)
        m_volume->Rollback();
    if (!status)
        m_categories.Forget();
    return status;
}

CStatus COutlookApp::BeginBatch()
{
    if (m_batch)
        return {StatusKind::Invalid, QStringLiteral("A batch is already open.")};
    ReadZone();
    const CStatus status = m_volume->Begin(false);
    if (status) {
        m_batch = true;
        m_categories.Revalidate();
    }
    return status;
}

CStatus COutlookApp::CommitBatch()
{
    if (!m_batch)
        return {StatusKind::Invalid, QStringLiteral("No batch is open.")};
    m_batch = false;
    m_categories.RememberState();
    const CStatus status = m_volume->Commit();
    if (!status)
        m_categories.Forget();
    return status;
}

void COutlookApp::AbandonBatch()
{
    if (!m_batch)
        return;
    m_batch = false;
    m_volume->Rollback();
    m_categories.Forget();
}

// ---- identity of imported items

bool COutlookApp::OpenByUid(ItemTable table)
{
    auto& reader = ReadersOf(table).ByUid;
    if (!reader)
        reader = m_volume->OpenDatabase(RowOf(table).Database, {{Prop::Uid}}, true);
    return reader != nullptr;
}

std::vector<CForeignKey> COutlookApp::FindByUid(ItemTable table, const QString& uid)
{
    std::vector<CForeignKey> keys;
    if (uid.isEmpty() || !OpenByUid(table))
        return keys;
    CPropertyDatabase& reader = *ReadersOf(table).ByUid;
    constexpr CEPROPID kIds[] = {Prop::Uid,         Prop::RecId,        Prop::Sequence,
                                 Prop::EqualsIndex, Prop::OccurrenceId, Prop::ContentHash};
    if (reader.Seek(SeekType::ValueFirstEqual, {Prop::Uid, uid}) == 0)
        return keys;
    while (const CEOID oid = reader.ReadRecordProps(kIds, m_rows)) {
        if (m_rows[0].Text != uid)
            break;
        keys.push_back({oid, RowOf(table).Tag + quint32(m_rows[1].Number), quint32(m_rows[2].Number),
                        quint32(m_rows[3].Number), m_rows[4].Text, m_rows[5].Bytes});
    }
    std::stable_sort(keys.begin(), keys.end(), [](const CForeignKey& a, const CForeignKey& b) {
        return std::tie(a.OccurrenceId, a.EqualsIndex) < std::tie(b.OccurrenceId, b.EqualsIndex);
    });
    return keys;
}

bool COutlookApp::HasAnyUid()
{
    for (const ItemTable table : {ItemTable::Appointments, ItemTable::Tasks})
        if (OpenByUid(table) && ReadersOf(table).ByUid->Seek(SeekType::Beginning) != 0)
            return true;
    return false;
}
