// registry.ini: "[key]" and "name=value" lines. '%' and what would break a line stand as %XX;
// lines that are neither are kept as they are.
#include "platform/registry.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace
{
constexpr qint64 kMaxFile = 4 << 20;
constexpr int kLockAttempts = 500; // of 10 ms

QString& SetFolderPath()
{
    static QString folder;
    return folder;
}

QString FileName() { return CRegistry::Folder() + QStringLiteral("/registry.ini"); }

QString Escaped(const QString& text, const QString& special)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool edge = (i == 0 || i == text.size() - 1) && (c == u' ' || c == u'\t');
        const bool opening = i == 0 && (c == u'[' || c == u';' || c == u'#');
        if (c == u'%' || c.unicode() < 0x20 || edge || opening || special.contains(c))
            result += QStringLiteral("%%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            result += c;
    }
    return result;
}

QString Unescaped(const QString& text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        bool good = false;
        const int code = text[i] == u'%' && i + 2 < text.size() ? text.mid(i + 1, 2).toInt(&good, 16) : 0;
        result += good ? QChar(code) : text[i];
        i += good ? 2 : 0;
    }
    return result;
}

bool Same(const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

bool IsKeyLine(const QString& line) { return line.startsWith(u'[') && line.trimmed().endsWith(u']'); }

QString KeyOf(const QString& line)
{
    const QString trimmed = line.trimmed();
    return Unescaped(trimmed.mid(1, trimmed.size() - 2));
}

// Where a value's line is, and where a new one would go; -1 for none.
struct CPlaceInFile {
    qsizetype value = -1;
    qsizetype end = -1; // after the key's last value
};

CPlaceInFile Find(const QStringList& lines, const QString& key, const QString& name)
{
    CPlaceInFile place;
    bool inside = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (IsKeyLine(lines[i])) {
            inside = Same(KeyOf(lines[i]), key);
            if (inside)
                place.end = i + 1;
            continue;
        }
        const qsizetype equals = lines[i].indexOf(u'=');
        if (!inside || equals < 0 || lines[i].startsWith(u';') || lines[i].startsWith(u'#'))
            continue;
        place.end = i + 1;
        if (place.value < 0 && Same(Unescaped(lines[i].left(equals).trimmed()), name))
            place.value = i;
    }
    return place;
}

// False when there is a file that cannot be read: writing would then lose what it holds.
bool ReadLines(QStringList* lines)
{
    QFile file(FileName());
    lines->clear();
    if (!file.exists())
        return true;
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMaxFile)
        return false;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return false;
    *lines = QString::fromUtf8(bytes).split(u'\n');
    for (QString& line : *lines) {
        if (line.endsWith(u'\r'))
            line.chop(1);
    }
    while (!lines->isEmpty() && lines->last().isEmpty())
        lines->removeLast();
    return true;
}

bool WriteLines(const QStringList& lines)
{
    QSaveFile file(FileName());
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray bytes = lines.join(u'\n').toUtf8();
    if (!bytes.isEmpty())
        bytes += '\n';
    return file.write(bytes) == bytes.size() && file.commit();
}

// Held while a value is changed; the kernel lets go of it when the process dies.
class CRegistryLock
{
public:
    CRegistryLock()
    {
        const QByteArray name = QFile::encodeName(FileName() + QStringLiteral(".lock"));
        m_file = open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        for (int i = 0; m_file >= 0 && !m_held && i < kLockAttempts; ++i) {
            m_held = flock(m_file, LOCK_EX | LOCK_NB) == 0;
            if (!m_held)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    ~CRegistryLock()
    {
        if (m_file >= 0)
            close(m_file);
    }
    CRegistryLock(const CRegistryLock&) = delete;
    CRegistryLock& operator=(const CRegistryLock&) = delete;
    bool IsHeld() const { return m_held; }

private:
    int m_file = -1;
    bool m_held = false;
};
} // namespace

void CRegistry::SetFolder(const QString& folder) { SetFolderPath() = folder; }

QString CRegistry::Folder()
{
    if (!SetFolderPath().isEmpty())
        return SetFolderPath();
    // A relative path in the variable counts as unset.
    const QString base = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (QDir::isAbsolutePath(base))
        return base + QStringLiteral("/tessera");
    return QDir::homePath() + QStringLiteral("/.config/tessera");
}

std::optional<QString> CRegistry::ReadString(const QString& key, const QString& name)
{
    QStringList lines;
    if (!ReadLines(&lines))
        return std::nullopt;
    const CPlaceInFile place = Find(lines, key, name);
    if (place.value < 0)
        return std::nullopt;
    const QString& line = lines[place.value];
    return Unescaped(line.mid(line.indexOf(u'=') + 1).trimmed());
}

QStringList CRegistry::SubKeys(const QString& key)
{
    QStringList lines, names;
    if (!ReadLines(&lines))
        return names;
    const QString above = key + u'\\';
    for (const QString& line : lines) {
        const QString whole = IsKeyLine(line) ? KeyOf(line) : QString();
        if (!whole.startsWith(above, Qt::CaseInsensitive))
            continue;
        const QString name = whole.mid(above.size()).section(u'\\', 0, 0);
        if (!name.isEmpty() && !names.contains(name, Qt::CaseInsensitive))
            names << name;
    }
    return names;
}

bool CRegistry::WriteString(const QString& key, const QString& name, const QString& value)
{
    if (!QDir().mkpath(Folder()))
        return false;
    const CRegistryLock lock;
    QStringList lines;
    if (!lock.IsHeld() || !ReadLines(&lines))
        return false;
    const QString line = Escaped(name, QStringLiteral("=")) + u'=' + Escaped(value, QString());
    const CPlaceInFile place = Find(lines, key, name);
    if (place.value >= 0)
        lines[place.value] = line;
    else if (place.end >= 0)
        lines.insert(place.end, line);
    else
        lines << u'[' + Escaped(key, QStringLiteral("]")) + u']' << line;
    return WriteLines(lines);
}

bool CRegistry::DeleteValue(const QString& key, const QString& name)
{
    if (!QFile::exists(FileName()))
        return true;
    const CRegistryLock lock;
    QStringList lines;
    if (!lock.IsHeld() || !ReadLines(&lines))
        return false;
    const CPlaceInFile place = Find(lines, key, name);
    if (place.value < 0)
        return true;
    lines.removeAt(place.value);
    return WriteLines(lines);
}
