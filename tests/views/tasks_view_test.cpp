// The tasks view over a volume of 5,000 tasks in 200 categories, and over small ones.
#include <QFile>
#include <QMenu>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <algorithm>
#include <map>
#include <set>

#include "drawing/picture_ids.h"
#include "object_model/object_model.h"
#include "records/property_numbers.h"
#include "touch/timer_ids.h"
#include "touch/virtual_keys.h"
#include "views/tasks_view.h"
#include "views_fixture.h"

namespace
{
constexpr int kTasks = 5000, kCategories = 200;

class Tasks : public CViewTest
{
protected:
    static void SetUpTestSuite() { s_folder = std::make_unique<QTemporaryDir>(); }
    static void TearDownTestSuite() { s_folder.reset(); }

    void SetUp() override
    {
        CViewTest::SetUp();
        g_Settings.m_completedCutoff = 0;
    }
    void TearDown() override
    {
        View.reset();
        CViewTest::TearDown();
        Model.reset();
        m_volume.reset();
    }
    void UseVolume(const QString& name)
    {
        PimStore().Shutdown();
        ASSERT_TRUE(CPropertyVolume::Open(m_folder.filePath(name), PimSchema(), CPropertyVolume::Mode::Create,
                                          m_volume)
                        .IsOk());
        Model = MakePOutlookApp(m_volume);
        ASSERT_TRUE(Model->Logon().IsOk());
        PimStore().Initialize(m_volume);
    }
    quint32 Save(const QString& subject, int due = 0, int priority = 1, bool complete = false,
                 const QString& categories = QString(), int start = 0)
    {
        auto task = Model->CreateTask();
        task->put_Subject(subject);
        if (start)
            task->put_StartDate(start);
        if (due)
            task->put_DueDate(due);
        task->put_Importance(priority);
        if (complete)
            task->put_Complete(true);
        task->put_Categories(categories);
        EXPECT_TRUE(task->Save().IsOk());
        return task->get_Oid();
    }
    // Made once for all tests.
    void UseManyTasks()
    {
        const QString made = s_folder->filePath(QStringLiteral("many.vol"));
        if (!QFile::exists(made)) {
            UseVolume(QStringLiteral("many.vol"));
            ASSERT_TRUE(Model->BeginBatch().IsOk());
            for (int n = 0; n < kTasks; ++n) {
                // A prime step mixes what the sorts go by.
                const int mixed = n * 1231 % kTasks;
                QString names = CategoryName(n % kCategories);
                if (n % 10 == 0)
                    names += QStringLiteral(", ") + CategoryName((n + 7) % kCategories);
                const int due = n % 7 ? kToday - 30 + mixed % 90 : 0;
                Save(QStringLiteral("Task %1").arg(mixed % 977, 3, 10, QLatin1Char('0')), due, mixed % 3,
                     n % 4 == 0, n % 53 == 3 ? QString() : names, due && n % 3 == 0 ? due - mixed % 11 : 0);
            }
            ASSERT_TRUE(Model->CommitBatch().IsOk());
            Model.reset();
            PimStore().Shutdown();
            m_volume.reset();
            ASSERT_TRUE(QFile::copy(m_folder.filePath(QStringLiteral("many.vol")), made));
        }
        QFile::copy(made, m_folder.filePath(QStringLiteral("copy.vol")));
        UseVolume(QStringLiteral("copy.vol"));
    }
    static QString CategoryName(int n)
    {
        return QStringLiteral("Category %1").arg(n, 3, 10, QLatin1Char('0'));
    }

