#include "settings/settings_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>
#include <QtEndian>
#include <limits>

namespace
{
constexpr char16_t kByteOrderMark = 0xFEFF;

bool IsNameStart(char16_t c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9');
}
bool IsBlank(char16_t c)
{
    return c == u' ' || c == u'\t';
}
bool IsLineEnd(char16_t c)
{
    return c == u'\r' || c == u'\n';
}

// The file's text up to its first zero.
QString TextOf(const QByteArray& bytes)
{
    QString text;
    const auto* data = reinterpret_cast<const uchar*>(bytes.constData());
    if (bytes.size() >= 2 && qFromLittleEndian<quint16>(data) == kByteOrderMark) {
        text.resize((bytes.size() + 1) / 2);
        for (qsizetype i = 0; i < text.size(); ++i) {
            const quint16 high = 2 * i + 1 < bytes.size() ? quint16(data[2 * i + 1] << 8) : 0;
            text[i] = QChar(quint16(data[2 * i] | high));
        }
    } else {
        const qsizetype end = bytes.indexOf('\0');
        const QByteArray part = end < 0 ? bytes : bytes.left(end);
        QStringDecoder decoder(QStringDecoder::Utf8);
        text = decoder(part);
        if (decoder.hasError())
            text = QString::fromLatin1(part);
    }
    const qsizetype zero = text.indexOf(QChar(u'\0'));
    return zero < 0 ? text : text.left(zero);
}

// The numbers of a list as colours, rectangles and points hold them; no sign, no range check.
void ParseNumbers(QStringView text, std::span<quint32> slots)
{
    size_t index = 0;
    for (const QChar c : text) {
        if (index >= slots.size())
            return;
        if (c == u',')
            ++index;
        else if (c >= u'0' && c <= u'9')
            slots[index] = slots[index] * 10 + quint32(c.unicode() - u'0');
    }
}

bool GetNumbers(const CSettingsFile& file, const QString& section, const QString& key,
                std::span<quint32> slots)
{
    QString text;
    const bool hit = file.GetString(section, key, &text);
    ParseNumbers(text, slots);
    return hit;
}

QString Joined(std::initializer_list<qint64> numbers)
{
    QString text;
    for (const qint64 number : numbers) {
        if (!text.isEmpty())
            text += u',';
        text += QString::number(number);
    }
    return text;
}

const QString kNotSetText = QStringLiteral("[-1]");
} // namespace

qint32 NumberOfText(QStringView text)
{
    qsizetype i = 0;
    while (i < text.size() && text[i].isSpace())
        ++i;
    const bool negative = i < text.size() && text[i] == u'-';
    if (negative || (i < text.size() && text[i] == u'+'))
        ++i;
    constexpr qint64 kMost = std::numeric_limits<qint32>::max();
    qint64 number = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9' && number <= kMost; ++i)
        number = number * 10 + (text[i].unicode() - u'0');
    return negative ? qint32(-std::min(number, kMost + 1)) : qint32(std::min(number, kMost));
}

CSettingsFile::CSettingsFile(const QString& path)
{
    if (!path.isEmpty())
        Load(path);
}

CSettingsFile::CSettingsFile(const CSettingsFile& other)
    : m_path(other.m_path), m_sectionOrder(other.m_sectionOrder), m_sections(other.m_sections)
{
}

CSettingsFile& CSettingsFile::operator=(const CSettingsFile& other)
{
    m_path = other.m_path;
    m_sectionOrder = other.m_sectionOrder;
    m_sections = other.m_sections;
    m_flags = 0;
    return *this;
}

CSettingsFile::~CSettingsFile()
{
    if (IsDirty())
        Save();
}

// ---- the file

bool CSettingsFile::Load(const QString& path)
{
    Clear();
    if (!path.isEmpty())
        m_path = path;
    // A pipe or device in the file's place would never end.
    if (!QFileInfo(m_path).isFile())
        return false;
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return false;
    LoadBytes(bytes);
    return true;
}

void CSettingsFile::LoadBytes(const QByteArray& bytes)
{
    Clear();
    Parse(TextOf(bytes));
    SetDirty(false);
}

bool CSettingsFile::Save(const QString& path)
{
    if (!path.isEmpty())
        m_path = path;
    if (m_path.isEmpty())
        return false;
    SetDirty(false);
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    QSaveFile file(m_path);
    const QByteArray bytes = ToBytes();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

QByteArray CSettingsFile::ToBytes() const
{
    QString text = QChar(kByteOrderMark);
    for (const QString& name : m_sectionOrder) {
        text += QStringLiteral("\r\n[") + name + QStringLiteral("]\r\n");
        const CSettingsSection& section = m_sections.at(name);
        for (const QString& key : section.m_keyOrder)
            text += key + u'=' + section.m_values.at(key) + QStringLiteral("\r\n");
    }
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i)
        qToLittleEndian(text[i].unicode(), bytes.data() + 2 * i);
    return bytes;
}

