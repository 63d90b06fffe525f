#include "shell/instance_handover.h"
#include "desktop/instance.h"
#include "platform/registry.h"
#include "shell/command_request.h"

namespace
{
const QString kValueName = QStringLiteral("CallCmdLine");
constexpr int kBufferCharacters = 260; // with the terminating zero
constexpr int kAttempts = 20;          // an instance may end between being found and being told
constexpr int kClaimMs = 200;
constexpr int kShowNormal = 5;

bool HandOver(const CCommandRequest& request, const QByteArray& name)
{
    auto window = CInstanceWindow::Find(name);
    if (!window)
        return false;
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return window->Post({kMessageShow, kShowNormal, 0, token}) && PostCommandLine(request, *window);
}

void TellToEnd(const QByteArray& name)
{
    if (const auto window = CInstanceWindow::Find(name))
        (void)window->Post({kMessageClose, 0, 0, {}});
}
} // namespace

QByteArray SingleItemMutexOf(const QByteArray& instance)
{
    return kSingleItemMutex + instance.mid(InstanceName(kWindowClass).size());
}

bool CheckRunningInstance(CInstance& own, const CCommandRequest& request)
{
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        // A window beside the mutex belongs to a process that sits in one item's form: it makes room.
        if (CNamedLock::Exists(SingleItemMutexOf(own.Name())))
            TellToEnd(own.Name());
        else if (HandOver(request, own.Name()))
            return true;
        if (own.ClaimWithin(kClaimMs))
            return false;
    }
    return false;
}

bool PostCommandLine(const CCommandRequest& request, CInstanceWindow& window)
{
    CRegistry::WriteString(kRegistryKey, kValueName, request.RawText);
    return window.Post({kMessageRequest, 0, 0, {}});
}

bool ReadPostedCommandLine(CCommandRequest& request)
{
    request.Clear();
    const auto text = CRegistry::ReadString(kRegistryKey, kValueName);
    CRegistry::DeleteValue(kRegistryKey, kValueName);
    if (!text || text->isEmpty() || text->size() >= kBufferCharacters)
        return false;
    ParseCommandLine(request, *text);
    return true;
}