    CTasksView& Open(QSize size = {240, 260})
    {
        View = std::make_unique<CTasksView>(Host, nullptr);
        View->resize(size);
        View->Create();
        View->Refresh();
        return *View;
    }
    // As the frame does when the volume stirs.
    void Drain()
    {
        const CPimStore::CDrain drain = PimStore().DrainNotices();
        EXPECT_TRUE(drain.Mask & kMaskTasks);
        View->OnDataChanged(drain.LastParam, drain.LastType, drain.LastOid);
    }
    void SetSort(int level, int code, int direction)
    {
        auto& values = g_Settings.TasksView;
        (level == 0 ? values.Sort1 : level == 1 ? values.Sort2 : values.Sort3) = code;
        (level == 0   ? values.Sort1Direction
         : level == 1 ? values.Sort2Direction
                      : values.Sort3Direction) = direction;
    }
    void Resort()
    {
        PimStore().RebuildTaskGroups();
        View->OnDataChanged(0, 0, 0);
    }
    static bool IsTitle(const CPaintingOrderItem& row) { return row.m_item == nullptr; }
    static const CTaskGroup& GroupOf(const CPaintingOrderItem& row)
    {
        return static_cast<const CTaskGroup&>(*row.m_event);
    }
    static const CTask& TaskOf(const CPaintingOrderItem& row)
    {
        return static_cast<const CTask&>(*row.m_item);
    }
    // Titles in brackets with their counts.
    QStringList Shape() const
    {
        QStringList shape;
        for (const auto& row : View->Rows())
            shape << (IsTitle(*row)
                          ? QStringLiteral("[%1 %2]").arg(GroupOf(*row).Name).arg(GroupOf(*row).VisibleCount)
                          : row->m_item->Subject);
        return shape;
    }
    const CPaintingOrderItem* RowOf(const QString& text, int nth = 0) const
    {
        for (const auto& row : View->Rows()) {
            if ((IsTitle(*row) ? GroupOf(*row).Name : row->m_item->Subject) == text && nth-- == 0)
                return row.get();
        }
        return nullptr;
    }
    QPoint PlaceOf(const CPaintingOrderItem& row, int x = 100) const
    {
        return {x, (row.m_top + row.m_bottom) / 2 + View->Scroller().Scroll()};
    }
    void Send(QEvent::Type type, QPoint at)
    {
        const bool release = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, at, at, Qt::LeftButton, release ? Qt::NoButton : Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(View.get(), &event);
    }
    void Tap(QPoint at)
    {
        Send(QEvent::MouseButtonPress, at);
        Send(QEvent::MouseButtonRelease, at);
    }

    CRecordingHost Host;
    std::unique_ptr<IPOutlookApp> Model;
    std::unique_ptr<CTasksView> View;

private:
    static inline std::unique_ptr<QTemporaryDir> s_folder;
    QTemporaryDir m_folder;
    std::shared_ptr<CPropertyVolume> m_volume;
};
} // namespace

// ---- groups

TEST_F(Tasks, FiveThousandStandInTheirGroupsOpenAndClosed)
{
    UseManyTasks();
    const struct {
        int Sort;
        int Groups;
    } cases[] = {{105, kCategories + 1}, {106, 2}, {107, 3}, {100, 0}};
    for (const auto& c : cases) {
        SetSort(0, c.Sort, 0);
        PimStore().RebuildTaskGroups();
        Open();
        int titles = 0, counted = 0, rows = 0, inGroup = 0;
        const CTaskGroup* group = nullptr;
        std::set<quint32> seen;
        for (const auto& row : View->Rows()) {
            if (IsTitle(*row)) {
                EXPECT_TRUE(!group || group->VisibleCount == inGroup);
                group = &GroupOf(*row);
                counted += group->VisibleCount;
                inGroup = 0;
                ++titles;
                continue;
            }
            ++rows;
            ++inGroup;
            seen.insert(row->m_identity.ItemId);
            if (c.Sort == 106) {
                EXPECT_EQ(TaskOf(*row).Complete, group->ItemId == 0);
            } else if (c.Sort == 107) {
                EXPECT_EQ(TaskOf(*row).Priority, int(group->ItemId));
            }
        }
        EXPECT_EQ(titles, c.Groups) << c.Sort;
        EXPECT_EQ(seen.size(), size_t(kTasks)) << c.Sort;
        EXPECT_EQ(rows > kTasks, c.Sort == 105) << "some stand in two categories";
        EXPECT_TRUE(c.Groups == 0 || counted == rows);
        View->OnCommand(CmdTasksCollapseAll);
        EXPECT_EQ(View->Rows().GetCount(), c.Groups ? c.Groups : kTasks) << c.Sort;
        if (c.Groups) {
            EXPECT_EQ(GroupOf(*View->Rows().GetAt(0)).VisibleCount > 0, true)
                << "a closed one keeps its count";
        }
        View->OnCommand(CmdTasksExpandAll);
        EXPECT_EQ(View->Rows().GetCount(), titles + rows) << c.Sort;
    }
}

