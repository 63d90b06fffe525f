#include "settings/filter.h"

#include "settings/settings_file.h"

#include <QStringList>

namespace
{
const QString kSeparator = QStringLiteral("@@!@@");

std::set<qint32> NumbersOf(const QString& text, const ICategoryNames& names)
{
    std::set<qint32> numbers;
    for (const QString& piece : text.split(u',')) {
        const QString name = piece.trimmed();
        if (name.isEmpty())
            continue;
        if (const std::optional<qint32> number = names.NumberOf(name))
            numbers.insert(*number);
    }
    return numbers;
}

QString NamesOf(const std::set<qint32>& numbers, const ICategoryNames* names)
{
    QStringList list;
    for (const qint32 number : numbers) {
        if (const std::optional<QString> name = names ? names->NameOf(number) : std::nullopt)
            list += *name;
    }
    return list.join(QStringLiteral(", "));
}
// A field whose end would run into the separator behind it loses that end: the others are safe then.
QString Field(QString text)
{
    while ((text + kSeparator).indexOf(kSeparator) < text.size())
        text.chop(1);
    return text;
}
} // namespace

bool CFilter::IsActive() const
{
    return IncludeMode != 0 || ExcludeMode != 0 || !IncludeIds.empty() || !ExcludeIds.empty();
}

void CFilter::Clear()
{
    IncludeIds.clear();
    ExcludeIds.clear();
    IncludeMode = ExcludeMode = kAnyOf;
    m_includeText.clear();
    m_excludeText.clear();
}

void CFilter::SetNoCategories()
{
    Clear();
    IncludeMode = kNoCategories;
}

void CFilter::FromText(const QString& text, const ICategoryNames* names)
{
    Clear();
    if (text.isEmpty())
        return;
    const QStringList fields = text.split(kSeparator);
    const auto field = [&](int index) { return fields.value(index); };
    Name = field(0);
    IncludeMode = NumberOfText(field(1));
    ExcludeMode = NumberOfText(field(3));
    if (names) {
        IncludeIds = NumbersOf(field(2), *names);
        ExcludeIds = NumbersOf(field(4), *names);
    } else {
        m_includeText = field(2);
        m_excludeText = field(4);
    }
}

QString CFilter::ToText(const ICategoryNames* names) const
{
    const QString include = m_includeText.isEmpty() ? NamesOf(IncludeIds, names) : m_includeText;
    const QString exclude = m_excludeText.isEmpty() ? NamesOf(ExcludeIds, names) : m_excludeText;
    return QStringList{Field(Name), QString::number(IncludeMode), Field(include), QString::number(ExcludeMode),
                       Field(exclude)}
        .join(kSeparator);
}
