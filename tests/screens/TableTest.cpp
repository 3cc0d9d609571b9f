// Tables without looks: sections, reuse, selection, delete mode, and the keyboard's way.
#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "tools/pictures/Gallery.h"

namespace {

using namespace torv;
using pictures::Gallery;

class TableTest : public testing::Test {
protected:
    TableTest() {
        table->loadViewIfNeeded();
        table->viewWillAppear();
    }
    [[nodiscard]] QVariant shown(int index, const char* role) const {
        auto* rows = table->rows();
        return rows->data(rows->index(index, 0), rows->roleNames().key(role));
    }
    [[nodiscard]] TableSectionView view(int index, const char* role) const {
        return shown(index, role).value<TableSectionView>();
    }
    void run() { platform.loop.runWork(); }

    fakes::FakePlatform platform;
    std::shared_ptr<Gallery> table = std::make_shared<Gallery>();
};

TEST_F(TableTest, SectionsBearHeadersAndFootersAlsoWithoutRows) {
    ASSERT_EQ(table->rows()->rowCount(), 13);
    EXPECT_EQ(view(0, "header").text, "Values");
    EXPECT_EQ(view(1, "header").text, "");
    EXPECT_TRUE(shown(5, "isLast").toBool());
    EXPECT_FALSE(shown(5, "isFirst").toBool());
    EXPECT_EQ(shown(12, "rowHeight"), 0);
    EXPECT_EQ(view(12, "footer").height, 65);
    EXPECT_EQ(table->cellAt({Gallery::empty, -1}), nullptr);
    EXPECT_EQ(table->cellAt({Gallery::values, 6}), nullptr);
    EXPECT_FALSE(table->rows()->data({}, 0).isValid());
}

TEST_F(TableTest, AChosenRowStaysSelectedUntilTheScreenAppearsAnew) {
    table->touchRow(Gallery::values, 1);
    EXPECT_EQ(table->heard, "");  // not within the touch itself
    run();
    EXPECT_EQ(table->heard, "row0/1 ");
    EXPECT_TRUE(table->cellAt({Gallery::values, 1})->selected());
    table->reloadData();
    EXPECT_TRUE(table->cellAt({Gallery::values, 1})->selected());
    for (const auto& [section, row] : {std::pair{0, 4}, {0, 6}, {-1, 0}, {9, 9}}) {
        table->touchRow(section, row);  // one that may not be highlighted, and some that there are not
        table->touchAccessory(section, row == 4 ? 99 : row);
    }
    run();
    EXPECT_EQ(table->heard, "row0/1 ");
    table->viewWillAppear();
    EXPECT_FALSE(table->cellAt({Gallery::values, 1})->selected());
}

TEST_F(TableTest, DeletingTakesTheMarkOrASwipeAndThenTheRedButton) {
    const auto mark = [&](int row) {
        table->touchDeleteMark(Gallery::deletable, row);
        run();
        return table->confirmingRow();
    };
    EXPECT_FALSE(mark(1));  // not in delete mode
    table->setEditing(true);
    EXPECT_FALSE(mark(0));  // can't be deleted
    EXPECT_EQ(mark(1), (IndexPath{Gallery::deletable, 1}));
    EXPECT_TRUE(shown(10, "confirming").toBool());
    table->touchDelete(Gallery::deletable, 2);  // another one's
    run();
    EXPECT_EQ(table->names.size(), 3);
    EXPECT_FALSE(mark(2));  // any other touch only puts the button away
    EXPECT_FALSE(shown(10, "confirming").toBool());
    mark(1);
    table->touchDelete(Gallery::deletable, 1);
    table->touchDelete(Gallery::deletable, 1);  // twice in one turn
    run();
    EXPECT_EQ(table->names, (QStringList{"Default Profile", "Race"}));
    table->touchRow(Gallery::values, 0);
    run();
    EXPECT_EQ(table->heard, "");  // in delete mode nothing is chosen

    table->setEditing(false);
    table->swipeRow(Gallery::deletable, 1);
    run();
    EXPECT_EQ(table->confirmingRow(), (IndexPath{Gallery::deletable, 1}));
    table->touchRow(Gallery::values, 0);
    run();
    EXPECT_FALSE(table->confirmingRow());
    EXPECT_EQ(table->heard, "");
}

TEST_F(TableTest, TheKeyboardReachesRowsControlsAndTheDeleteButton) {
    for (const int index : {-1, 99, 12, 0, 6, 7}) {
        table->activateIndex(index);
        run();
    }
    EXPECT_EQ(table->heard, "row0/0 on label ");
    for (const int index : {6, 4, 0})
        table->chooseIndex(index);
    run();
    for (const int index : {6, 7, 99})
        table->touchAccessoryOfIndex(index);
    run();
    EXPECT_EQ(table->heard, "row0/0 on label row1/0 row0/0 detail1/0 ");
    table->deleteIndex(10);
    run();
    table->activateIndex(10);
    run();
    run();
    EXPECT_EQ(table->names, (QStringList{"Default Profile", "Race"}));
}

TEST_F(TableTest, ControlsTellTheirDelegateAndDisabledOnesDoNot) {
    auto& toggle = dynamic_cast<SwitchTableViewCell&>(*table->cellAt({Gallery::controls, 0}));
    toggle.on(true);
    EXPECT_EQ(table->heard, "");
    toggle.touchSwitch();
    run();
    EXPECT_FALSE(toggle.isOn());
    toggle.enable(false);
    toggle.touchSwitch();
    auto& label = dynamic_cast<TappableLabelTableViewCell&>(*table->cellAt({Gallery::controls, 1}));
    label.setEnabled(false);
    label.touchLabel();
    auto& field = dynamic_cast<TextValueGetterTableViewCell&>(*table->cellAt({Gallery::controls, 2}));
    field.returnPressed("3300");
    field.editingEnded("3301");
    run();
    EXPECT_EQ(table->heard, "off return:3301 ");
    EXPECT_EQ(table->typed, "3301");
}

}  // namespace