TEST_F(Tasks, ATitleOpensAndClosesByTapAndKeyAndStaysSo)
{
    UseVolume(QStringLiteral("small.vol"));
    g_Settings.TasksView.Sort1 = 105;
    Save("Rake", 0, 1, false, "Garden");
    Save("Call", 0, 1, false, "Work");
    Save("Nap");
    Open();
    const QStringList open = {"[Garden 1]", "Rake", "[Work 1]", "Call", "[No category 1]", "Nap"};
    const QStringList closed = {"[Garden 1]", "[Work 1]", "Call", "[No category 1]", "Nap"};
    ASSERT_EQ(Shape(), open);
    Tap(PlaceOf(*RowOf("Garden")));
    EXPECT_EQ(Shape(), closed);
    EXPECT_EQ(View->SelectedRow(), RowOf("Garden"));
    Save("Dig", 0, 1, false, "Garden");
    Save("Buy", 0, 1, false, "Errands"); // moves the numbers of all groups
    Drain();
    EXPECT_EQ(Shape(), QStringList({"[Errands 1]", "Buy", "[Garden 2]", "[Work 1]", "Call", "[No category 1]",
                                    "Nap"}));
    EXPECT_EQ(View->SelectedRow(), RowOf("Garden"));
    View->OnKey(kKeyReturn);
    EXPECT_NE(RowOf("Rake"), nullptr);
    View->OnKey(kKeyReturn);
    EXPECT_EQ(RowOf("Rake"), nullptr);
    EXPECT_TRUE(Host.Commands.empty());
    View->OnKey('9');
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdToggleTask});
}

TEST_F(Tasks, ATaskInTwoCategoriesShowsTwiceAndChangesInBoth)
{
    UseVolume(QStringLiteral("small.vol"));
    g_Settings.TasksView.Sort1 = 105;
    const quint32 both = Save("Both", 0, 1, false, "Garden, Work");
    Save("Call", 0, 1, false, "Work");
    Open();
    ASSERT_EQ(Shape(), QStringList({"[Garden 1]", "Both", "[Work 2]", "Both", "Call"}));
    Tap(PlaceOf(*RowOf("Both", 1)));
    ASSERT_EQ(View->SelectedRow(), RowOf("Both", 1));
    ASSERT_TRUE(PimStore().ToggleTaskComplete(*Model, both));
    Drain();
    EXPECT_TRUE(TaskOf(*RowOf("Both", 0)).Complete);
    EXPECT_TRUE(TaskOf(*RowOf("Both", 1)).Complete);
    EXPECT_EQ(View->SelectedRow(), RowOf("Both", 1)) << "the one that was tapped, not its twin";
    CSoftKeyBar keys;
    View->FillSoftKeys(keys);
    EXPECT_EQ(keys.GetKey(2).ImageId, PictureActivateTask);
    g_Settings.TasksView.ItemsToView = 2;
    PimStore().RefreshTaskMatches();
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(Shape(), QStringList({"[Work 1]", "Call"}));
    EXPECT_EQ(View->SelectedRow(), nullptr);
}

// ---- sorts

