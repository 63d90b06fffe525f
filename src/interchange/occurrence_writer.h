// Puts changed occurrences of a file into the series that hold them.
// The series stays open in memory while its occurrences come, and is saved when another item's
//   turn comes: Flush before anything else is written or a batch ends.
// What a file says of an occurrence is kept whole with its series, among the kept lines, with the
//   hash and sequence by which a later import knows it again:
//     BEGIN:X-TESSERA-OVERRIDE
//     RECURRENCE-ID:20260312T070000Z
//     X-TESSERA-HASH:0123456789abcdef;2
//     (the occurrence's own lines)
//     END:X-TESSERA-OVERRIDE
#pragma once
#include "interchange/item_writer.h"

#include <QHash>

class COccurrenceWriter
{
public:
    // NoSeries: all later ones with a rule of their own, and no series that they could change.
    enum class Result { Created, Updated, Unchanged, NotThere, NoSeries, TooMany, Failed };

    COccurrenceWriter(IPOutlookApp& app, CItemWriter& writer, CZoneTable& zones,
                      const TimeZoneInformation& device)
        : m_app(app), m_writer(writer), m_zones(zones), m_device(device)
    {
    }

    Result Put(const CImportedEvent& event, const CComponent& component, CStatus* status);
    CStatus Flush();

    // The occurrence's name: 20260310, 20260310T090000 or, of a moment, 20260310T080000Z.
    static QString NameOf(const CImportedEvent& event);

private:
    struct CKeptChange {
        QByteArray Hash;
        quint32 Sequence = 0;
    };
    // An item of the volume, open for changes.
    struct COpenItem {
        quint32 ItemId = 0;
        std::unique_ptr<IAppointment> Item;
        CForeignData Foreign;
        QHash<QString, CKeptChange> Changes;
        std::shared_ptr<const CFileZone> Zone; // null: floating, or all-day
        bool AllDay = false, IsSeries = false, IsDirty = false;
        CRecurrencePattern Pattern;
        qint64 Shift = 0; // from the moments by which a file names its occurrences to their own
    };

    bool Seek(const CImportedEvent& event, const std::vector<CForeignKey>& keys, int* day, Result* result,
              CStatus* status);
    CStatus Open(const CForeignKey& key);
    bool Holds(const CImportedEvent& event, int* day) const;
    bool HoldsAt(qint64 wall, bool isDate, int* day) const;
    bool IsKnown(const CImportedEvent& event, const QString& name, Result* result) const;
    Result PutInSeries(const CImportedEvent& event, const CComponent& component, int day);
    Result PutInSingle(const CImportedEvent& event, const CComponent& component, CStatus* status);
    Result PutFollowing(const CImportedEvent& event, const CComponent& component, int day, CStatus* status);
    Result PutFollowingAgain(const CImportedEvent& event, const CForeignKey& key, CStatus* status);
    CPlannedRecord Following(const CImportedEvent& event, CRecurrencePattern pattern) const;
    Result PutAlone(const CImportedEvent& event, const std::vector<CForeignKey>& keys, CStatus* status);
    void KeepChange(const CImportedEvent& event, const CComponent& component);
    std::shared_ptr<const CFileZone> ZoneOfItem(const QString& kept, bool allDay);
    qint64 WallInOpen(qint64 wall, const std::shared_ptr<const CFileZone>& zone) const;
    void PutException(const CImportedEvent& event, CRecurrenceException& exception) const;

    IPOutlookApp& m_app;
    CItemWriter& m_writer;
    CZoneTable& m_zones;
    TimeZoneInformation m_device;
    COpenItem m_open;
    std::shared_ptr<const CFileZone> m_leadZone;
    bool m_standAlone = false; // some occurrences of this UID are items of their own
};
