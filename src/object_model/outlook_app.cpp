#include "object_model/outlook_app.h"

#include "object_model/appointment_object.h"
#include "object_model/appointment_record.h"
#include "records/property_numbers.h"
#include "records/recurrence_blob.h"

#include <algorithm>

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
    m_byNumber = m_volume->OpenDatabase(kAppointmentsDatabase, {{Prop::RecId}}, false);
    if (!m_byNumber)
        return {StatusKind::Corrupt,
                QStringLiteral("The volume %1 holds no appointments database.").arg(m_volume->Path())};
    return {};
}

void COutlookApp::Logoff()
{
    AbandonBatch();
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

CStatus COutlookApp::Load(quint32 itemId, std::unique_ptr<CAppointmentObject>& item)
{
    if (!m_byNumber) {
        const CStatus status = Logon();
        if (!status)
            return status;
    }
    ReadZone();
    const CEPROPVAL number(Prop::RecId, qint64(itemId - kAppointmentTag));
    CEOID oid = m_byNumber->Seek(SeekType::ValueFirstEqual, number);
    if (oid != 0)
        oid = m_byNumber->ReadRecordProps(AppointmentRows(), m_rows);
    const CStatus fault = m_volume->TakeReadFault();
    if (!fault)
        return fault;
    if (oid == 0)
        return {StatusKind::NotFound, QStringLiteral("There is no appointment %1.").arg(qint32(itemId))};
    item = std::make_unique<CAppointmentObject>(*this, oid, itemId, m_rows);
    return {};
}

CStatus COutlookApp::ReadPattern(CEOID oid, CRecurrencePattern& pattern)
{
    if (!m_byOid)
        m_byOid = m_volume->OpenDatabase(kAppointmentsDatabase, {}, false);
    constexpr CEPROPID kIds[] = {Prop::Zone, Prop::Recurrence};
    const bool found = m_byOid && m_byOid->Seek(SeekType::CeOid, {Prop::RecId, qint64(oid)}) == oid &&
                       m_byOid->ReadRecordProps(kIds, m_rows) == oid;
    const CStatus fault = m_volume->TakeReadFault();
    if (!fault)
        return fault;
    if (!found)
        return {StatusKind::NotFound, QStringLiteral("The appointment is no longer there.")};
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

std::vector<CForeignKey> COutlookApp::FindByUid(const QString& uid)
{
    std::vector<CForeignKey> keys;
    if (uid.isEmpty())
        return keys;
    if (!m_byUid)
        m_byUid = m_volume->OpenDatabase(kAppointmentsDatabase, {{Prop::Uid}}, true);
    constexpr CEPROPID kIds[] = {Prop::Uid,         Prop::RecId,        Prop::Sequence,
                                 Prop::EqualsIndex, Prop::OccurrenceId, Prop::ContentHash};
    if (!m_byUid || m_byUid->Seek(SeekType::ValueFirstEqual, {Prop::Uid, uid}) == 0)
        return keys;
    while (const CEOID oid = m_byUid->ReadRecordProps(kIds, m_rows)) {
        if (m_rows[0].Text != uid)
            break;
        keys.push_back({oid, kAppointmentTag + quint32(m_rows[1].Number), quint32(m_rows[2].Number),
                        quint32(m_rows[3].Number), m_rows[4].Text, m_rows[5].Bytes});
    }
    std::stable_sort(keys.begin(), keys.end(), [](const CForeignKey& a, const CForeignKey& b) {
        return std::tie(a.OccurrenceId, a.EqualsIndex) < std::tie(b.OccurrenceId, b.EqualsIndex);
    });
    return keys;
}

bool COutlookApp::HasAnyUid()
{
    if (!m_byUid)
        m_byUid = m_volume->OpenDatabase(kAppointmentsDatabase, {{Prop::Uid}}, true);
    return m_byUid && m_byUid->Seek(SeekType::Beginning) != 0;
}
