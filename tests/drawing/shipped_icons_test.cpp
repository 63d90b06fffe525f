// The archive of icons that comes with the program: whole, at every density, no two alike.
#include <QCoreApplication>
#include <gtest/gtest.h>
#include <map>

#include "drawing/icon_archive.h"

namespace
{
constexpr int kFewestInGroup = 7;

class ShippedIcons : public testing::Test
{
protected:
    void SetUp() override
    {
        // The build's own, wherever a test before this one let the program look.
        const QString path = QCoreApplication::applicationDirPath() +
                             QStringLiteral("/../share/tessera/IconStore/Tessera.zip");
        ASSERT_TRUE(Archive.Open(path, QDeadlineTimer::Forever)) << path.toStdString();
    }
    QImage Read(const QString& level, const CIconArchive::CMember& member) const
    {
        return Archive.ReadImage(Archive.Find(level, member.Group, member.File)).ToImage();
    }
    std::vector<CIconArchive::CMember> At(const QString& level) const
    {
        std::vector<CIconArchive::CMember> members;
        for (const CIconArchive::CMember& member : Archive.Members()) {
            if (member.Level == level)
                members.push_back(member);
        }
        return members;
    }
    CIconArchive Archive;
};

TEST_F(ShippedIcons, FillTheirGroups)
{
    std::map<QString, int> groups;
    for (const CIconArchive::CMember& member : At(QStringLiteral("large")))
        ++groups[member.Group];
    QStringList names;
    for (const auto& [name, count] : groups) {
        names << name;
        EXPECT_GE(count, kFewestInGroup) << name.toStdString();
    }
    EXPECT_EQ(names.join(u' '), QStringLiteral("Health Home Leisure Money People Study Travel Work"));
}

TEST_F(ShippedIcons, HaveBothSizesAtEveryDensity)
{
    const struct {
        const char* Level;
        int Side;
    } kLevels[] = {{"small", 16},     {"large", 32},     {"192-small", 32}, {"192-large", 64},
                   {"288-small", 48}, {"288-large", 96}, {"384-small", 64}, {"384-large", 128}};
    const std::vector<CIconArchive::CMember> icons = At(QStringLiteral("large"));
    EXPECT_EQ(Archive.Members().size(), std::size(kLevels) * icons.size());
    for (const CIconArchive::CMember& icon : icons) {
        for (const auto& level : kLevels)
            EXPECT_EQ(Read(QLatin1String(level.Level), icon).size(), QSize(level.Side, level.Side))
                << level.Level << " " << icon.File.toStdString();
    }
}

// On a dark ground the dark outlines are lost: what is left must still be a shape.
TEST_F(ShippedIcons, AreMoreThanOutlines)
{
    for (const CIconArchive::CMember& icon : At(QStringLiteral("small"))) {
        const QImage image = Read(QStringLiteral("small"), icon);
        int bright = 0, clear = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                clear += color.alpha() < 16;
                bright += color.alpha() > 200 && qMax(color.red(), qMax(color.green(), color.blue())) > 100;
            }
        }
        EXPECT_GE(bright, 24) << icon.File.toStdString();
        EXPECT_GE(clear, 12) << icon.File.toStdString();
    }
}

TEST_F(ShippedIcons, AreToldApartByTheirShapes)
{
    std::map<QByteArray, QString> seen; // light and dark alone, as one who sees no colours has them
    for (const CIconArchive::CMember& icon : At(QStringLiteral("small"))) {
        const QImage gray =
            Read(QStringLiteral("small"), icon).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QByteArray shape;
        for (int y = 0; y < gray.height(); ++y) {
            for (int x = 0; x < gray.width(); ++x)
                shape += char('0' + qGray(gray.pixel(x, y)) / 64);
        }
        const auto [first, isNew] = seen.emplace(shape, icon.File);
        EXPECT_TRUE(isNew) << icon.File.toStdString() << " looks like " << first->second.toStdString();
    }
}
} // namespace
