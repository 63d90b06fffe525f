// The result of an operation that can lose something: a kind and a text for the user.
// Returned by value, never thrown and never swallowed.
#pragma once
#include <QString>

enum class StatusKind { Ok, NotFound, Corrupt, Busy, Invalid, Io, Full };

class [[nodiscard]] CStatus
{
public:
    CStatus() = default;
    CStatus(StatusKind kind, QString text) : m_kind(kind), m_text(std::move(text)) {}

    bool IsOk() const { return m_kind == StatusKind::Ok; }
    explicit operator bool() const { return IsOk(); }
    StatusKind Kind() const { return m_kind; }
    const QString& Text() const { return m_text; }

private:
    StatusKind m_kind = StatusKind::Ok;
    QString m_text;
};
