#include "util/string_store.h"

#include <QFileInfo>
#include <QLocale>
#include <QTranslator>
#include <algorithm>
#include <iterator>
#include <memory>
#include <string_view>

namespace
{
struct EnglishText {
    int Number;
    std::u16string_view Text;
};

constexpr EnglishText kEnglish[] = {
#include "english_strings.inc"
};

constexpr bool NumbersRise()
{
    for (size_t i = 1; i < std::size(kEnglish); ++i) {
        if (kEnglish[i - 1].Number >= kEnglish[i].Number)
            return false;
    }
    return true;
}
static_assert(NumbersRise(), "two texts share a number, or the table is not sorted");

// The catalogue over the English texts; null on an English system.
std::unique_ptr<QTranslator>& Catalogue()
{
    static std::unique_ptr<QTranslator> catalogue;
    return catalogue;
}

QString EnglishOf(int id)
{
    const auto found =
        std::lower_bound(std::begin(kEnglish), std::end(kEnglish), id,
                         [](const EnglishText& text, int number) { return text.Number < number; });
    if (found == std::end(kEnglish) || found->Number != id)
        return QString();
    return QString::fromRawData(reinterpret_cast<const QChar*>(found->Text.data()),
                                qsizetype(found->Text.size()));
}
} // namespace

void LoadLanguageLibrary(const QString& installFolder, const QString& shareFolder, const QString& localeName)
{
    Catalogue().reset();
    auto catalogue = std::make_unique<QTranslator>();
    const QString active = installFolder + QStringLiteral("/ActiveLang.qm");
    bool loaded = !installFolder.isEmpty() && QFileInfo(active).isFile() && catalogue->load(active);
    const QLocale locale(localeName);
    if (!loaded && !localeName.isEmpty() && locale.language() != QLocale::English &&
        locale.language() != QLocale::C)
        loaded = catalogue->load(locale, QStringLiteral("tessera"), QStringLiteral("_"),
                                 shareFolder + QStringLiteral("/translations"));
    if (loaded)
        Catalogue() = std::move(catalogue);
}

QString GetString(int id)
{
    if (const QTranslator* catalogue = Catalogue().get()) {
        const QString text = catalogue->translate("", QByteArray::number(id).constData());
        if (!text.isEmpty())
            return text;
    }
    return EnglishOf(id);
}

QString FillText(const QString& format, const QStringList& texts)
{
    QString filled;
    qsizetype next = 0;
    for (qsizetype i = 0; i < format.size(); ++i) {
        qsizetype at = i + 1;
        qsizetype number = -1;
        if (format[i] == u'%' && at + 1 < format.size() && format[at] >= u'1' && format[at] <= u'9' &&
            format[at + 1] == u'$') {
            number = format[at].unicode() - u'1';
            at += 2;
        }
        if (format[i] != u'%' || at >= format.size() || (format[at] != u'd' && format[at] != u's')) {
            filled += format[i];
            continue;
        }
        filled += texts.value(number >= 0 ? number : next++);
        i = at;
    }
    return filled;
}
