// The lines of a contact as a vCard: of version 3.0, unless its kept lines are in another's way.
#pragma once
#include "interchange/contact_reader.h"
#include "interchange/text_lines.h"

class CCardExporter
{
public:
    CCardExporter() : m_reader(m_unheard) {}
    // A whole card.
    void Export(IContact& contact, const QString& madeUid, CTextLines& lines);

private:
    CImportedContact Read(const CTextLines& lines);
    std::string TextLine(const std::string& name, const std::string& escaped, const QString& plain) const;
    void AddPlain(IContact& contact, const QString& uid, CTextLines& lines);
    void AddReachable(IContact& contact, CTextLines& lines);
    std::string FilledCard(const std::string& line, IContact& contact, const QString& uid);

    CImportReport m_unheard;
    CContactReader m_reader;
    CTextLines m_kept;
    bool m_isOld = false; // version 2.1
    std::string m_version;
};
