// The whole program as somebody meets it who reads the screen by Qt's accessibility interface.
#include "forms/form_dialog.h"
#include "shell_fixture.h"
#include "touch/touch_menu.h"

#include <QAccessible>
#include <QTest>
#include <QTimer>

namespace
{
class Accessibility : public ShellFixture
{
protected:
    static std::vector<QAccessibleInterface*> Parts(QWidget& widget)
    {
        std::vector<QAccessibleInterface*> parts;
        QAccessibleInterface* const root = QAccessible::queryAccessibleInterface(&widget);
        for (int n = 0; root && n < root->childCount(); ++n)
            parts.push_back(root->child(n));
        return parts;
    }
    static std::vector<std::string> Names(QWidget& widget)
    {
        std::vector<std::string> names;
        for (const QAccessibleInterface* part : Parts(widget))
            names.push_back(part->text(QAccessible::Name).toStdString());
        return names;
    }
    static QAccessibleInterface* Part(QWidget& widget, const QString& name)
    {
        for (QAccessibleInterface* part : Parts(widget)) {
            if (part->text(QAccessible::Name) == name)
                return part;
        }
        ADD_FAILURE() << name.toStdString();
        return nullptr;
    }
    static void Press(QWidget& widget, const QString& name)
    {
        if (QAccessibleInterface* const part = Part(widget, name))
            part->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    // What opens next is met by `act`; the press returns when it has closed.
    void PressAnd(QWidget& widget, const QString& name, std::function<void()> act)
    {
        bool met = false;
        QTimer::singleShot(0, m_frame.get(), [&] {
            met = true;
            act();
            if (CTouchMenu* menu = CTouchMenu::Current())
                menu->Choose(CmdNone);
        });
        Press(widget, name);
        EXPECT_TRUE(met);
    }
    // What a reader of the screen is told to speak while `act` runs.
    static std::vector<std::string> Told(std::function<void()> act)
    {
        std::vector<std::string> told;
        SetPartListener([&](QWidget* widget, int part, QAccessible::Event what) {
            if (what == QAccessible::Focus)
                told.push_back(Names(*widget)[size_t(part)]);
        });
        act();
        SetPartListener({});
        return told;
    }
    CCalendarView& Show(int kind)
    {
        m_frame->ShowView(kind, -1);
        m_frame->Snapshot();
        return *m_frame->CurrentView();
    }
};
} // namespace

TEST_F(Accessibility, TheFrameTellsItsTitleAndKeys)
{
    Start().show();
    EXPECT_EQ(Names(*m_frame), (std::vector<std::string>{"Tuesday, Mar 10 2026", "Select View", "Previous",
                                                         "Go To", "Next", "Menu", ""}));
    Press(*m_frame, "Next");
    EXPECT_EQ(DayNumber(PimStore().CursorDate()), kToday + 1);
    PressAnd(*m_frame, "Menu", [&] {
        ASSERT_NE(CTouchMenu::Current(), nullptr);
        QAccessibleInterface* const row = Part(*CTouchMenu::Current(), "New Task");
        ASSERT_NE(row, nullptr);
        EXPECT_EQ(row->role(), QAccessible::MenuItem);
        Part(*CTouchMenu::Current(), "Settings");
    });
}

TEST_F(Accessibility, ADayIsReadAndAnItemEdited)
{
    Add("Dentist", kToday, 10);
    const auto task = m_app->CreateTask();
    task->put_Subject("Paint");
    task->put_DueDate(kToday);
    task->put_Complete(true);
    ASSERT_TRUE(task->Save());
    Start().show();
    CCalendarView& day = Show(kViewDaily);
    EXPECT_EQ(Names(day),
              (std::vector<std::string>{"10:00 AM-11:00 AM, Dentist", "Paint, Tuesday, March 10, 2026"}));
    QAccessibleInterface* const done = Parts(day)[1];
    EXPECT_TRUE(done->state().checkable && done->state().checked);
    QTest::keyClick(&day, Qt::Key_Down);
    EXPECT_TRUE(done->state().selected);
    EXPECT_FALSE(Parts(day)[0]->state().selected);
    EXPECT_EQ(Parts(day)[0]->role(), QAccessible::ListItem);
    EXPECT_TRUE(m_frame->rect().translated(m_frame->mapToGlobal(QPoint())).contains(done->rect()));

    PressAnd(day, "10:00 AM-11:00 AM, Dentist", [&] {
        CTouchMenu* const menu = CTouchMenu::Current();
        ASSERT_NE(menu, nullptr);
        QTimer::singleShot(0, m_frame.get(), [&] {
            CFormDialog* const form = CFormDialog::Current();
            ASSERT_NE(form, nullptr);
            QAccessibleInterface* const subject = Part(*form, "Subject");
            ASSERT_NE(subject, nullptr);
            EXPECT_EQ(subject->text(QAccessible::Value).toStdString(), "Dentist");
            Press(*form, "Cancel");
        });
        Press(*menu, "Edit");
    });
    EXPECT_EQ(CFormDialog::Current(), nullptr);
}

TEST_F(Accessibility, DaysOfWeekAndMonthAreCells)
{
    Add("Dentist", kToday, 10);
    Add("Fair", kToday + 1, 12);
    Start().show();
    CCalendarView& month = Show(kViewMonthly);
    EXPECT_TRUE(Part(month, "Tuesday, March 10, 2026, 1 Items")->state().selected);
    EXPECT_EQ(Part(month, "Thursday, March 12, 2026")->role(), QAccessible::Cell);
    EXPECT_NE(Part(month, "10:00 AM-11:00 AM, Dentist"), nullptr);
    Press(month, "Thursday, March 12, 2026");
    EXPECT_EQ(DayNumber(PimStore().CursorDate()), kToday + 2);
    EXPECT_FALSE(Part(month, "Tuesday, March 10, 2026, 1 Items")->state().selected);

    CCalendarView& week = Show(kViewWeekly);
    EXPECT_TRUE(Part(week, "Thursday, March 12, 2026")->state().selected);
    Press(week, "Wednesday, March 11, 2026, 12:00 PM-1:00 PM, Fair");
    EXPECT_EQ(DayNumber(PimStore().CursorDate()), kToday + 1);
    Press(week, "Wednesday, March 11, 2026, 12:00 PM-1:00 PM, Fair"); // once more opens it
    EXPECT_EQ(m_frame->CurrentView()->GetViewKind(), kViewDaily);

    CCalendarView& list = Show(kViewList);
    const auto names = Names(list);
    EXPECT_NE(std::find(names.begin(), names.end(), "Wednesday, March 11, 2026, 1 Items"), names.end());
    EXPECT_NE(std::find(names.begin(), names.end(), "12:00 PM-1:00 PM, Fair"), names.end());
}

TEST_F(Accessibility, WhatTheKeysSelectIsTold)
{
    using Names = std::vector<std::string>;
    Add("Dentist", kToday, 10);
    Start().show();
    const struct {
        int view;
        Qt::Key key;
        Names told;
    } cases[] = {{kViewDaily, Qt::Key_Down, {"10:00 AM-11:00 AM, Dentist"}},
                 {kViewMonthly, Qt::Key_Right, {"Wednesday, March 11, 2026"}},
                 {kViewWeekly, Qt::Key_Left, {"Tuesday, March 10, 2026, 10:00 AM-11:00 AM, Dentist"}}};
    for (const auto& c : cases) {
        CCalendarView& view = Show(c.view);
        EXPECT_EQ(Told([&] { QTest::keyClick(&view, c.key); }), c.told) << c.view;
    }
    PressAnd(*m_frame, "Menu", [&] {
        CTouchMenu& menu = *CTouchMenu::Current();
        EXPECT_EQ(Told([&] { QTest::keyClick(&menu, Qt::Key_Down); }), Names{"New Appointment"});
    });
}