TEST_F(Tasks, EachCodeSortsEachLevelInBothDirections)
{
    UseManyTasks();
    Open();
    const auto key = [](const CTask& task, int code) {
        switch (code) {
        case 100:
            return QString::number(task.End, 'f', 0).rightJustified(9, QLatin1Char('0'));
        case 101:
            return QString::number(task.Start, 'f', 0).rightJustified(9, QLatin1Char('0'));
        case 102:
            return QString::number(task.Priority);
        case 103:
            return QString::number(task.Complete);
        default:
            return task.Subject.toLower();
        }
    };
    for (int level = 0; level < 3; ++level) {
        for (int code = 100; code <= 104; ++code) {
            QStringList ups;
            for (const int direction : {0, 1}) {
                // What lies above the level is equal for many tasks.
                SetSort(0, 102, 0);
                SetSort(1, 103, 0);
                SetSort(2, 104, 0);
                SetSort(level, code, direction);
                Resort();
                ASSERT_EQ(View->Rows().GetCount(), kTasks);
                QStringList firsts;
                int wrong = 0, compared = 0;
                QString previousAbove, previous;
                int order = 0;
                for (const auto& row : View->Rows()) {
                    QString above;
                    for (int n = 0; n < level; ++n)
                        above += key(TaskOf(*row), n == 0 ? 102 : 103) + u'/';
                    const QString own = key(TaskOf(*row), code);
                    if (above == previousAbove && own != previous && !previous.isNull()) {
                        const int step = own < previous ? -1 : 1;
                        order = order ? order : step;
                        wrong += step != order;
                        ++compared;
                    }
                    previousAbove = above;
                    previous = own;
                }
                EXPECT_EQ(wrong, 0) << level << ' ' << code << ' ' << direction;
                // An upper level that already says it leaves nothing to sort by.
                const bool decided = (level > 0 && code == 102) || (level > 1 && code == 103);
                EXPECT_EQ(compared > 0, !decided) << level << ' ' << code;
                ups << QString::number(order);
            }
            if (ups[0] != "0") {
                EXPECT_EQ(ups[0].toInt(), -ups[1].toInt()) << level << ' ' << code;
            }
        }
    }
}

// ---- items to view

TEST_F(Tasks, ItemsToViewChooseRowsTitleAndCheck)
{
    UseVolume(QStringLiteral("small.vol"));
    SetSort(0, 104, 0);
    Save("a overdue", kToday - 1);
    Save("b today", kToday);
    Save("c week", kToday + 6);
    Save("d month", kToday + 29);
    Save("e later", kToday + 30);
    Save("f undated");
    Save("g done", kToday - 3, 1, true);
    Open();
    const struct {
        int Command, Value;
        const char *Rows, *Title;
    } cases[] = {{40405, 1, "ag", "Tasks (Overdue)"},    {40406, 2, "abcdef", "Tasks (Active)"},
                 {40407, 4, "g", "Tasks (Completed)"},   {40408, 8, "b", "Tasks (Due Today)"},
                 {40409, 16, "bc", "Tasks (7 Days)"},    {40410, 32, "bcd", "Tasks (30 Days)"},
                 {40411, 64, "bcdef", "Tasks (Future)"}, {40412, 128, "f", "Tasks (Undated)"},
                 {40404, 255, "abcdefg", "Tasks"}};
    QString ascending = Shape().value(0).left(1);
    for (const auto& c : cases) {
        View->OnCommand(c.Command);
        EXPECT_EQ(g_Settings.TasksView.ItemsToView, c.Value);
        QString rows;
        for (const QString& subject : Shape())
            rows += subject.left(1);
        QString expected = QString::fromLatin1(c.Rows);
        if (ascending != "a")
            std::reverse(expected.begin(), expected.end());
        EXPECT_EQ(rows, expected) << c.Command;
        EXPECT_EQ(View->GetTitleText(), c.Title);
        CTouchMenu menu;
        CTasksView::FillShowMenu(menu);
        ASSERT_EQ(menu.GetRowCount(), 9);
        for (int n = 0; n < 9; ++n)
            EXPECT_EQ(menu.GetRow(n).Checked, menu.GetRow(n).Command == c.Command);
    }
    g_Settings.TasksView.ItemsToView = 3; // a value that is none
    View->Refresh();
    EXPECT_EQ(View->GetTitleText(), "Tasks");
}

