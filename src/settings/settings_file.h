// The settings file: a two-level ordered dictionary of strings, read by a seven-state character
// machine and written back whole. It knows nothing of what the keys mean.
// Shape: sections and keys keep the order in which they first appeared; names are compared
//   exactly, code unit by code unit.
// Form of the file: UTF-16 little-endian with a byte-order mark, lines end in CR LF; other
//   files are read as 8-bit text. Nothing is quoted or escaped: a ";" inside a value ends it.
// Errors: false; the model then holds what was read, and a failed save leaves the old file.
#pragma once
#include "util/color.h"

#include <QByteArray>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <map>
#include <span>

class CSettingsSection
{
public:
    virtual ~CSettingsSection() = default;
    CSettingsSection() = default;
    CSettingsSection(const CSettingsSection&) = default;
    CSettingsSection& operator=(const CSettingsSection&) = default;

    QStringList m_keyOrder;
    std::map<QString, QString> m_values;
};

// Left, top, right, bottom as written; right and bottom are exclusive where it is used.
struct CSettingsRect {
    qint32 left = 0, top = 0, right = 0, bottom = 0;
    bool operator==(const CSettingsRect&) const = default;
};

class CSettingsFile
{
public:
    explicit CSettingsFile(const QString& path = QString()); // a path is loaded at once
    // A copy is a clean one: only the original writes itself at its end.
    CSettingsFile(const CSettingsFile& other);
    CSettingsFile& operator=(const CSettingsFile& other);
    virtual ~CSettingsFile(); // saves when dirty

    bool Load(const QString& path = QString()); // a path replaces the one held
    bool Save(const QString& path = QString());
    void LoadBytes(const QByteArray& bytes); // what Load does with the file's bytes
    QByteArray ToBytes() const;              // what Save writes
    void Clear();
    void SetDirty(bool dirty) { m_flags = dirty ? m_flags | 1u : m_flags & ~1u; }
    bool IsDirty() const { return (m_flags & 1u) != 0; }
    const QString& Path() const { return m_path; }
    void SetPath(const QString& path) { m_path = path; }
    const QStringList& SectionOrder() const { return m_sectionOrder; }
    const CSettingsSection* FindSection(const QString& section) const;

    bool AddSection(const QString& section); // false when it is there already
    bool RemoveEntry(const QString& section, const QString& key = QString()); // no key: the section
    bool SetString(const QString& section, const QString& key, const QString& value);
    bool SetInt(const QString& section, const QString& key, qint32 value);
    bool SetBool(const QString& section, const QString& key, bool value);
    bool SetColor(const QString& section, const QString& key, COLORREF value);
    bool SetRect(const QString& section, const QString& key, const CSettingsRect& rect);
    bool SetPoint(const QString& section, const QString& key, QPoint point);

    // A miss is false and leaves the target; rectangles and points are zeroed first.
    bool GetString(const QString& section, const QString& key,
                   QString* value) const; // stripped, on a miss too
    bool GetInt(const QString& section, const QString& key, qint32* value) const;
    bool GetBool(const QString& section, const QString& key, bool* value) const;
    bool GetColor(const QString& section, const QString& key, COLORREF* value) const;
    bool GetRect(const QString& section, const QString& key, CSettingsRect* rect) const;
    bool GetPoint(const QString& section, const QString& key, QPoint* point) const;

private:
    void Parse(QStringView text);

    QString m_path;
    QStringList m_sectionOrder;
    std::map<QString, CSettingsSection> m_sections;
    quint32 m_flags = 0; // bit 0: differs from the file
};

// The number at the start of a text as the C library's wcstol reads it; 0 when there is none.
qint32 NumberOfText(QStringView text);
