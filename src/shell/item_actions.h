// What a command does to one item: deleting, duplicating, completing. The cache learns of it by the notice.
// Errors: a failed action tells why in a message; the volume is as it was then.
#pragma once
#include "util/date_time.h"

#include <QString>

class QWidget;

// The selected item, copied: nothing of the cache is kept across a question.
struct CItemTarget {
    int Kind = 0; // ItemKind; 0 none
    quint32 ItemId = 0;
    int Day = 0; // of a series: the occurrence's original day, else the shown one
    QString Subject;
    bool Complete = false; // of a task
};

class CItemActions
{
public:
    void Delete(const CItemTarget& target, QWidget* owner); // asks before
    void Duplicate(const CItemTarget& target, QWidget* owner);
    void Beam(const CItemTarget& target, QWidget* owner); // out of the device, as the user chooses
    void ToggleComplete(const CItemTarget& target, QWidget* owner); // of a task; asks when it is so set
};
// The question's text: the beginning, one blank, the subject, the end.
QString ItemQuestion(int beginningId, const QString& subject);
