// The application object: the volume, the device's zone and the categories that its items share.
#pragma once
#include "object_model/appointment_record.h"
#include "object_model/category_writer.h"
#include "object_model/object_model.h"

class CAppointmentObject;

// The databases of items.
enum class ItemTable { Appointments, Tasks, Contacts };

class COutlookApp : public IPOutlookApp
{
public:
    explicit COutlookApp(std::shared_ptr<CPropertyVolume> volume);
    ~COutlookApp() override;

    CStatus Logon() override;
    void Logoff() override;
    std::unique_ptr<IAppointment> CreateAppointment() override;
    CStatus GetAppointmentFromOid(quint32 itemId, std::unique_ptr<IAppointment>& item) override;
    std::unique_ptr<ITask> CreateTask() override;
    CStatus GetTaskFromOid(quint32 itemId, std::unique_ptr<ITask>& item) override;
    std::unique_ptr<IContact> CreateContact() override;
    CStatus GetContactFromOid(quint32 itemId, std::unique_ptr<IContact>& item) override;
    CStatus BeginBatch() override;
    CStatus CommitBatch() override;
    void AbandonBatch() override;
    std::vector<CForeignKey> FindByUid(const QString& uid) override
    {
        return FindByUid(ItemTable::Appointments, uid);
    }
    std::vector<CForeignKey> FindTasksByUid(const QString& uid) override
    {
        return FindByUid(ItemTable::Tasks, uid);
    }
    std::vector<CForeignKey> FindContactsByUid(const QString& uid) override
    {
        return FindByUid(ItemTable::Contacts, uid);
    }
    bool HasAnyUid() override;
    void SetTransport(IItemTransport* transport) override { m_transport = transport; }
    std::unique_ptr<IFolder> GetDefaultFolder(int folder) override;

    // For its items.
    CStatus Load(quint32 itemId, std::unique_ptr<CAppointmentObject>& item);
    // Reads the stored series of a record as it is now.
    CStatus ReadPattern(ItemTable table, CEOID oid, CRecurrencePattern& pattern);
    CPropertyVolume& Volume() { return *m_volume; }
    CCategoryWriter& Categories() { return m_categories; }
    IItemTransport* Transport() { return m_transport; }
    const TimeZoneInformation& Zone() const { return m_zone; }
    CRecordRows& EmptyRows() // one buffer for all saves, which keeps its memory
    {
        m_put.Clear();
        return m_put;
    }
    // One save: all of it or nothing, within a batch too.
    template <typename Work> CStatus InTransaction(Work work)
    {
        CStatus status = BeginSave();
        if (!status)
            return status;
        status = work();
        return EndSave(status);
    }

private:
    CStatus BeginSave();
    CStatus EndSave(const CStatus& work);
    void ReadZone();
    // The record of an item, into m_rows.
    CStatus ReadItem(ItemTable table, quint32 itemId, std::span<const CEPROPID> ids, CEOID* oid);
    std::vector<CForeignKey> FindByUid(ItemTable table, const QString& uid);
    bool OpenByUid(ItemTable table);

    struct CReaders { // of one database, opened when they are wanted
        std::unique_ptr<CPropertyDatabase> ByNumber, ByOid, ByUid;
    };
    CReaders& ReadersOf(ItemTable table) { return m_readers[size_t(table)]; }

    std::shared_ptr<CPropertyVolume> m_volume;
    CCategoryWriter m_categories;
    CReaders m_readers[3];
    std::vector<CEPROPVAL> m_rows;
    CRecordRows m_put;
    IItemTransport* m_transport = nullptr;
    TimeZoneInformation m_zone;
    bool m_batch = false;
};
