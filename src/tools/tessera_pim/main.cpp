// tessera-pim: the calendar's volume from the command line.
#include "platform/system_time.h"
#include "tools/tessera_pim/commands.h"

#include <CLI/CLI.hpp>
#include <QFile>
#include <QStandardPaths>
#include <cstdio>

namespace
{
const int kFirstDay = DayNumberOf(1601, 1, 2), kLastDay = DayNumberOf(4500, 12, 31); // of an open range

// An ISO date as a day number; 0 when it is none.
int ParseIsoDay(const std::string& text)
{
    int year = 0, month = 0, day = 0, used = 0;
    if (std::sscanf(text.c_str(), "%4d-%2d-%2d%n", &year, &month, &day, &used) != 3 ||
        size_t(used) != text.size())
        return 0;
    if (year < 1900 || month < 1 || month > 12 || day < 1 || day > 31)
        return 0;
    const int number = DayNumberOf(year, month, day);
    int y = 0, m = 0, d = 0;
    CivilOfDayNumber(number, &y, &m, &d);
    return y == year && m == month && d == day ? number : 0;
}

// An item's identifier, signed as agenda prints it or unsigned; 0 when it is none.
quint32 ParseItemId(const std::string& text)
{
    bool good = false;
    const qint64 number = QByteArray::fromStdString(text).toLongLong(&good);
    return good && number >= INT32_MIN && number <= UINT32_MAX ? quint32(number) : 0;
}

const CLI::Validator kItemId(
    [](std::string& text) {
        return ParseItemId(text) ? std::string() : "not an identifier as agenda --json prints it: " + text;
    },
    "ID");

const CLI::Validator kIsoDay(
    [](std::string& text) {
        return ParseIsoDay(text) ? std::string() : "not a day like 2026-03-31: " + text;
    },
    "DAY");

QString DefaultVolume()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/tessera/pim.vol");
}

struct Arguments {
    std::string Volume, From, To, BackupFile;
    std::vector<std::string> Files;
    bool Json = false;
    std::string Text, Type = "both";
    bool StartsWith = false;
    int Limit = 0;
    std::string Output, Id;
};

int Dispatch(const CLI::App& app, const Arguments& arguments)
{
    const QString volume =
        arguments.Volume.empty() ? DefaultVolume() : QFile::decodeName(arguments.Volume.c_str());
    if (app.got_subcommand("import"))
        return RunImport({volume, arguments.Files});
    if (app.got_subcommand("agenda")) {
        const int first = ParseIsoDay(arguments.From), last = ParseIsoDay(arguments.To);
        if (last < first) {
            PrintError(QStringLiteral("the last day lies before the first"));
            return kExitNothing;
        }
        return RunAgenda({volume, first, last, arguments.Json});
    }
    if (app.got_subcommand("search")) {
        const bool tasks = arguments.Type != "appointments", appointments = arguments.Type != "tasks";
        return RunSearch({volume, QFile::decodeName(arguments.Text.c_str()), arguments.StartsWith, tasks,
                          appointments, arguments.Limit, arguments.Json});
    }
    if (app.got_subcommand("export")) {
        const bool hasFrom = !arguments.From.empty(), hasTo = !arguments.To.empty();
        const int first = hasFrom ? ParseIsoDay(arguments.From) : kFirstDay;
        const int last = hasTo ? ParseIsoDay(arguments.To) : hasFrom ? kLastDay : 0;
        if (last != 0 && last < first) {
            PrintError(QStringLiteral("the last day lies before the first"));
            return kExitNothing;
        }
        return RunExport({volume, first, last, QFile::decodeName(arguments.Output.c_str())});
    }
    if (app.got_subcommand("complete"))
        return RunComplete({volume, ParseItemId(arguments.Id)});
    if (app.got_subcommand("delete"))
        return RunDelete({volume, ParseItemId(arguments.Id)});
    if (app.got_subcommand("check"))
        return RunCheck({volume});
    return RunBackup({volume, QFile::decodeName(arguments.BackupFile.c_str())});
}

