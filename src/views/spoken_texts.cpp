#include "views/spoken_texts.h"
#include "pim/day_items.h"
#include "platform/locale.h"
#include "settings/item_text.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QStringList>

namespace
{
const QString kSeparator = QStringLiteral(", ");
constexpr qsizetype kMostItems = 30; // that somebody would listen to

QString Joined(QStringList texts)
{
    texts.removeAll(QString());
    return texts.join(kSeparator);
}
} // namespace

CPaintedPart SpokenItem(const CPimItem& item, int day)
{
    CPaintedPart part;
    if (item.GetKind() == kKindTask) {
        const auto& task = static_cast<const CTask&>(item);
        part.Name = Joined({task.Subject, task.End == NO_DATE ? QString() : SpokenDate(DayNumber(task.End))});
        part.Checkable = true;
        part.Checked = task.Complete;
        return part;
    }
    const auto& appointment = static_cast<const CAppointment&>(item);
    const QString time =
        appointment.AllDay || IsSpecialEvent(item)
            ? QString()
            : FormatTimeRange(item.Start, item.End, day, false, false, appointment.EndsPreviousDay);
    part.Name = Joined({time, item.Subject, appointment.Location});
    return part;
}

QString SpokenDate(int day)
{
    return GetDateFormat(DateFlag::Long, SystemTimeOf(day));
}

QString SpokenDay(const CDayItems& day, bool withItems)
{
    QStringList texts{SpokenDate(day.Day)};
    qsizetype count = 0;
    const auto add = [&](const CPimItem& item) {
        if (!item.Visible)
            return;
        ++count;
        if (withItems && count <= kMostItems)
            texts << SpokenItem(item, day.Day).Name;
    };
    for (const auto& item : day.Appointments)
        add(*item);
    for (const auto& task : day.Tasks)
        add(*task);
    if (!withItems && count > 0)
        texts << FillText(GetString(StrSearchItemCount), {QString::number(count)});
    return Joined(texts);
}
