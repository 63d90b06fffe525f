// Items as JSON, one object per line, written by hand into one buffer.
// Shape: keys always in the same order; texts as UTF-8, with what JSON forbids escaped.
#pragma once
#include "pim/day_items.h"
#include "util/date_time.h"

#include <QString>
#include <climits>
#include <string_view>
#include <vector>

class CCategoryStore;

class CAgendaJson
{
public:
    explicit CAgendaJson(const CCategoryStore& categories) : m_categories(categories) {}
    void BeginDay(DATE day) { m_rowDay = day; } // NO_DATE: the rows that follow have none
    void AddAppointment(const CAppointment& item, const QString& uid);
    void AddTask(const CTask& item, const QString& uid);
    // Writes what has gathered to standard output; false when that fails.
    bool Flush();
    bool IsFull() const { return m_used >= kFlushBytes; }

private:
    static constexpr size_t kFlushBytes = 1 << 18;
    struct CFields { // that the kinds of items do not have alike
        std::string_view Kind;
        const QString& Location;
        DATE End, Occurrence;
        bool AllDay = false, HasAttendees = false, Conflict = false;
        int BusyStatus = 0;
    };
    void AddItem(const CPimItem& item, const QString& uid, const CFields& fields);
    void Reserve(size_t bytes); // room for so many more
    void Put(char c) { m_buffer[m_used++] = c; }
    void Put(std::string_view text);
    void PutTwo(int number);
    void PutUtf8(char32_t c);
    void Text(const QString& text);
    void Number(int number);
    void Bool(std::string_view key, bool value);
    void Date(int day);
    void Moment(DATE date); // null for NO_DATE
    void CategoryNames(const CCategorySet& set);

    const CCategoryStore& m_categories;
    std::vector<char> m_buffer; // as long as was ever reserved
    size_t m_used = 0;
    DATE m_rowDay = NO_DATE;
    int m_lastDay = INT_MIN;
    char m_lastDate[10] = {}; // of m_lastDay
};
