// The locale in which the user reads messages, by the environment alone.
#pragma once
#include <QString>

QString MessagesLocaleName(); // "de_DE"; empty for the plain C locale
