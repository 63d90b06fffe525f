// What stands in the environment while the application object is made, and only then: a desktop
// that Qt does not know keeps it from loading that desktop's own theme, which costs more than the
// rest of the start; on handhelds Qt's own window decoration is left out as well.
// Afterwards everything is as it was, for the programs we start and for our own look-ups.
#pragma once
#include <QByteArray>
#include <optional>
#include <vector>

class CStartEnvironment
{
public:
    CStartEnvironment();
    CStartEnvironment(const CStartEnvironment&) = delete;
    CStartEnvironment& operator=(const CStartEnvironment&) = delete;
    ~CStartEnvironment() { Restore(); }
    void Restore();

private:
    void Put(const char* name, const char* value); // null removes it
    struct Saved {
        const char* Name;
        std::optional<QByteArray> Value;
    };
    std::vector<Saved> m_saved;
};

// By the desktop's names, what the machine calls itself, and the kind of its case.
bool IsHandheld(const QByteArray& desktops, const QByteArray& machineInfo, const QByteArray& chassisType);
bool IsHandheld(); // of this machine
