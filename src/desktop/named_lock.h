// A lock of the session by name, held by one process at a time. It is a flag: whether somebody
// holds it can be asked without taking it, and nobody waits for it. It goes with its holder,
// however that ends.
// Ownership: the object holds it; the file behind it stays.
#pragma once
#include <QByteArray>

class CNamedLock
{
public:
    explicit CNamedLock(QByteArray name) : m_name(std::move(name)) {}
    CNamedLock(const CNamedLock&) = delete;
    CNamedLock& operator=(const CNamedLock&) = delete;
    ~CNamedLock() { Release(); }

    bool Take(); // false when another process, or another object of this one, holds it
    void Release();
    bool IsTaken() const { return m_file >= 0; }
    static bool Exists(const QByteArray& name); // held by anybody

private:
    QByteArray m_name;
    int m_file = -1;
};