TEST_F(Tasks, AListWithoutTasksSaysSo)
{
    UseVolume(QStringLiteral("small.vol"));
    g_Settings.TasksView.Sort1 = 105;
    Save("Open", 0, 1, false, "Work");
    g_Settings.TasksView.ItemsToView = 4;
    Open();
    EXPECT_TRUE(View->Rows().IsEmpty()) << "not even a title";
    const QImage picture = View->Snapshot();
    int ink = 0;
    for (int y = 80; y < 120; ++y) {
        for (int x = 0; x < 240; ++x)
            ink += picture.pixel(x, y) != 0xFFFFFFFF;
    }
    EXPECT_GT(ink, 50) << "in the middle of the list";
    for (const int key : {int(kKeyUp), int(kKeyDown), int(kKeyReturn)})
        EXPECT_TRUE(View->OnKey(key));
    EXPECT_FALSE(View->OnKey('5')) << "dates are no business of this view";
    EXPECT_TRUE(Host.Commands.empty());
}

TEST_F(Tasks, AtMidnightTasksGoToTheirNewGroups)
{
    UseVolume(QStringLiteral("small.vol"));
    Save("Today", kToday);
    g_Settings.TasksView.ItemsToView = 1;
    for (const bool hidden : {false, true}) {
        Open();
        EXPECT_EQ(Shape(), QStringList());
        if (hidden)
            View->OnDeactivate();
        FileTime now;
        SystemTimeToFileTime({2026, 3, 3, 18, 0, 0, 30, 0}, &now);
        Time.Set(now);
        if (hidden)
            View->Refresh();
        else
            View->OnClockChanged(1);
        EXPECT_EQ(Shape(), QStringList({"Today"})) << hidden;
        SystemTimeToFileTime({2026, 3, 2, 17, 10, 0, 0, 0}, &now);
        Time.Set(now);
        PimStore().RefreshTaskMatches();
    }
}

// ---- menus

TEST_F(Tasks, SortMenusCheckWhatIsInForce)
{
    SetSort(0, 106, 1);
    SetSort(1, 101, 0);
    SetSort(2, 103, 1);
    const struct {
        int Level, First, Sorts, Rows;
        std::vector<int> Checked;
    } cases[] = {{0, 40377, 8, 12, {40383, 40386}},
                 {1, 40387, 5, 7, {40388, 40392}},
                 {2, 40394, 5, 7, {40395, 40400}}}; // the second sort's check, the third's direction
    for (const auto& c : cases) {
        CTouchMenu menu;
        CTasksView::FillSortMenu(menu, c.Level);
        ASSERT_EQ(menu.GetRowCount(), c.Rows);
        std::vector<int> checked;
        for (int n = 0; n < c.Rows; ++n) {
            if (n < c.Sorts) {
                EXPECT_EQ(menu.GetRow(n).Command, c.First + n);
            }
            if (menu.GetRow(n).Checked)
                checked.push_back(menu.GetRow(n).Command);
            EXPECT_GT(menu.GetRow(n).ImageId, 0);
        }
        EXPECT_EQ(checked, c.Checked) << c.Level;
    }
}

