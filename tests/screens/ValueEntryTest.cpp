// Typed and picked values, and the search above long tables, without looks.
#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "screens/NavigationController.h"
#include "screens/TablePickerViewController.h"
#include "screens/TextValueGetterViewController.h"

namespace {

using namespace torv;

struct Plain final : ViewController {
    [[nodiscard]] QString look() const override { return {}; }
};

struct Taker final : TextValueGetterViewControllerDelegate, TablePickerViewControllerDelegate {
    void textValueGetterViewControllerDidGetValue(TextValueGetterViewController& screen) override {
        heard += screen.values().join(u'|').toStdString() + " ";
        if (onValue) onValue(screen);
    }
    bool textValueGetterViewControllerShouldValidateValues(TextValueGetterViewController&) override {
        return accepts;
    }
    QString textValueGetterViewControllerDidRequestTitleForValidationError(
        TextValueGetterViewController&) override {
        return "No";
    }
    void tablePickerViewControllerDidPickValue(TablePickerViewController&, const QString& value) override {
        heard += value.toStdString() + " ";
    }

    bool accepts = true;
    std::function<void(TextValueGetterViewController&)> onValue;
    std::string heard;
};

class ValueEntryTest : public testing::Test {
protected:
    template <class Screen>
    Screen& show(std::shared_ptr<Screen> screen) {
        stack.loadViewIfNeeded();
        stack.pushViewControllerAnimated(screen, false);
        return *screen;
    }
    static TextValueGetterTableViewCell& field(TextValueGetterViewController& screen, int row) {
        return dynamic_cast<TextValueGetterTableViewCell&>(*screen.cellAt({0, row}));
    }
    void run() { platform.loop.runWork(); }

    fakes::FakePlatform platform;
    NavigationController stack{std::make_shared<Plain>()};
    Taker taker;
};

TEST_F(ValueEntryTest, TheFirstFieldHasTheFocusAndReturnSaves) {
    auto& screen = show(TextValueGetterViewController::initWithValuesAndDefaultTexts({"a", "b"}, {"x", "y"}));
    screen.setDelegate(&taker);
    EXPECT_TRUE(field(screen, 0).isFirstResponder());
    EXPECT_EQ(screen.selectedRow(), (IndexPath{0, 0}));
    EXPECT_EQ(field(screen, 1).placeholder(), "y");
    field(screen, 0).textEdited("ab");
    field(screen, 0).returnPressed("abc");
    run();
    EXPECT_EQ(taker.heard, "abc|b ");
    EXPECT_FALSE(field(screen, 0).isFirstResponder());
    EXPECT_EQ(screen.selectedRow(), (IndexPath{0, 1}));
    field(screen, 1).clearTouched();
    run();
    field(screen, 1).returnPressed(field(screen, 1).value());
    run();
    EXPECT_EQ(taker.heard, "abc|b abc| ");
    EXPECT_EQ(screen.selectedRow(), (IndexPath{0, 0}));  // behind the last comes the first
}

TEST_F(ValueEntryTest, ARefusalKeepsTheScreenAndNobodyToAskSavesNothing) {
    auto& screen = show(TextValueGetterViewController::initForNumberOfValues());
    screen.setToolTip("Up to 9");
    screen.save();
    EXPECT_EQ(stack.alert(), nullptr);
    screen.setDelegate(&taker);
    taker.accepts = false;
    field(screen, 0).textEdited("10");
    screen.save();
    ASSERT_NE(stack.alert(), nullptr);
    EXPECT_EQ(stack.alert()->buttons(), QStringList{"Ok"});
    stack.alert()->touchButton(0);
    run();
    EXPECT_TRUE(field(screen, 0).isFirstResponder());
    EXPECT_EQ(taker.heard, "");
    taker.accepts = true;
    taker.onValue = [](TextValueGetterViewController& again) { again.save(); };  // a second press meanwhile
    screen.save();
    EXPECT_EQ(taker.heard, "10 ");
}

TEST_F(ValueEntryTest, WithoutValuesThereIsOneFieldAndItsTextIsAdded) {
    auto& screen = show(TextValueGetterViewController::initForNumberOfValues(0));
    screen.setDelegate(&taker);
    EXPECT_EQ(screen.numberOfRowsInSection(0), 1);
    field(screen, 0).editingEnded("typed");
    run();
    EXPECT_EQ(screen.values(), QStringList{"typed"});
}

TEST_F(ValueEntryTest, KeyboardTypesBecomeHints) {
    TextValueGetterTableViewCell cell{"cell"};
    const auto hints = [&](const TextValueGetterTableViewCell::Input& input) {
        cell.setInput(input);
        return cell.inputHints();
    };
    EXPECT_EQ(hints({}), Qt::ImhNone);
    EXPECT_EQ(hints({.keyboardType = numberPad}), Qt::ImhFormattedNumbersOnly);
    EXPECT_EQ(hints({.keyboardType = numbersAndPunctuation}), Qt::ImhFormattedNumbersOnly);
    EXPECT_EQ(hints({.keyboardType = 99, .autocapitalizationType = 1, .autocorrectionType = 1}),
              Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    EXPECT_EQ(hints({.secureTextEntry = true}), Qt::ImhSensitiveData | Qt::ImhHiddenText);
}

TEST_F(ValueEntryTest, APickIsToldOnceAndNotForWhatIsChosenAlready) {
    auto& picker = show(TablePickerViewController::initWithTitleValuesSelectedValue("Pick", {"a", "b"}, "b"));
    picker.setDelegate(&taker);
    const auto marked = [&](int row) { return !picker.cellAt({0, row})->marks().isEmpty(); };
    EXPECT_FALSE(marked(0));
    EXPECT_TRUE(marked(1));
    for (const int row : {1, 0, 0}) {
        picker.touchRow(0, row);
        run();
        EXPECT_FALSE(picker.selectedRow());
    }
    EXPECT_EQ(taker.heard, "a ");
    EXPECT_TRUE(marked(0));
    EXPECT_FALSE(marked(1));
}

TEST_F(ValueEntryTest, LongTablesAreSearchedAndShortOnesAreNot) {
    QStringList values;
    for (int i = 0; i < 31; ++i)
        values.push_back("Value " + QString::number(i));
    auto& picker = show(TablePickerViewController::initWithTitleValuesSelectedValue("Pick", values, {}));
    picker.setDelegate(&taker);
    ASSERT_TRUE(picker.isSearchable());
    picker.search("vALUE 2");
    run();
    auto& rows = *picker.rows();
    ASSERT_EQ(rows.rowCount(), 11);
    EXPECT_TRUE(rows.data(rows.index(0, 0), rows.roleNames().key("isFirst")).toBool());
    picker.activateIndex(10);
    run();
    EXPECT_EQ(taker.heard, "Value 29 ");
    picker.search({});
    run();
    EXPECT_EQ(rows.rowCount(), 31);
    values.removeLast();
    EXPECT_FALSE(
        show(TablePickerViewController::initWithTitleValuesSelectedValue("Pick", values, {})).isSearchable());
}

}  // namespace
