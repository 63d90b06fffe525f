// The commands of tessera-pim: one function each, called by main.cpp with what was parsed.
// Result: the exit code of the program.
#pragma once
#include <QString>
#include <string>
#include <vector>

enum ExitCode : int {
    kExitDone = 0,    // all done
    kExitLeftOut = 1, // done, but something was left out or found at fault
    kExitNothing = 2, // wrong usage, or nothing could be done
};

struct CImportOptions {
    QString Volume;
    std::vector<std::string> Files; // as the shell gave them; "-" is standard input
};
struct CAgendaOptions {
    QString Volume;
    int FirstDay = 0, LastDay = 0; // day numbers, both inclusive, in order
    bool Json = false;
};
struct CSearchOptions {
    QString Volume;
    QString Text;
    bool StartsWith = false; // else the subject contains the text
    bool Tasks = true, Appointments = true;
    int Limit = 0; // 0 for none
    bool Json = false;
};
struct CExportOptions {
    QString Volume;
    int FirstDay = 0, LastDay = 0; // day numbers, both inclusive; LastDay 0: everything
    QString Output;                // empty: standard output
};
struct CItemOptions {
    QString Volume;
    quint32 ItemId = 0;
};
struct CCheckOptions {
    QString Volume;
};
struct CBackupOptions {
    QString Volume;
    QString File;
};

int RunImport(const CImportOptions& options);
int RunAgenda(const CAgendaOptions& options);
int RunSearch(const CSearchOptions& options);
int RunExport(const CExportOptions& options);
int RunComplete(const CItemOptions& options);
int RunDelete(const CItemOptions& options);
int RunCheck(const CCheckOptions& options);
int RunBackup(const CBackupOptions& options);

// One line on standard error, "tessera-pim: text".
void PrintError(const QString& text);