TEST_F(Tasks, TheMenuChecksEachLevelAndGreysWhatNeedsMore)
{
    UseVolume(QStringLiteral("small.vol"));
    Host.OffersAll = true;
    Save("Rake");
    for (const int sort : {104, 106}) {
        for (const bool selected : {false, true}) {
            SetSort(0, sort, 1);
            SetSort(1, 101, 0);
            SetSort(2, 103, 1);
            PimStore().RebuildTaskGroups();
            Open();
            if (selected) {
                View->OnKey(kKeyDown);
                View->OnKey(kKeyDown);
            }
            QMenu menu;
            EXPECT_TRUE(View->FillMenu(menu));
            std::map<int, QAction*> actions;
            for (QAction* action : menu.findChildren<QAction*>()) {
                if (action->data().isValid())
                    actions[action->data().toInt()] = action;
            }
            std::vector<int> checked;
            for (const auto& [command, action] : actions) {
                if (action->isChecked())
                    checked.push_back(command);
            }
            EXPECT_EQ(checked, std::vector<int>({40277 + sort, 40386, 40388, 40392, 40397, 40400, 40404}));
            EXPECT_EQ(actions.at(CmdTasksExpandAll)->isEnabled(), sort == 106);
            EXPECT_EQ(actions.at(CmdTasksCollapseAll)->isEnabled(), sort == 106);
            EXPECT_EQ(actions.at(CmdDuplicate)->isEnabled(), selected);
            EXPECT_EQ(actions.at(CmdBeam)->isEnabled(), selected);
            EXPECT_EQ(actions.count(CmdToggleTask), size_t(selected));
            EXPECT_EQ(actions.count(CmdDelete), size_t(selected));
            EXPECT_EQ(menu.actions().at(0)->data().toInt(), CmdNewTask);
            EXPECT_EQ(actions.count(CmdNewAppointment), 0u);
            CTouchMenu touch;
            View->FillTouchMenu(touch);
            EXPECT_EQ(touch.GetRow(0).Command, CmdNewTask);
            EXPECT_EQ(touch.GetRow(touch.GetRowCount() - 1).Command,
                      sort == 106 ? CmdTasksCollapseAll : CmdTasksSort1Menu);
        }
    }
}

// ---- selection and touch

TEST_F(Tasks, TheFirstTapSelectsAndTheSecondOpensTheMenu)
{
    UseVolume(QStringLiteral("small.vol"));
    SetSort(0, 104, 0);
    Save("A");
    Save("B");
    Open();
    EXPECT_EQ(View->SelectedRow(), nullptr) << "the view selects nothing";
    int menus = 0;
    CNumberedTimers closer([&](int) {
        if (CTouchMenu* menu = CTouchMenu::Current()) {
            ++menus;
            EXPECT_EQ(menu->GetTitle(), View->SelectedRow()->m_item->Subject);
            menu->Choose(CmdDelete);
        }
    });
    closer.Set(1, 20);
    const auto tap = [&](const QString& text) { Tap(PlaceOf(*RowOf(text))); };
    tap("A");
    tap("B");
    EXPECT_EQ(menus, 0);
    tap("B");
    EXPECT_EQ(menus, 1);
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdDelete});
    View->OnKey(View->SelectedRow() == View->Rows().GetAt(0) ? kKeyDown : kKeyUp);
    tap("A");
    EXPECT_EQ(menus, 1) << "a key's selection is no tap's";
    tap("A");
    EXPECT_EQ(menus, 2);
    Host.Commands.clear();
    const CPaintingOrderItem& row = *RowOf("B");
    const QRect box = row.m_checkBox.translated(0, row.m_top + View->Scroller().Scroll());
    Tap(box.topLeft() - QPoint(8, 0));
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdToggleTask});
    EXPECT_EQ(View->SelectedRow(), RowOf("B"));
    Tap(box.topLeft() - QPoint(9, 0));
    EXPECT_EQ(menus, 3) << "beside the margin";
}

