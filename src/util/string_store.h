// The texts of the user interface by number. English is built in; catalogues (.qm, id-based)
// lie over it, one missing text falls back by itself.
#pragma once
#include <QString>
#include <QStringList>

// Finds ActiveLang.qm in the install folder (it wins), else the catalogue of the locale in the
// share folder, and puts it over the English texts. Safe to call again.
void LoadLanguageLibrary(const QString& installFolder, const QString& shareFolder, const QString& localeName);
QString GetString(int id); // empty for a number that no text has
// Puts the texts into the places %d and %s in their order; %1$s and %2$d name theirs by number.
QString FillText(const QString& format, const QStringList& texts);
