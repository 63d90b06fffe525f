#include "interchange/line_reader.h"

#include "interchange/import_limits.h"

#include <QByteArray>
#include <QStringDecoder>
#include <algorithm>
#include <cstring>

namespace
{
// A quoted-printable value goes on behind a soft line break, whatever the next line begins with.
bool EndsSoftly(const std::string& line)
{
    if (line.empty() || line.back() != '=')
        return false;
    const size_t colon = std::min<size_t>(line.find(':'), 200);
    const QByteArray header = QByteArray(line.data(), qsizetype(std::min(colon, line.size()))).toUpper();
    return header.contains("QUOTED-PRINTABLE");
}

bool IsAscii(const std::string& text)
{
    size_t i = 0;
    for (quint64 word; i + 8 <= text.size(); i += 8) {
        std::memcpy(&word, text.data() + i, 8);
        if (word & 0x8080808080808080ull)
            return false;
    }
    for (; i < text.size(); ++i)
        if (text[i] & 0x80)
            return false;
    return true;
}

// A cut may have split a character; what is left of it goes.
void DropHalfCharacter(std::string& text)
{
    size_t tail = 0;
    while (tail < 3 && tail < text.size() && (text[text.size() - 1 - tail] & 0xC0) == 0x80)
        ++tail;
    if (tail < text.size() && (text[text.size() - 1 - tail] & 0xC0) == 0xC0)
        text.resize(text.size() - 1 - tail);
}

void MakeUtf8(std::string& text)
{
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString decoded = decoder(QByteArrayView(text.data(), qsizetype(text.size())));
    if (!decoder.hasError())
        return;
    text = QString::fromLatin1(text.data(), qsizetype(text.size())).toStdString();
}
} // namespace

CLineReader::CLineReader(ReadBytes read) : m_read(std::move(read)) {}
CLineReader::~CLineReader() = default;

bool CLineReader::Next(CTextLine& line)
{
    for (;;) {
        if (m_pos == m_block.size()) {
            if (!Fill())
                return Finish(line);
            continue; // what was read may be half a character
        }
        if (m_atLineStart) {
            if (TakeLineStart(line))
                return true;
        } else {
            TakeRest();
        }
    }
}

bool CLineReader::Fill()
{
    constexpr qint64 kMark = 4; // the first block must hold a whole byte order mark
    m_block.resize(ImportLimit::BlockBytes);
    qint64 size = 0;
    while (!m_failed && size < (m_firstBlock ? kMark : 1)) {
        const qint64 got = m_read(m_block.data() + size, qint64(m_block.size()) - size);
        m_failed = got < 0;
        if (got <= 0)
            break;
        size += got;
    }
    m_block.resize(size_t(size));
    m_pos = 0;
    m_bytesRead += size;
    if (m_block.empty())
        return false;
    Decode();
    return true;
}

void CLineReader::Decode()
{
    if (m_firstBlock) {
        m_firstBlock = false;
        if (m_block.starts_with("\xEF\xBB\xBF"))
            m_block.erase(0, 3);
        else if (m_block.starts_with("\xFF\xFE"))
            m_utf16 = std::make_unique<QStringDecoder>(QStringConverter::Utf16LE);
        else if (m_block.starts_with("\xFE\xFF"))
            m_utf16 = std::make_unique<QStringDecoder>(QStringConverter::Utf16BE);
    }
    if (!m_utf16)
        return;
    QString text = m_halfPair + (*m_utf16)(QByteArrayView(m_block.data(), qsizetype(m_block.size())));
    m_halfPair.clear();
    if (!text.isEmpty() && text.back().isHighSurrogate()) {
        m_halfPair = text.right(1);
        text.chop(1);
    }
    m_block = text.toStdString();
}

// At the first byte of a line of the file. True when that completes the line before it.
bool CLineReader::TakeLineStart(CTextLine& line)
{
    const char c = m_block[m_pos];
    if (c == '\n' || c == '\r') {
        if (!(c == '\n' && m_afterReturn)) {
            ++m_lineNumber;
            if (m_have && EndsSoftly(m_current.Text)) // it ends in nothing
                m_current.Text.pop_back();
        }
        m_afterReturn = c == '\r';
        ++m_pos;
        return false;
    }
    m_afterReturn = false;
    if (m_have && EndsSoftly(m_current.Text)) {
        m_current.Text.pop_back();
    } else if (m_have && (c == ' ' || c == '\t')) {
        ++m_pos;
    } else if (m_have) {
        return Finish(line);
    } else {
        m_have = true;
        m_current.Number = m_lineNumber;
    }
    m_atLineStart = false;
    return false;
}

// The bytes up to the line's end, or to the block's.
void CLineReader::TakeRest()
{
    const char* const begin = m_block.data() + m_pos;
    size_t size = m_block.size() - m_pos;
    if (const void* newline = std::memchr(begin, '\n', size))
        size = size_t(static_cast<const char*>(newline) - begin);
    if (const void* carriage = std::memchr(begin, '\r', size))
        size = size_t(static_cast<const char*>(carriage) - begin);
    Append(begin, size);
    m_pos += size;
    if (m_pos == m_block.size())
        return;
    m_atLineStart = true;
    m_afterReturn = m_block[m_pos] == '\r';
    ++m_lineNumber;
    ++m_pos;
}

void CLineReader::Append(const char* text, size_t size)
{
    const size_t room = ImportLimit::LineBytes - std::min(ImportLimit::LineBytes, m_current.Text.size());
    m_current.Cut = m_current.Cut || size > room;
    size = std::min(size, room);
    if (!std::memchr(text, 0, size)) {
        m_current.Text.append(text, size);
        return;
    }
    std::remove_copy(text, text + size, std::back_inserter(m_current.Text), '\0');
}

bool CLineReader::Finish(CTextLine& line)
{
    if (!m_have)
        return false;
    line.Text.clear();
    std::swap(line, m_current);
    m_current.Cut = false;
    m_have = false;
    m_atLineStart = true;
    if (!IsAscii(line.Text)) {
        if (line.Cut)
            DropHalfCharacter(line.Text);
        MakeUtf8(line.Text);
    }
    return true;
}