TEST_F(Tasks, TheSelectionSurvivesNotices)
{
    UseManyTasks();
    g_Settings.TasksView.Sort1 = 105;
    Open();
    for (int n = 0; n < 40; ++n)
        View->OnKey(kKeyDown);
    ASSERT_EQ(View->SelectedRow(), View->Rows().GetAt(39));
    const QString subject = View->SelectedRow()->m_item->Subject;
    const quint32 id = View->SelectedIdentity().ItemId;
    const int scroll = View->Scroller().Scroll();
    Save("A new one", kToday, 2, false, CategoryName(150));
    Drain();
    EXPECT_EQ(View->SelectedIdentity().ItemId, id);
    EXPECT_EQ(View->Scroller().Scroll(), scroll);
    std::unique_ptr<ITask> task;
    ASSERT_TRUE(Model->GetTaskFromOid(id, task).IsOk());
    task->put_Subject("Another name");
    ASSERT_TRUE(task->Save().IsOk());
    Drain();
    ASSERT_NE(View->SelectedRow(), nullptr);
    EXPECT_EQ(View->SelectedRow()->m_item->Subject, "Another name");
    SetSort(0, 104, 0);
    Resort();
    EXPECT_EQ(View->SelectedIdentity().ItemId, id) << "over another sort, too";
    View->Scroller().SetScroll(0, -3000);
    Save("Further away");
    Drain();
    EXPECT_EQ(View->Scroller().Scroll(), -3000) << "a list that was moved away stays";
    ASSERT_TRUE(task->Delete().IsOk());
    Drain();
    EXPECT_EQ(View->SelectedRow(), nullptr);
}

TEST_F(Tasks, KeysStopAtTheEndsAndKeepTheRowInSight)
{
    UseVolume(QStringLiteral("small.vol"));
    g_Settings.TasksView.Sort1 = 107;
    for (int n = 0; n < 30; ++n)
        Save(QStringLiteral("Task %1").arg(n), 0, n % 3);
    for (const int popOut : {0, 3}) {
        g_Settings.TasksView.PopOut = popOut;
        Open();
        for (const int key : {int(kKeyDown), int(kKeyUp)}) {
            for (int n = 0; n < 40; ++n) {
                View->OnKey(key);
                ASSERT_GE(View->SelectedRow()->m_top + View->Scroller().Scroll(), 0);
                ASSERT_LE(View->SelectedRow()->m_bottom + View->Scroller().Scroll(),
                          View->ListArea().height());
            }
            EXPECT_EQ(View->SelectedRow(), View->Rows().GetAt(key == kKeyDown ? 32 : 0));
        }
    }
}

TEST_F(Tasks, AHiddenViewHoldsNothingOfTheStores)
{
    UseVolume(QStringLiteral("small.vol"));
    g_Settings.TasksView.Sort1 = 107;
    Save("A");
    Save("B", 0, 2);
    Open();
    Tap(PlaceOf(*RowOf("A")));
    View->OnDeactivate();
    EXPECT_TRUE(View->Rows().IsEmpty());
    EXPECT_EQ(View->GetSelectedItem(), nullptr);
    Save("C", 0, 0);
    Drain();
    View->resize(300, 200);
    View->OnResize();
    EXPECT_TRUE(View->Rows().IsEmpty());
    View->Refresh();
    EXPECT_EQ(Shape(),
              QStringList({"[Low Priority 1]", "C", "[Normal Priority 1]", "A", "[High Priority 1]", "B"}));
    EXPECT_EQ(View->SelectedRow(), RowOf("A"));
}

// ---- the preview pane

