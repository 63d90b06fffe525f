#include "forms/forms_fixture.h"
#include "forms/message_dialog.h"
#include "pages/active_views_dialog.h"

namespace
{
class ActiveViews : public CFormsTest
{
};
} // namespace

TEST_F(ActiveViews, ReadsAndTellsTheBits)
{
    for (const int views : {0, 1, 3, 21, 31})
        EXPECT_EQ(CActiveViewsDialog(views).GetActiveViews(), views);
    EXPECT_EQ(CActiveViewsDialog(0xFF).GetActiveViews(), 31) << "the search takes no part";
}

TEST_F(ActiveViews, ClosesWithTwoAndWarnsWithFewer)
{
    CActiveViewsDialog dialog(3);
    int warnings = 0;
    const int ended = Run(dialog, [&] {
        Click(dialog, dialog.RowRect(0).center());
        QTimer::singleShot(0, &dialog, [&] {
            auto* warning = dynamic_cast<CMessageDialog*>(CFormDialog::Current());
            ASSERT_TRUE(warning);
            EXPECT_EQ(warning->GetText(), "You must have at least two selected views");
            EXPECT_EQ(warning->GetTitle(), "Selection Error");
            ++warnings;
            QTest::keyClick(warning, Qt::Key_Return);
        });
        QTest::keyClick(&dialog, Qt::Key_F1);
        EXPECT_EQ(dialog.GetActiveViews(), 2) << "the flags stay as they are";
        Click(dialog, dialog.RowRect(4).center());
        QTest::keyClick(&dialog, Qt::Key_F1);
    });
    EXPECT_EQ(warnings, 1);
    EXPECT_EQ(ended, CFormDialog::kDone);
    EXPECT_EQ(dialog.GetActiveViews(), 18);
}
