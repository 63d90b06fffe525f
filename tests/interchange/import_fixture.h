// An import into a fresh volume, and the volume's items as short texts.
#pragma once
#include "interchange/calendar_importer.h"
#include "platform/clock.h"
#include "platform/time_zone.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <string>

struct CImported {
    ImportResult Result = ImportResult::Done;
    qint64 Created = 0, Updated = 0, Unchanged = 0, LeftOut = 0;
    std::vector<std::string> Told; // "line: text"
    std::string Counts() const;    // "1 created 0 updated 0 unchanged 0 left out"
};

class ImportTest : public testing::Test
{
protected:
    ImportTest();
    ~ImportTest() override;
    void FreshVolume();
    CImported ImportBytes(const std::string& bytes, const CCalendarImporter::Progress& progress = {});
    // Lines with "\n" between them, put into a calendar.
    CImported Import(const std::string& components) { return ImportBytes(Calendar(components)); }
    static std::string Calendar(const std::string& components);

    // All items of a UID, one line each, in order of their dates.
    std::string Items(const std::string& uid);
    std::string Item(const std::string& uid); // the texts of the one item, field by field
    std::unique_ptr<IAppointment> Open(const std::string& uid, size_t index = 0);
    qint64 RecordCount();

    std::unique_ptr<QTemporaryDir> m_folder;
    CManualClock m_clock;
    std::unique_ptr<CFixedTimeZone> m_zone;
    std::shared_ptr<CPropertyVolume> m_volume;
    std::unique_ptr<IPOutlookApp> m_app;
};
