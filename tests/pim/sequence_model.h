// A calendar as plainly as can be told, to hold against what the records, the living cache and a
// fresh load show. Nothing here is clever: series are lists of days found by trying each day.
// Units: days are day numbers, times minutes since day 0 in local time.
#pragma once
#include <QString>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <vector>

inline QString Marked(const QString& subject, bool visible)
{
    return visible ? subject : subject + " hidden";
}

struct CPlainRule {
    enum Kind { Daily, Weekly, Monthly, MonthlyNth, Yearly } What = Daily;
    int Interval = 1, Mask = 0, DayOfMonth = 0, Instance = 0;
    int First = 0;            // the day of the start
    std::optional<int> Until; // the last day
    std::optional<int> Count;

    bool Hits(int day) const;
    // In order up to the limit; the first one always, wherever it is.
    std::set<int> Days(int limit) const;
    QString Text() const;
};

using CShown = std::tuple<int, int, QString>;         // start and end minute, subject
using CDayLines = std::map<int, std::vector<CShown>>; // by day, sorted

struct CPlainChange { // of one occurrence
    bool Deleted = false;
    int Start = 0, End = 0;
    std::optional<QString> Subject;
};

struct CPlainAppointment {
    quint32 Id = 0;
    QString Subject, Category;
    bool AllDay = false;
    int Start = 0, Minutes = 0; // of a series: of its first occurrence
    std::optional<CPlainRule> Rule;
    std::set<int> Days;                  // of the rule
    std::map<int, CPlainChange> Changes; // by original day

    int MinuteOfDay() const { return Start % 1440; }
    int OccurrenceStart(int day) const { return day * 1440 + MinuteOfDay(); }
    void SetRule(const CPlainRule& rule, int limit);
    void SetTime(int minuteOfDay, int minutes); // of a series
    std::vector<CShown> Instances() const;
    std::vector<int> LiveDays() const; // original days of what was not deleted
};

struct CPlainTask {
    quint32 Id = 0;
    QString Subject, Category;
    std::optional<int> Start, Due; // days
    bool Complete = false;
    std::set<int> Days; // of a recurring one

    int Anchor() const { return Start ? *Start : *Due; }
    bool MoveOn(); // to its next date; false after the last
    CShown Shown() const;
};

struct CPlainCalendar {
    std::vector<CPlainAppointment> Appointments;
    std::vector<CPlainTask> Tasks;
    QString Wanted; // the one category that the filter lets through; empty: all

    bool IsVisible(const QString& category) const { return Wanted.isEmpty() || category == Wanted; }
    CDayLines AppointmentDays(int first, int last) const;
    CDayLines TaskDays(int first, int last, int today) const;
};