void AddExport(CLI::App& app, Arguments& arguments)
{
    CLI::App* command = app.add_subcommand(
        "export", "Writes the calendar and, behind it, the contacts as iCalendar and vCard");
    command->add_option("--from", arguments.From, "Only what is there on this day or later")
        ->type_name("DAY")
        ->check(kIsoDay);
    command->add_option("--to", arguments.To, "Only what is there on this day or earlier")
        ->type_name("DAY")
        ->check(kIsoDay);
    command
        ->add_option(
            "--output", arguments.Output,
            "The file to write, else standard output; one that ends in .ics gets no contacts, one in "
            ".vcf nothing but contacts")
        ->type_name("FILE");
}

void AddItemCommand(CLI::App& app, Arguments& arguments, const char* name, const char* description)
{
    CLI::App* command = app.add_subcommand(name, description);
    command->add_option("id", arguments.Id, "The item, as agenda --json and search --json print it")
        ->type_name("ID")
        ->required()
        ->check(kItemId);
}

void AddSearch(CLI::App& app, Arguments& arguments)
{
    CLI::App* search = app.add_subcommand("search", "Finds items by their subject, in any case of letters");
    search->add_option("text", arguments.Text, "What the subject contains")
        ->type_name("TEXT")
        ->required()
        ->check([](const std::string& text) { return text.empty() ? "the text is empty" : std::string(); });
    search->add_flag("--starts-with", arguments.StartsWith, "What it starts with instead");
    search->add_option("--type", arguments.Type, "Which items to look at; both without this")
        ->type_name("TYPE")
        ->check(CLI::IsMember({"appointments", "tasks", "both"}));
    search->add_option("--limit", arguments.Limit, "End after so many")
        ->type_name("N")
        ->check(CLI::Range(1, 1000000000));
    search->add_flag("--json", arguments.Json, "One object per line");
}
} // namespace

void PrintError(const QString& text)
{
    std::fprintf(stderr, "tessera-pim: %s\n", text.toLocal8Bit().constData());
}

int main(int argc, char** argv)
{
    CLI::App app{"Works on the calendar's volume.", "tessera-pim"};
    Arguments arguments;
    app.set_version_flag("--version", "tessera-pim " TESSERA_VERSION);
    app.add_option("--volume", arguments.Volume,
                   "The volume; else TESSERA_VOLUME, else $XDG_DATA_HOME/tessera/pim.vol")
        ->type_name("FILE")
        ->envname("TESSERA_VOLUME");
    app.require_subcommand(1);
    app.fallthrough();

    CLI::App* import = app.add_subcommand("import", "Takes in iCalendar and vCard files");
    import->add_option("files", arguments.Files, "Files to read; - is standard input")
        ->type_name("FILE")
        ->required();
    CLI::App* agenda = app.add_subcommand("agenda", "Prints what the days FROM to TO hold");
    agenda->add_option("from", arguments.From, "First day, as 2026-03-01")
        ->type_name("FROM")
        ->required()
        ->check(kIsoDay);
    agenda->add_option("to", arguments.To, "Last day, inclusive")
        ->type_name("TO")
        ->required()
        ->check(kIsoDay);
    agenda->add_flag("--json", arguments.Json, "One object per line");
    AddSearch(app, arguments);
    AddExport(app, arguments);
    AddItemCommand(app, arguments, "complete", "Completes a task; a recurring one moves to its next date");
    AddItemCommand(app, arguments, "delete", "Deletes an appointment, a whole series, a task or a contact");
    app.add_subcommand("check", "Tests the volume, its records and blobs");
    CLI::App* backup = app.add_subcommand("backup", "Writes a consistent copy while others write");
    backup->add_option("file", arguments.BackupFile, "The copy to write")->type_name("FILE")->required();

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kExitDone : kExitNothing;
    }
    return Dispatch(app, arguments);
}
