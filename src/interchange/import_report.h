// What an import has to say: counts, and one line for each thing that was left out.
#pragma once
#include <QString>
#include <functional>
#include <vector>

class CImportReport
{
public:
    // Takes one line of text about one line of the file.
    using Sink = std::function<void(int line, const QString& text)>;

    explicit CImportReport(Sink sink = {}) : m_sink(std::move(sink)) {}

    // Something of the file did not arrive.
    void LeftOut(int line, const QString& reason, qint64 count = 1) { Tell({line, reason, count}); }
    // Everything arrived, but not quite as it stood in the file.
    void Note(int line, const QString& text) { Tell({line, text, 0}); }

    // What is told from now on waits: it may be told again later, when more of the file is known.
    void Hold() { m_holds = true; }
    void Drop()
    {
        m_holds = false;
        m_held.clear();
    }
    void Release()
    {
        m_holds = false;
        for (const Told& told : m_held)
            Tell(told);
        m_held.clear();
    }

    qint64 Created = 0, Updated = 0, Unchanged = 0;
    qint64 LeftOutCount() const { return m_leftOut; }

private:
    struct Told {
        int Line;
        QString Text;
        qint64 LeftOut;
    };
    void Tell(const Told& told)
    {
        if (m_holds) {
            m_held.push_back(told);
            return;
        }
        m_leftOut += told.LeftOut;
        if (m_sink)
            m_sink(told.Line, told.Text);
    }

    Sink m_sink;
    qint64 m_leftOut = 0;
    bool m_holds = false;
    std::vector<Told> m_held;
};
