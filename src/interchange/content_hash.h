// A fast hash of content, the same on every machine: decides whether an item has changed.
// Not for use against somebody who wants two texts to collide.
#pragma once
#include <QtGlobal>
#include <cstring>
#include <string_view>

class CContentHash
{
public:
    explicit CContentHash(quint64 seed = 0) : m_state(seed ^ 0x9E3779B97F4A7C15ull) {}

    void Add(std::string_view text)
    {
        size_t i = 0;
        for (; i + 8 <= text.size(); i += 8)
            Mix(Load(text.data() + i, 8));
        if (i < text.size())
            Mix(Load(text.data() + i, text.size() - i));
        Mix(text.size() + 0x51ED270B0A1C6F3Dull);
    }
    quint64 Value() const
    {
        quint64 x = m_state;
        x ^= x >> 32;
        x *= 0xD6E8FEB86659FD93ull;
        x ^= x >> 32;
        return x;
    }

private:
    // Little-endian whatever the machine.
    static quint64 Load(const char* bytes, size_t size)
    {
        quint64 word = 0;
        for (size_t i = 0; i < size; ++i)
            word |= quint64(uchar(bytes[i])) << (8 * i);
        return word;
    }
    void Mix(quint64 word)
    {
        m_state ^= word;
        m_state *= 0xFF51AFD7ED558CCDull;
        m_state ^= m_state >> 33;
        m_state *= 0xC4CEB9FE1A85EC53ull;
        m_state ^= m_state >> 29;
    }

    quint64 m_state;
};

inline quint64 HashOf(std::string_view text, quint64 seed = 0)
{
    CContentHash hash(seed);
    hash.Add(text);
    return hash.Value();
}
