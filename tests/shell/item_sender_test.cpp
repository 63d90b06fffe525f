#include "desktop/shell_actions.h"
#include "shell/item_sender.h"
#include "shell_fixture.h"

#include <QDir>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{
// Chooses in the place of the owner.
class CSender : public CItemSender
{
public:
    using CItemSender::CItemSender;
    int Choice = kBack;
    QString File;
    QStringList Asked;
    static constexpr int Back = kBack, ByMail = kByMail, ToFile = kToFile;

protected:
    int ChooseWay(const QString& subject, const std::vector<CPushDevice>& devices, bool mail) override
    {
        Asked << QString("%1 %2 %3").arg(subject).arg(devices.size()).arg(mail);
        return Choice;
    }
    QString ChooseFile(const QString& suggested) override
    {
        Asked << QFileInfo(suggested).fileName();
        return File;
    }
};

class ItemSender : public ShellFixture
{
protected:
    ItemSender() : m_path(qgetenv("PATH")), m_cache(qgetenv("XDG_CACHE_HOME"))
    {
        qputenv("XDG_CACHE_HOME", m_folder.filePath("cache").toUtf8());
        qputenv("PATH", m_folder.filePath("bin").toUtf8());
        QDir(m_folder.path()).mkdir("bin");
        SetProgramStarter([this](const QString& program, const QStringList& arguments) {
            m_started << program;
            m_arguments = arguments;
            return true;
        });
        SetAnswerer([this](const QString& text, const QString&) {
            m_told << text;
            return 1;
        });
        PimStore().Initialize(m_volume);
        PimStore().SetTransport(&m_sender);
    }
    ~ItemSender() override
    {
        PimStore().SetTransport(nullptr);
        PimStore().Shutdown();
        SetProgramStarter({});
        qputenv("PATH", m_path);
        m_cache.isNull() ? qunsetenv("XDG_CACHE_HOME") : qputenv("XDG_CACHE_HOME", m_cache);
    }
    void InstallMail()
    {
        const std::pair<const char*, const char*> kPrograms[] = {
            {"xdg-email", "#!/bin/sh\n"}, {"xdg-mime", "#!/bin/sh\necho mail.desktop\n"}};
        for (const auto& [name, text] : kPrograms) {
            QFile program(m_folder.filePath("bin/") + name);
            ASSERT_TRUE(program.open(QIODevice::WriteOnly));
            program.write(text);
            program.close();
            program.setPermissions(program.permissions() | QFile::ExeOwner);
        }
    }
    CStatus Beam(quint32 itemId)
    {
        const CPoomSession session(m_volume);
        return PimStore().BeamItem(*session.App(), kKindAppointment, itemId);
    }
    static QByteArray Read(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    QString Attachment() const
    {
        const qsizetype at = m_arguments.indexOf("--attach");
        return at < 0 ? QString() : m_arguments.at(at + 1);
    }
    // Saves an appointment with attendees, as the editor does.
    void SaveMeeting(quint32 itemId)
    {
        const CPoomSession session(m_volume);
        std::unique_ptr<IAppointment> item;
        ASSERT_TRUE(session.App()->GetAppointmentFromOid(itemId, item));
        while (item->get_Recipients()->get_Count())
            ASSERT_TRUE(item->get_Recipients()->Remove(1));
        item->get_Recipients()->Add("Ann")->put_Address("ann@example.org");
        item->get_Recipients()->Add("Nobody");
        ASSERT_TRUE(item->Send());
        ASSERT_TRUE(item->Save());
    }

    QByteArray m_path, m_cache;
    QStringList m_started, m_arguments, m_told;
    CSender m_sender{nullptr};
};
} // namespace

TEST_F(ItemSender, NamesFilesAsEverySystemTakesThem)
{
    const std::pair<QString, QString> kCases[] = {
        {"Dentist", "Dentist.ics"},
        {"a/b\\c: d?\ne%", "a_b_c_ d_ e_.ics"},
        {"../../etc", "_.._etc.ics"},
        {"--help", "help.ics"},
        {"", "Item.ics"},
        {" . ", "Item.ics"},
        {QString(300, 'x'), QString(60, 'x') + ".ics"},
        {QString(59, 'x') + QString::fromUcs4(U"\x1F600"), QString(59, 'x') + ".ics"},
    };
    for (const auto& [subject, name] : kCases)
        EXPECT_EQ(CItemSender::FileName(subject, ".ics"), name);
}

