// The pages of colours and their picker, by finger and by keys.
#include "forms/forms_fixture.h"
#include "forms/question.h"
#include "pages/color_pages.h"
#include "pages/color_picker.h"
#include "platform/locale.h"
#include "settings/color_table.h"
#include "touch/command_ids.h"
#include "touch/touch_menu.h"

#include <QLineEdit>
#include <QSlider>
#include <optional>

namespace
{
class Colors : public CFormsTest
{
protected:
    void SetUp() override
    {
        CFormsTest::SetUp();
        g_Settings.General.SlidingScreens = 0;
    }
    // What opens next, once it runs.
    template <typename Dialog> void Then(std::function<void(Dialog&)> act)
    {
        QTimer::singleShot(0, &Window, [act = std::move(act)] {
            auto* const dialog = dynamic_cast<Dialog*>(CFormDialog::Current());
            ASSERT_NE(dialog, nullptr);
            act(*dialog);
        });
    }
    void ChooseFromMenu(CFormDialog& dialog, int command)
    {
        QTimer::singleShot(0, &Window, [command] {
            ASSERT_NE(CTouchMenu::Current(), nullptr);
            CTouchMenu::Current()->Choose(command);
        });
        Click(dialog, KeyCentre(dialog, 1));
    }
    static void Type(QLineEdit& edit, const char* text)
    {
        edit.setFocus();
        edit.selectAll();
        QTest::keyClicks(&edit, QLatin1String(text));
    }
};
constexpr int kCommandDefault = 1021, kCommandHtml = 1023, kCommandRgb = 1024, kCommandRestore = 1025;
} // namespace

TEST_F(Colors, EachOfThePagesColorsIsChosenAndTaken)
{
    constexpr int kRows[] = {5, 4, 3, 13, 11, 12, 22, 9};
    CColorScheme scheme;
    CColorPagesDialog list(scheme);
    int number = 0;
    const auto choose = [&](CFieldForm& page, size_t row) {
        page.SelectRow(int(row));
        Then<CColorPicker>([&](CColorPicker& picker) {
            EXPECT_EQ(picker.GetTitle(), "Select Color");
            Click(picker, picker.SwatchRect(number % 50).center()); // ends it
        });
        QTest::keyClick(page.focusWidget(), Qt::Key_Return);
        ++number;
    };
    EXPECT_EQ(Run(list,
                  [&] {
                      for (int page = 0; page < kColorPageCount; ++page) {
                          Then<CColorPage>([&, page](CColorPage& form) {
                              EXPECT_EQ(form.Rows().size(), size_t(kRows[page])) << page;
                              for (size_t row = 0; row < form.Rows().size(); ++row)
                                  choose(form, row);
                              Click(form, KeyCentre(form, 0));
                          });
                          list.Select(page);
                          QTest::keyClick(&list, Qt::Key_Return);
                      }
                      EXPECT_EQ(scheme.GetStoredColor(501), kColorKeys[0].Default) << "not before Done";
                      Click(list, KeyCentre(list, 0));
                  }),
              CFormDialog::kDone);
    ASSERT_EQ(number, int(std::size(kColorKeys)));
    for (int n = 0; n < number; ++n)
        EXPECT_EQ(scheme.GetStoredColor(kColorKeys[n].Id), CColorPicker::Palette()[size_t(n % 50)])
            << kColorKeys[n].Key;
}

TEST_F(Colors, TheDefaultOfOneIsWhatStoodThereAtFirst)
{
    CColorScheme scheme;
    for (const CColorKey& key : kColorKeys)
        scheme.SetStoredColor(key.Id, Rgb(1, 2, 3));
    CColorPage page(ColorPageId::Daily, scheme);
    Run(page, [&] {
        for (size_t row = 0; row < page.Rows().size(); ++row) {
            page.SelectRow(int(row));
            Then<CColorPicker>([&](CColorPicker& picker) { ChooseFromMenu(picker, kCommandDefault); });
            QTest::keyClick(page.focusWidget(), Qt::Key_Return);
        }
        Click(page, KeyCentre(page, 0));
    });
    for (const CColorKey& key : kColorKeys)
        EXPECT_EQ(scheme.GetStoredColor(key.Id), key.Id / 1000 == 3 ? key.Default : Rgb(1, 2, 3)) << key.Key;
}

TEST_F(Colors, RestoringAsksAndGivesAllDefaults)
{
    for (const bool answer : {false, true}) {
        CColorScheme scheme;
        scheme.SetStoredColor(3006, 0x123456);
        scheme.SetStoredColor(7001, 0x123456);
        QStringList asked;
        SetAnswerer([&](const QString& text, const QString& caption) {
            asked << caption + '|' + text;
            return answer ? 1 : 0;
        });
        CColorPage page(ColorPageId::Daily, scheme);
        EXPECT_EQ(Run(page,
                      [&] {
                          ChooseFromMenu(page, kCommandRestore);
                          Click(page, KeyCentre(page, 0));
                      }),
                  CFormDialog::kDone);
        SetAnswerer({});
        EXPECT_EQ(asked.size(), 1);
        EXPECT_EQ(scheme.GetStoredColor(3006), answer ? 0xFFFFFFu : 0x123456u);
        EXPECT_EQ(scheme.GetStoredColor(7001), answer ? 0xFFFFFFu : 0x123456u);
    }
}

