#include "shell/options.h"
#include "platform/clock.h"
#include "util/date_time.h"

#include <QRegularExpression>
#include <functional>

namespace
{
constexpr int kMaxSide = 8192; // of a snapshot

struct OptionRow {
    const char* Name;
    bool HasValue;
    // False when the value is not one of the option's.
    bool (*Take)(COptions& options, const QString& value);
};

bool TakeHelp(COptions& options, const QString&)
{
    options.What = COptions::Action::Help;
    return true;
}

bool TakeVersion(COptions& options, const QString&)
{
    options.What = COptions::Action::Version;
    return true;
}

bool TakeVolume(COptions& options, const QString& value)
{
    options.Volume = value;
    return !value.isEmpty();
}

bool TakeDensity(COptions& options, const QString& value)
{
    options.Density = value.toInt();
    return options.Density == 96 || options.Density == 192 || options.Density == 288 ||
           options.Density == 384;
}

bool TakeSnapshot(COptions& options, const QString& value)
{
    options.What = COptions::Action::Snapshot;
    options.SnapshotFile = value;
    return !value.isEmpty();
}

bool TakeSize(COptions& options, const QString& value)
{
    static const QRegularExpression form(QStringLiteral("^([0-9]{1,5})x([0-9]{1,5})$"));
    const auto match = form.match(value);
    options.Size = QSize(match.captured(1).toInt(), match.captured(2).toInt());
    return match.hasMatch() && options.Size.width() >= 1 && options.Size.height() >= 1 &&
           options.Size.width() <= kMaxSide && options.Size.height() <= kMaxSide;
}

bool TakeNow(COptions& options, const QString& value)
{
    qint64 moment = 0;
    options.Now = value;
    return ParseMoment(value, &moment);
}

bool TakeSearch(COptions& options, const QString& value)
{
    options.Search = value;
    return value.size() >= 2; // as the search itself
}

constexpr OptionRow kOptions[] = {
    {"--help", false, TakeHelp},    {"-h", false, TakeHelp},          {"--version", false, TakeVersion},
    {"--volume", true, TakeVolume}, {"--density", true, TakeDensity}, {"--snapshot", true, TakeSnapshot},
    {"--size", true, TakeSize},     {"--now", true, TakeNow},         {"--search", true, TakeSearch},
};

const OptionRow* FindOption(const QString& name)
{
    for (const OptionRow& row : kOptions) {
        if (name == QLatin1String(row.Name))
            return &row;
    }
    return nullptr;
}

COptions Faulty(const QString& text)
{
    COptions options;
    options.What = COptions::Action::Fault;
    options.Fault = text;
    return options;
}
} // namespace

COptions ParseOptions(const QStringList& arguments)
{
    COptions options;
    bool optionsOver = false, ofSnapshot = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (!optionsOver && argument == QLatin1String("--")) {
            optionsOver = true;
            continue;
        }
        if (optionsOver || !argument.startsWith(u'-')) {
            if (!options.Request.isNull())
                return Faulty(QStringLiteral("more than one request: %1").arg(argument));
            options.Request = argument.isNull() ? QLatin1String("") : argument;
            continue;
        }
        const qsizetype equals = argument.indexOf(u'=');
        const QString name = equals < 0 ? argument : argument.left(equals);
        const OptionRow* row = FindOption(name);
        if (!row || (equals >= 0 && !row->HasValue))
            return Faulty(QStringLiteral("unknown option %1").arg(argument));
        if (row->HasValue && equals < 0 && i + 1 >= arguments.size())
            return Faulty(QStringLiteral("%1 needs a value").arg(name));
        const QString value = !row->HasValue ? QString()
                              : equals >= 0  ? argument.mid(equals + 1)
                                             : arguments[++i];
        if (!row->Take(options, value))
            return Faulty(QStringLiteral("%1 does not take \"%2\"").arg(name, value));
        if (!row->HasValue)
            return options; // help and version leave the rest unread
        ofSnapshot = ofSnapshot || row->Take == TakeSize || row->Take == TakeNow || row->Take == TakeSearch;
    }
    if (ofSnapshot && options.What != COptions::Action::Snapshot)
        return Faulty(QStringLiteral("--size, --now and --search belong to --snapshot"));
    return options;
}

QString UsageText()
{
    return QStringLiteral(
        "usage: tessera [OPTION]... [REQUEST]\n"
        "A calendar for the finger. A second start hands its request to the window that is open.\n"
        "\n"
        "  --volume FILE         the calendar; else TESSERA_VOLUME, else $XDG_DATA_HOME/tessera/pim.vol\n"
        "  --density N           96, 192, 288 or 384 dots per inch instead of the screen's\n"
        "  --snapshot FILE       paint the view into a PNG file, with no display, and end\n"
        "    --size WxH          its size in pixels (480x640)\n"
        "    --now MOMENT        the time it is, like 2026-03-10T09:30\n"
        "    --search WORDS      what a search for them finds\n"
        "  --help, --version\n"
        "\n"
        "Requests, also of a snapshot, dates in minutes since 30 December 1899, 0 for none:\n"
        "  OPEN|VIEW[|DATE]      VIEW is DAILY, LIST, GRID (the week), MONTHLY or TASKS, as in:\n"
        "                        tessera --snapshot month.png 'OPEN|MONTHLY|66371040'\n"
        "  VIEW|ID|DATE|KIND     an item's details; KIND is APPT or TASK, its ID as tessera-pim tells it "
        "with --json\n"
        "  EDIT|ID|DATE|KIND     an item's editor\n"
        "  CREATE|START|END|KIND[|CATEGORY]\n"
        "                        the editor of a new item\n"
        "  REPORTLOGPIXELS       print the screen's density and end with it as the status, 192 at most\n"
        "  SHOWSOFTKEYDIALOG     ask which key of the shell opens the calendar; status 1 left, 2 right, 0 "
        "none\n"
        "\n"
        "Status: 0 done, 2 wrong usage, 255 handed over to the open window.\n");
}

bool ParseMoment(const QString& text, qint64* utcFileTime)
{
    static const QRegularExpression form(
        QStringLiteral("^(\\d{4})-(\\d{2})-(\\d{2})(?:[T ](\\d{2}):(\\d{2})(?::(\\d{2}))?(Z?))?$"));
    const auto match = form.match(text);
    if (!match.hasMatch())
        return false;
    const auto number = [&](int group) { return match.captured(group).toInt(); };
    const CDateTime local(number(1), number(2), number(3), number(4), number(5), number(6));
    if (!local.IsValid())
        return false;
    DATE utc = local.m_date;
    if (match.captured(7).isEmpty()) {
        TimeZoneInformation zone;
        GetTimeZoneInformation(&zone);
        utc = LocalToUtc(local.m_date, zone);
    }
    *utcFileTime = FileTimeOfDate(utc);
    return true;
}