TEST_F(ItemSender, BeamsByMailOrToAFile)
{
    InstallMail();
    const quint32 item = Add("Lunch: 12/13", kToday);
    ASSERT_TRUE(Beam(item));
    EXPECT_EQ(m_sender.Asked, QStringList("Lunch: 12/13 0 1"));
    EXPECT_TRUE(m_started.isEmpty()) << "the owner went back";

    m_sender.Choice = CSender::ByMail;
    ASSERT_TRUE(Beam(item));
    EXPECT_EQ(m_started, QStringList("xdg-email"));
    EXPECT_EQ(QFileInfo(Attachment()).fileName(), "Lunch_ 12_13.ics");
    const QByteArray sent = Read(Attachment());
    EXPECT_TRUE(sent.startsWith("BEGIN:VCALENDAR\r\n") && sent.contains("SUMMARY:Lunch: 12/13\r\n"))
        << sent.data();
    EXPECT_FALSE(sent.contains("METHOD:REQUEST"));

    m_sender.Choice = CSender::ToFile;
    m_sender.File = m_folder.filePath("kept.ics");
    ASSERT_TRUE(Beam(item));
    EXPECT_EQ(Read(m_sender.File), sent);
    EXPECT_TRUE(m_told.isEmpty());

    m_sender.File = m_folder.filePath("no such folder/kept.ics");
    ASSERT_TRUE(Beam(item));
    EXPECT_EQ(m_told.size(), 1);
    EXPECT_TRUE(m_told.value(0).contains(m_sender.File));
}

TEST_F(ItemSender, WithoutAnotherWayAsksForTheFileAtOnce)
{
    ASSERT_TRUE(Beam(Add("Lunch", kToday)));
    EXPECT_EQ(m_sender.Asked, QStringList("Lunch.ics"));
    EXPECT_EQ(Beam(4711).Kind(), StatusKind::NotFound);
}

TEST_F(ItemSender, OpensMessagesForTheOwnersMeetingsOnly)
{
    InstallMail();
    const quint32 own = Add("Plan", kToday);
    SaveMeeting(own);
    ASSERT_EQ(m_started.size(), 1);
    EXPECT_EQ(m_arguments.last(), "ann@example.org");
    const QByteArray request = Read(Attachment()).replace("\r\n ", "");
    EXPECT_TRUE(request.contains("METHOD:REQUEST\r\n") && request.contains("ann@example.org") &&
                request.contains("\r\nORGANIZER"))
        << request.data();
    std::unique_ptr<IAppointment> item;
    ASSERT_TRUE(m_app->GetAppointmentFromOid(own, item));
    const QString uid = item->Foreign().Uid;
    EXPECT_FALSE(uid.isEmpty());
    EXPECT_TRUE(request.contains("UID:" + uid.toUtf8() + "\r\n"));

    SaveMeeting(own);
    EXPECT_TRUE(Read(Attachment()).contains("SEQUENCE:2\r\n")) << "a later request is a newer one";
    ASSERT_TRUE(PimStore().DeleteAppointment(*CPoomSession(m_volume).App(), own, 0, nullptr));
    ASSERT_EQ(m_started.size(), 3);
    const QByteArray cancel = Read(Attachment());
    EXPECT_TRUE(cancel.contains("METHOD:CANCEL\r\n") && cancel.contains("SEQUENCE:3\r\n") &&
                cancel.contains("UID:" + uid.toUtf8() + "\r\n"))
        << cancel.data();

    const quint32 invited = Add("Invited", kToday);
    ASSERT_TRUE(m_app->GetAppointmentFromOid(invited, item));
    CForeignData data = item->Foreign();
    data.Organizer = "mailto:boss@example.org";
    item->put_Foreign(data);
    ASSERT_TRUE(item->Save());
    SaveMeeting(invited);
    EXPECT_EQ(m_started.size(), 3) << "another's meeting";
}

TEST_F(ItemSender, ARequestLeavesTheChangeTheOwners)
{
    InstallMail();
    const quint32 id = Add("Plan", kToday);
    const CPoomSession session(m_volume);
    std::unique_ptr<IAppointment> item;
    ASSERT_TRUE(session.App()->GetAppointmentFromOid(id, item));
    IRecurrencePattern* pattern = item->GetRecurrencePattern();
    CForeignData data = item->Foreign();
    data.SourceRule = "FREQ=WEEKLY;BYSETPOS=1";
    data.LastChange = 1;
    item->put_Foreign(data);
    ASSERT_TRUE(item->Save());

    pattern->put_Interval(2);
    item->get_Recipients()->Add("Ann")->put_Address("ann@example.org");
    ASSERT_TRUE(item->Send());
    ASSERT_TRUE(item->Save());
    ASSERT_TRUE(m_app->GetAppointmentFromOid(id, item));
    EXPECT_EQ(item->Foreign().SourceRule, "") << "it tells the series of before";
    EXPECT_GT(item->Foreign().LastChange, 1);
    EXPECT_EQ(item->Foreign().Uid, data.Uid);
    EXPECT_EQ(item->Foreign().Sequence, data.Sequence + 1);
}

TEST_F(ItemSender, ForgetsFilesOfEarlierDays)
{
    const QString old = KeepOutgoing({"old.ics", {}, "x"}), young = KeepOutgoing({"young.ics", {}, "y"});
    ASSERT_FALSE(old.isEmpty() || young.isEmpty());
    const QString folder = QFileInfo(old).path();
    const timespec times[2] = {{0, 0}, {0, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, qPrintable(folder), times, 0), 0);
    KeepOutgoing({"new.ics", {}, "z"});
    EXPECT_FALSE(QFile::exists(old));
    EXPECT_EQ(Read(young), "y");
}
