// Items as JSON, one object per line, written by hand into one buffer.
// Shape: keys always in the same order; texts as UTF-8, with what JSON forbids escaped.
#pragma once
#include "pim/day_items.h"
#include "util/date_time.h"

#include <QString>
#include <string>

class CCategoryStore;

class CAgendaJson
{
public:
    explicit CAgendaJson(const CCategoryStore& categories) : m_categories(categories) {}
    void BeginDay(int day);
    void AddAppointment(const CAppointment& item, const QString& uid);
    // Writes what has gathered to standard output; false when that fails.
    bool Flush();
    bool IsFull() const { return m_text.size() >= kFlushBytes; }

private:
    static constexpr size_t kFlushBytes = 1 << 20;
    void Text(const QString& text);
    void Number(int number);
    void Bool(const char* key, bool value);
    void Date(int day);
    void Moment(DATE date); // null for NO_DATE
    void CategoryNames(const CCategorySet& set);

    const CCategoryStore& m_categories;
    std::string m_text;
    std::string m_rowHead; // the same for all rows of a day
    int m_lastDay = 0;
    std::string m_lastDate; // of m_lastDay
};