TEST_F(Colors, ThePickerTakesNotationsValuesAndSliders)
{
    const struct {
        const char* Way;
        int Tab, Part; // of the values: red, green, blue
        const char* Text;
        std::optional<COLORREF> Color; // none: the text is refused
        int Slider = -1;
    } kCases[] = {
        {"html", kCommandHtml, 0, "FF8000", Rgb(255, 128, 0)},
        {"html, lower case", kCommandHtml, 0, "0a0b0c", Rgb(10, 11, 12)},
        {"html with its sign", kCommandHtml, 0, "#102030", Rgb(16, 32, 48)},
        {"html that ends early", kCommandHtml, 0, "77", Rgb(0x77, 20, 30)},
        {"html that is none", kCommandHtml, 0, "xyz", Rgb(10, 20, 30)},
        {"all of a value", kCommandRgb, 0, "255", Rgb(255, 20, 30), 100},
        {"half of a value", kCommandRgb, 1, "128", Rgb(10, 128, 30), 50},
        {"nothing of a value", kCommandRgb, 2, "0", Rgb(10, 20, 0), 0},
        {"too much", kCommandRgb, 1, "256", {}},
        {"no number", kCommandRgb, 0, "red", {}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.Way);
        CColorPicker picker("Pick", Rgb(10, 20, 30), "Default");
        int told = 0;
        SetAnswerer([&](const QString& text, const QString& caption) {
            EXPECT_EQ(text.toStdString(), "Valid values are between 0-255");
            EXPECT_EQ(caption.toStdString(), "Invalid value");
            ++told;
            return 0;
        });
        const int result = Run(picker, [&] {
            ChooseFromMenu(picker, c.Tab);
            QLineEdit& edit = c.Tab == kCommandHtml ? *picker.HtmlEdit() : *picker.ValueEdit(c.Part);
            Type(edit, c.Text);
            Click(picker, KeyCentre(picker, 0));
            if (c.Color)
                return;
            EXPECT_EQ(edit.text(), c.Part == 0 ? "10" : "20") << "the old value is back";
            Click(picker, KeyCentre(picker, 0));
        });
        SetAnswerer({});
        EXPECT_EQ(result, CFormDialog::kDone);
        EXPECT_EQ(told, c.Color ? 0 : 1);
        EXPECT_EQ(picker.GetColor(), c.Color.value_or(Rgb(10, 20, 30)));
        if (c.Slider >= 0) {
            EXPECT_EQ(picker.ValueSlider(c.Part)->value(), c.Slider);
        }
    }
    CColorPicker picker("Pick", Rgb(10, 20, 30), "Default");
    Run(picker, [&] {
        ChooseFromMenu(picker, kCommandRgb);
        picker.ValueSlider(2)->setValue(50);
        EXPECT_EQ(picker.ValueEdit(2)->text(), "127");
        Click(picker, KeyCentre(picker, 0));
    });
    EXPECT_EQ(picker.GetColor(), Rgb(10, 20, 127));
}

TEST_F(Colors, ThePickerEndsByDefaultCancelAndKeys)
{
    CColorPicker offered("Pick", 0, "None");
    EXPECT_EQ(Run(offered, [&] { ChooseFromMenu(offered, kCommandDefault); }), CFormDialog::kDone);
    EXPECT_EQ(offered.GetColor(), kColorNotSet);

    CColorPicker cancelled("Pick", 5, "None");
    EXPECT_EQ(Run(cancelled, [&] { ChooseFromMenu(cancelled, CmdCancel); }), CFormDialog::kCancelled);
    EXPECT_EQ(cancelled.GetColor(), CColorPicker::kCancelledColor);

    // From the current colour: one to the right, one down, both round the edges.
    const auto palette = CColorPicker::Palette();
    const struct {
        size_t From;
        std::vector<Qt::Key> Keys;
        size_t To;
    } kMoves[] = {{0, {Qt::Key_Right}, 1},
                  {9, {Qt::Key_Right}, 0},
                  {0, {Qt::Key_Left}, 9},
                  {12, {Qt::Key_Down}, 22},
                  {42, {Qt::Key_Down}, 2},
                  {3, {Qt::Key_Up}, 43},
                  {0, {Qt::Key_Down, Qt::Key_Right}, 11}};
    for (const auto& move : kMoves) {
        CColorPicker picker("Pick", palette[move.From], {});
        Run(picker, [&] {
            for (const Qt::Key key : move.Keys)
                QTest::keyClick(&picker, key);
            QTest::keyClick(&picker, Qt::Key_Return);
        });
        EXPECT_EQ(picker.GetColor(), palette[move.To]) << move.From;
    }
}
