// What an import has to say: counts, and one line for each thing that was left out.
#pragma once
#include <QString>
#include <functional>

class CImportReport
{
public:
    // Takes one line of text about one line of the file.
    using Sink = std::function<void(int line, const QString& text)>;

    explicit CImportReport(Sink sink = {}) : m_sink(std::move(sink)) {}

    // Something of the file did not arrive.
    void LeftOut(int line, const QString& reason, qint64 count = 1)
    {
        m_leftOut += count;
        Note(line, reason);
    }
    // Everything arrived, but not quite as it stood in the file.
    void Note(int line, const QString& text)
    {
        if (m_sink)
            m_sink(line, text);
    }

    qint64 Created = 0, Updated = 0, Unchanged = 0;
    qint64 LeftOutCount() const { return m_leftOut; }

private:
    Sink m_sink;
    qint64 m_leftOut = 0;
};
