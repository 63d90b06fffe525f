#include "forms/forms_fixture.h"
#include "forms/menu_bars.h"
#include "forms/message_dialog.h"
#include "pages/category_manager.h"
#include "pim/pim_store.h"
#include "records/property_numbers.h"

#include <QLineEdit>
#include <QTemporaryDir>

namespace
{
class CategoryManager : public CFormsTest
{
protected:
    void SetUp() override
    {
        CFormsTest::SetUp();
        g_Settings.m_installFolder = Folder.path();
        PimStore().Categories().Close();
        for (const char* name : {"Work", "Family", "Sport"})
            PimStore().Categories().AddLocal(QString::fromLatin1(name));
    }
    void TearDown() override
    {
        PimStore().Categories().Close();
        g_Settings.m_installFolder.clear();
        CFormsTest::TearDown();
    }
    void Answer(QWidget& context, const QString& text, Qt::Key key)
    {
        QTimer::singleShot(0, &context, [this, text, key] {
            auto* message = dynamic_cast<CMessageDialog*>(CFormDialog::Current());
            ASSERT_TRUE(message);
            EXPECT_EQ(message->GetText(), text);
            ++Answered;
            QTest::keyClick(message, key);
        });
    }
    static qint32 Id(const char* name)
    {
        return PimStore().Categories().FindByName(QString::fromLatin1(name))->Id;
    }
    QTemporaryDir Folder;
    int Answered = 0;
};
} // namespace

TEST_F(CategoryManager, ChecksByFingerAndKey)
{
    CCategorySet had;
    had.Insert(Id("Family"));
    CCategoryManager dialog(CCategoryManager::Mode::Item, had);
    const int result = Run(dialog, [&] {
        EXPECT_EQ(dialog.LineText(0), "Family");
        EXPECT_TRUE(dialog.IsChecked(0));
        Click(dialog, dialog.BoxColumn(0).center());
        Click(dialog, dialog.RowRect(2).center()); // the name: selects alone
        EXPECT_FALSE(dialog.IsChecked(2));
        EXPECT_EQ(dialog.GetSelected(), 2);
        QTest::keyClick(&dialog, Qt::Key_Return);
        QTest::keyClick(&dialog, Qt::Key_Up);
        QTest::keyClick(&dialog, Qt::Key_Return);
        QTest::keyClick(&dialog, Qt::Key_F1);
    });
    EXPECT_EQ(result, CFormDialog::kDone);
    EXPECT_EQ(dialog.GetNames().split(", ").size(), 2);
    EXPECT_TRUE(dialog.GetCategories().Contains(Id("Work")) && dialog.GetCategories().Contains(Id("Sport")));
}

TEST_F(CategoryManager, AddsANameOnce)
{
    CCategoryManager dialog(CCategoryManager::Mode::Item);
    Run(dialog, [&] {
        EXPECT_EQ(dialog.GetTitle(), "Set Categories");
        QTest::keyClick(&dialog, Qt::Key_Up);
        EXPECT_TRUE(dialog.IsAdding());
        EXPECT_EQ(dialog.GetTitle(), "Add Category");
        QTest::keyClick(dialog.Edit(), Qt::Key_Return); // nothing to add
        QTest::keyClicks(dialog.Edit(), "work");
        Answer(dialog,
               "A category with the same name already exists, please insert a different category name",
               Qt::Key_Return);
        QTest::keyClick(dialog.Edit(), Qt::Key_Return);
        dialog.Edit()->setText("Garden");
        Answer(dialog, "Add new category with the name Garden?", Qt::Key_F2);
        QTest::keyClick(dialog.Edit(), Qt::Key_Return);
        EXPECT_EQ(dialog.Edit()->text(), "Garden");
        Answer(dialog, "Add new category with the name Garden?", Qt::Key_F1);
        QTest::keyClick(dialog.Edit(), Qt::Key_Return);
        EXPECT_EQ(dialog.Edit()->text(), "");
        EXPECT_EQ(dialog.LineText(3), "Garden");
        EXPECT_TRUE(dialog.IsChecked(3));
        QTest::keyClick(dialog.Edit(), Qt::Key_F1);
    });
    EXPECT_EQ(Answered, 3);
    EXPECT_EQ(dialog.GetNames(), "Garden");
}

// A list that is kept for itself, or for a filter, would lose what no item has; an item stores its own.
TEST_F(CategoryManager, WhatIsAddedStaysUnlessItIsAnItems)
{
    using enum CCategoryManager::Mode;
    for (const auto mode : {Item, Filter, Manage}) {
        std::shared_ptr<CPropertyVolume> volume;
        ASSERT_TRUE(CPropertyVolume::Open(Folder.filePath(QString::number(int(mode))), PimSchema(),
                                          CPropertyVolume::Mode::Create, volume));
        CCategoryStore& store = PimStore().Categories();
        store.Close();
        store.Open(volume);
        CCategoryManager dialog(mode);
        Run(dialog, [&] {
            dialog.Edit()->setText("Garden");
            Answer(dialog, "Add new category with the name Garden?", Qt::Key_F1);
            QTest::keyClick(dialog.Edit(), Qt::Key_Return);
            QTest::keyClick(&dialog, Qt::Key_F1);
        });
        store.Close();
        store.Open(volume);
        EXPECT_EQ(store.GetCount(), mode == Item ? 0 : 1);
    }
}

TEST_F(CategoryManager, ManagingChecksNothing)
{
    CCategoryManager dialog;
    Run(dialog, [&] {
        EXPECT_EQ(dialog.GetTitle(), "Category Manager");
        Click(dialog, dialog.BoxColumn(0).center());
        EXPECT_FALSE(dialog.IsChecked(0));
    });
}
