// The search view in its frame: how it comes and goes, and that keys typed into it are no commands.
#include "shell_fixture.h"
#include "views/search_view.h"

#include <QLineEdit>
#include <QTest>

namespace
{
class FrameSearch : public ShellFixture
{
protected:
    CSearchView& Open()
    {
        Start().show();
        m_frame->SendCommand(CmdShowSearch);
        return *static_cast<CSearchView*>(m_frame->CurrentView());
    }
    int Kind() const { return m_frame->CurrentView()->GetViewKind(); }
    void Press(int key) { QTest::keyClick(m_frame->focusWidget(), Qt::Key(key)); }
    bool Finish(const CSearchView& view)
    {
        return WaitFor([&view] { return !view.IsSearching(); }, 20000);
    }
};
} // namespace

TEST_F(FrameSearch, TheBackKeyReturnsToTheViewBefore)
{
    Start().show();
    m_frame->SendCommand(CmdShowMonthly);
    m_frame->SendCommand(CmdShowSearch);
    ASSERT_EQ(Kind(), kViewSearch);
    EXPECT_EQ(m_frame->TitleText(), "Calendar Search");
    Press(Qt::Key_Escape);
    EXPECT_EQ(Kind(), kViewMonthly);
    EXPECT_EQ(m_frame->PreviousView(), -1);

    m_frame->SendCommand(CmdShowSearch);
    QTest::keyClicks(m_frame->focusWidget(), "ab");
    Press(Qt::Key_Escape);
    EXPECT_EQ(Kind(), kViewSearch) << "out of a text first";
    Press(Qt::Key_Escape);
    EXPECT_EQ(Kind(), kViewMonthly);

    m_frame->SendCommand(CmdShowSearch);
    m_frame->SendCommand(CmdPreviousView);
    EXPECT_EQ(Kind(), kViewMonthly);
}

TEST_F(FrameSearch, ATapOnTheSoftKeysLeavesTheTextItsFocus)
{
    CSearchView& view = Open();
    m_frame->show();
    view.TextBox().setFocus();
    ASSERT_EQ(m_frame->focusWidget(), &view.TextBox());
    QTest::mouseClick(m_frame->windowHandle(), Qt::LeftButton, {},
                      m_frame->rect().bottomLeft() + QPoint(m_frame->width() / 2, -12));
    EXPECT_EQ(m_frame->focusWidget(), &view.TextBox());
}

TEST_F(FrameSearch, WhatIsTypedIsNoCommand)
{
    Add("Clinic 9", kToday);
    CSearchView& view = Open();
    QTest::keyClicks(m_frame->focusWidget(), "c 9");
    EXPECT_EQ(view.TextBox().text(), "c 9");
    EXPECT_EQ(Kind(), kViewSearch);
    Press(Qt::Key_Return);
    ASSERT_TRUE(Finish(view));
    ASSERT_EQ(view.Rows().GetCount(), 1);
    Press(Qt::Key_Down);
    EXPECT_EQ(m_frame->focusWidget(), &view);
}

TEST_F(FrameSearch, ItIsNeverTheFirstView)
{
    Open();
    m_frame->Shutdown(true);
    m_frame.reset();
    Start();
    EXPECT_EQ(Kind(), kViewDaily);
}

TEST_F(FrameSearch, DeletingAResultTakesItsRow)
{
    Add("Clinic", kToday);
    Add("Clinic again", kToday + 400);
    CSearchView& view = Open();
    m_frame->StartNotices();
    SetAnswerer([](const QString&, const QString&) { return 1; });
    view.TextBox().setText("clinic");
    m_frame->SendCommand(CmdSearchStart);
    ASSERT_TRUE(Finish(view));
    ASSERT_EQ(view.Rows().GetCount(), 2);
    Press(Qt::Key_Up); // the last one
    m_frame->SendCommand(CmdDelete);
    EXPECT_TRUE(WaitFor([&] { return view.Rows().GetCount() == 1; }));
    EXPECT_EQ(view.Rows().GetAt(0)->m_date, kToday);
    EXPECT_EQ(SubjectsOf(kToday), QStringList({"Clinic"}));
}

TEST_F(FrameSearch, LeavingItEndsTheSearch)
{
    for (int n = 0; n < 30; ++n)
        Add("Clinic", kToday + n);
    CSearchView& view = Open();
    view.TextBox().setText("clinic");
    m_frame->SendCommand(CmdSearchStart);
    view.Timers().Fire(CSearchView::kTimerSearch);
    EXPECT_EQ(m_frame->ViewButtonText(), "Stop");
    m_frame->SendCommand(CmdShowDaily);
    EXPECT_FALSE(view.IsSearching());
    EXPECT_TRUE(m_frame->CurrentView()->hasFocus() || m_frame->focusWidget() == m_frame->CurrentView());
    m_frame->SendCommand(CmdSearchStart); // of no other view
    EXPECT_FALSE(view.IsSearching());
    m_frame->SendCommand(CmdShowSearch);
    EXPECT_EQ(view.Rows().GetCount(), 0);
}