void CSettingsFile::Parse(QStringView text)
{
    enum {
        ExpectSection,
        InSectionName,
        BetweenEntries,
        InKey,
        BeforeValue,
        InValue,
        InComment
    } state = ExpectSection;
    qsizetype start = 0;
    QString section, key;
    const auto cut = [&](qsizetype end) { return text.mid(start, end - start); };
    const auto betweenOr = [&](char16_t c, qsizetype i) {
        start = c == u'[' ? i + 1 : i;
        return c == u'[' ? InSectionName : IsNameStart(c) ? InKey : c == u';' ? InComment : BetweenEntries;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        switch (state) {
        case ExpectSection:
            start = i + 1;
            state = c == u'[' ? InSectionName : ExpectSection;
            break;
        case InSectionName:
            if (c == u']') {
                section = cut(i).toString();
                m_sectionOrder += section; // a section that stands twice is named twice
                m_sections.try_emplace(section);
                state = BetweenEntries;
            }
            break;
        case BetweenEntries:
            state = betweenOr(c, i);
            break;
        case InKey:
            if (c == u'=') {
                key = cut(i).trimmed().toString();
                state = BeforeValue;
            }
            break;
        case BeforeValue:
            if (IsLineEnd(c)) {
                SetString(section, key, QString());
                state = BetweenEntries;
            } else if (!IsBlank(c)) {
                start = i;
                state = InValue;
            }
            break;
        case InValue:
            if (IsLineEnd(c) || c == u';') {
                SetString(section, key, cut(i).toString());
                state = c == u';' ? InComment : BetweenEntries;
            }
            break;
        case InComment:
            state = IsLineEnd(c) ? BetweenEntries : InComment;
            break;
        }
    }
    if (state == InValue)
        SetString(section, key, cut(text.size()).toString());
}

// ---- the model

void CSettingsFile::Clear()
{
    m_sectionOrder.clear();
    m_sections.clear();
    m_flags = 0;
}

const CSettingsSection* CSettingsFile::FindSection(const QString& section) const
{
    const auto found = m_sections.find(section);
    return found == m_sections.end() ? nullptr : &found->second;
}

bool CSettingsFile::AddSection(const QString& section)
{
    if (!m_sections.try_emplace(section).second)
        return false;
    m_sectionOrder += section;
    SetDirty(true);
    return true;
}

bool CSettingsFile::RemoveEntry(const QString& section, const QString& key)
{
    const auto found = m_sections.find(section);
    if (found == m_sections.end())
        return false;
    SetDirty(true);
    if (key.isNull()) {
        m_sections.erase(found);
        m_sectionOrder.removeAll(section);
        return true;
    }
    found->second.m_keyOrder.removeAll(key);
    return found->second.m_values.erase(key) > 0;
}

bool CSettingsFile::SetString(const QString& section, const QString& key, const QString& value)
{
    AddSection(section);
    CSettingsSection& entries = m_sections.at(section);
    if (entries.m_values.insert_or_assign(key, value).second)
        entries.m_keyOrder += key;
    SetDirty(true);
    return true;
}

bool CSettingsFile::SetInt(const QString& section, const QString& key, qint32 value)
{
    return SetString(section, key, QString::number(value));
}

bool CSettingsFile::SetBool(const QString& section, const QString& key, bool value)
{
    return SetString(section, key, value ? QStringLiteral("1") : QStringLiteral("0"));
}

bool CSettingsFile::SetColor(const QString& section, const QString& key, COLORREF value)
{
    return SetString(section, key,
                     value == kColorNotSet ? kNotSetText
                                           : Joined({RedOf(value), GreenOf(value), BlueOf(value)}));
}

bool CSettingsFile::SetRect(const QString& section, const QString& key, const CSettingsRect& rect)
{
    return SetString(section, key, Joined({rect.left, rect.top, rect.right, rect.bottom}));
}

bool CSettingsFile::SetPoint(const QString& section, const QString& key, QPoint point)
{
    return SetString(section, key, Joined({point.x(), point.y()}));
}

bool CSettingsFile::GetString(const QString& section, const QString& key, QString* value) const
{
    bool hit = false;
    if (const CSettingsSection* entries = FindSection(section)) {
        const auto found = entries->m_values.find(key);
        hit = found != entries->m_values.end();
        if (hit)
            *value = found->second;
    }
    *value = value->trimmed();
    return hit;
}

bool CSettingsFile::GetInt(const QString& section, const QString& key, qint32* value) const
{
    QString text;
    if (!GetString(section, key, &text))
        return false;
    *value = NumberOfText(text);
    return true;
}

bool CSettingsFile::GetBool(const QString& section, const QString& key, bool* value) const
{
    QString text;
    if (!GetString(section, key, &text))
        return false;
    *value = text == u"1";
    return true;
}

bool CSettingsFile::GetColor(const QString& section, const QString& key, COLORREF* value) const
{
    QString text;
    if (!GetString(section, key, &text))
        return false;
    quint32 slots[3] = {};
    ParseNumbers(text, slots);
    // A part above 255 spills into its neighbour, as the file's other readers see it.
    *value = text == kNotSetText ? kColorNotSet : slots[0] | slots[1] << 8 | slots[2] << 16;
    return true;
}

// A miss leaves the rectangle or point empty, as a text without numbers does.
bool CSettingsFile::GetRect(const QString& section, const QString& key, CSettingsRect* rect) const
{
    quint32 slots[4] = {};
    const bool hit = GetNumbers(*this, section, key, slots);
    *rect = {qint32(slots[0]), qint32(slots[1]), qint32(slots[2]), qint32(slots[3])};
    return hit;
}

bool CSettingsFile::GetPoint(const QString& section, const QString& key, QPoint* point) const
{
    quint32 slots[2] = {};
    const bool hit = GetNumbers(*this, section, key, slots);
    *point = QPoint(qint32(slots[0]), qint32(slots[1]));
    return hit;
}
