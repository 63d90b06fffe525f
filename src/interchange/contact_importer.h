// Puts the contacts of vCards into the volume, through the object model.
// A card is the contact that has its UID, or its content's hash, and its place among those of
//   equal UID in the file; what is equal by content is not touched.
#pragma once
#include "interchange/contact_reader.h"

#include <unordered_map>

class CContactImporter
{
public:
    CContactImporter(IPOutlookApp& app, CImportReport& report)
        : m_app(app), m_report(report), m_reader(report)
    {
    }

    // Counts what became of it in the report, unless it could not be written.
    CStatus Take(const CComponent& component);

private:
    CStatus Write(const CImportedContact& contact, quint32 index, quint32 itemId);

    IPOutlookApp& m_app;
    CImportReport& m_report;
    CContactReader m_reader;
    CImportedContact m_contact;
    std::unordered_map<quint64, quint32> m_seen; // by hash of the UID, how many came
};