TEST_F(Tasks, ThePaneShowsTheSelectedTaskAndOpensIt)
{
    UseVolume(QStringLiteral("small.vol"));
    SetSort(0, 104, 1);
    auto task = Model->CreateTask();
    task->put_Subject("A");
    task->put_DueDate(kToday + 3);
    task->put_ReminderSet(true);
    task->put_ReminderTime(kToday + 1.5);
    task->put_Body("Take the papers along.");
    ASSERT_TRUE(task->Save().IsOk());
    Save("B");
    Host.OffersAll = true;
    Open();
    ASSERT_NE(View->PreviewPane(), nullptr);
    EXPECT_EQ(View->ListArea().height(), 200);
    const QImage none = View->Snapshot().copy(0, 200, 240, 60);
    Tap({100, 230});
    EXPECT_TRUE(Host.Commands.empty()) << "nothing to open";
    View->OnKey(kKeyDown);
    if (View->SelectedRow() != RowOf("A"))
        View->OnKey(kKeyDown);
    const CTaskPreviewPane& pane = *View->PreviewPane();
    EXPECT_TRUE(pane.DateText().startsWith("NA - ")) << qPrintable(pane.DateText());
    EXPECT_TRUE(pane.ReminderText().contains(", "));
    EXPECT_EQ(pane.NoteText(), "Take the papers along.");
    EXPECT_NE(View->Snapshot().copy(0, 200, 240, 60), none);
    task->put_Body("And the photographs.");
    ASSERT_TRUE(task->Save().IsOk());
    Drain();
    EXPECT_EQ(pane.NoteText(), "And the photographs.") << "the same task, changed by others";
    Tap({100, 230});
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdEdit});
    Send(QEvent::MouseButtonPress, {100, 230});
    Send(QEvent::MouseButtonRelease, {100, 100});
    EXPECT_EQ(Host.Commands.size(), 1u) << "the finger left it";
    Tap(PlaceOf(*RowOf("B")));
    EXPECT_EQ(pane.DateText(), "Undated task");
    EXPECT_EQ(pane.NoteText(), QString());
    EXPECT_EQ(pane.ReminderText(), QString());

    g_Settings.TasksView.IncludePreviewPane = 0;
    Open();
    EXPECT_EQ(View->PreviewPane(), nullptr);
    EXPECT_EQ(View->ListArea(), QRect(0, 0, 240, 260));
}

TEST_F(Tasks, SoftKeysFollowTheSelection)
{
    UseVolume(QStringLiteral("small.vol"));
    g_Settings.TasksView.Sort1 = 106;
    Save("Open");
    Save("Done", 0, 1, true);
    Open();
    CSoftKeyBar keys;
    View->FillSoftKeys(keys);
    ASSERT_EQ(keys.GetCount(), 3);
    EXPECT_EQ(keys.CommandAt(0), CmdTasksShowMenu);
    EXPECT_EQ(keys.CommandAt(1), CmdTasksSort1Menu);
    EXPECT_EQ(keys.CommandAt(2), CmdToggleTask);
    EXPECT_EQ(keys.GetKey(2).ImageId, 0);
    const struct {
        const char* Row;
        int Image;
    } cases[] = {{"Open", PictureCompleteTask}, {"Done", PictureActivateTask}, {"Open", PictureCompleteTask}};
    for (const auto& c : cases) {
        Tap(PlaceOf(*RowOf(c.Row)));
        View->RebuildSoftKeys(keys);
        EXPECT_EQ(keys.GetKey(2).ImageId, c.Image) << c.Row;
    }
    EXPECT_FALSE(View->UsesDateKeys());
    EXPECT_FALSE(View->IsTitleTappable());
}

TEST_F(Tasks, AScrolledFrameIsTheSameAsOnePaintedAnew)
{
    UseVolume(QStringLiteral("small.vol"));
    g_Settings.TasksView.Sort1 = 107;
    for (int n = 0; n < 40; ++n)
        Save(QStringLiteral("Task %1").arg(n), n % 2 ? kToday - 5 + n : 0, n % 3, n % 4 == 0);
    for (const int density : {96, 192}) {
        SetDensity(density);
        Open({240 * density / 96, 260 * density / 96});
        View->OnKey(kKeyDown);
        for (const int scroll : {0, -7, -300, -299, 40, -5000, 0}) {
            View->Scroller().SetScroll(0, scroll);
            const QImage scrolled = View->Snapshot();
            View->OnResize(); // forgets the rows' pictures
            View->Scroller().SetScroll(0, scroll);
            ASSERT_EQ(View->Snapshot(), scrolled) << "at " << scroll;
        }
        int top = 0;
        for (const auto& row : View->Rows()) {
            EXPECT_EQ(row->m_top, top);
            top = row->m_bottom + D(1);
        }
    }
}
