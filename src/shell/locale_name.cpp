#include "shell/locale_name.h"

#include <QByteArray>

QString MessagesLocaleName()
{
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        QByteArray name = qgetenv(variable);
        if (name.isEmpty())
            continue;
        for (const char end : {'.', '@'}) {
            if (const qsizetype at = name.indexOf(end); at >= 0)
                name.truncate(at);
        }
        return name == "C" || name == "POSIX" ? QString() : QString::fromLatin1(name);
    }
    return {};
}
