// Cuts a stream of calendars and cards into its top-level components, one held at a time.
// Shape: a component is the unfolded lines between its BEGIN and END in one text, nested
//   components with their own BEGIN and END lines. Lines before the first calendar, properties
//   of the calendar and components that nobody wants are read over and counted.
// Errors: what is not closed, too deep or too long is left out and told; END without BEGIN is
//   told and read over. Nothing of the file can make it hold more than the limits.
#pragma once
#include "interchange/import_report.h"
#include "interchange/line_reader.h"

#include <string>
#include <string_view>
#include <vector>

struct CComponent {
    struct Line {
        quint32 Offset = 0, Length = 0;
        int Number = 0;
    };
    std::string Name; // upper case
    std::string Text; // lines behind one another, each with a newline
    std::vector<Line> Lines;
    int FirstLine = 0;

    std::string_view LineText(const Line& line) const { return {Text.data() + line.Offset, line.Length}; }
    void Clear();
    void AddLine(std::string_view text, int number);
};

class CComponentReader
{
public:
    CComponentReader(CLineReader::ReadBytes read, CImportReport& report);

    // The next VEVENT, VTODO, VCARD or VTIMEZONE. False at the end of the file.
    bool Next(CComponent& component);

    bool SawCalendar() const { return m_sawCalendar; }
    bool Failed() const { return m_lines.Failed(); }
    qint64 BytesRead() const { return m_lines.BytesRead(); }
    const std::string& Method() const { return m_method; } // of the calendar, upper case

private:
    // Components that are counted and told at the end.
    struct Skipped {
        const char* Name;
        const char* Told;
        int FirstLine = 0;
        qint64 Count = 0;
    };

    bool Begin(const std::string& name);
    bool End(const std::string& name, CComponent& component);
    void StartComponent(const std::string& name);
    void DropOpen();
    void Store(std::string_view text);
    void StoreNested(std::string_view text);
    void TellSkipped();
    void ReadCalendarProperty(std::string_view text);
    bool ExpectsCard() const;
    bool ContinueEncoded(std::string_view text);
    void MergeDateList(std::string_view text, size_t header);

    CLineReader m_lines;
    CImportReport& m_report;
    CTextLine m_line;
    CComponent m_open;                // being collected
    std::vector<std::string> m_stack; // names of what is open below the calendar
    int m_tooDeep = 0;                // levels beyond the limit
    bool m_wanted = false;            // m_open is handed out when it closes
    bool m_sawCalendar = false, m_inCalendar = false;
    bool m_toldDepth = false, m_toldLong = false, m_toldEnd = false;
    size_t m_ordinaryBytes = 0, m_longBytes = 0, m_dateBytes = 0;
    std::string m_method;
    std::vector<Skipped> m_skipped;
};

// Upper case for ASCII letters alone.
std::string AsciiUpper(std::string_view text);
// Compares a text with one in upper case, letters of any case alike.
bool EqualsUpper(std::string_view text, std::string_view upper);
