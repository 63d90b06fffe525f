// Unfolded lines of a text file, read in blocks.
// Takes any of LF, CR LF and CR as a line's end, drops NUL bytes and byte order marks, reads
//   UTF-16 with a mark, and a line that is not UTF-8 as Latin-1. Blank lines count for nothing,
//   not even between the halves of a folded line.
// Units: line numbers count from 1 and are those of the file, before unfolding.
// Memory: one block and one line; a line past the limit is cut and says so.
#pragma once
#include <QString>
#include <functional>
#include <memory>
#include <string>

class QStringDecoder;

struct CTextLine {
    std::string Text; // UTF-8
    int Number = 0;
    bool Cut = false; // the file's line was longer than we hold
};

class CLineReader
{
public:
    // Fills the buffer with up to that many bytes; 0 at the end, below 0 on an error.
    using ReadBytes = std::function<qint64(char*, qint64)>;

    explicit CLineReader(ReadBytes read);
    ~CLineReader();
    bool Next(CTextLine& line); // false at the end of the file
    bool Failed() const { return m_failed; }
    qint64 BytesRead() const { return m_bytesRead; }

private:
    bool Fill();
    void Decode();
    bool TakeLineStart(CTextLine& line);
    void TakeRest();
    bool Finish(CTextLine& line);
    void Append(const char* text, size_t size);

    ReadBytes m_read;
    std::unique_ptr<QStringDecoder> m_utf16;
    QString m_halfPair; // the first half of a character whose second is still to come
    std::string m_block;
    size_t m_pos = 0;
    CTextLine m_current;
    bool m_have = false; // m_current holds the beginning of a line
    bool m_atLineStart = true;
    bool m_afterReturn = false; // the last byte was a CR, whose LF may follow
    bool m_firstBlock = true;
    bool m_failed = false;
    int m_lineNumber = 1;
    qint64 m_bytesRead = 0;
};
