// A bar on standard error while something long runs; nothing when that is no terminal.
#pragma once
#include <QElapsedTimer>
#include <QString>

class CProgressBar
{
public:
    CProgressBar(const QString& label, qint64 total); // total 0: only the amount is shown
    ~CProgressBar() { Clear(); }
    void Show(qint64 done);
    void Clear(); // takes it off the line, for another text or for good

private:
    QString m_label;
    qint64 m_total;
    bool m_isTerminal;
    bool m_shown = false;
    QElapsedTimer m_clock;
    qint64 m_last = -1000;
};
