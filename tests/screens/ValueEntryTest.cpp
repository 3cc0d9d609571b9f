// Typed and picked values, and the search above long tables, without looks.
#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "screens/NavigationController.h"
#include "screens/TablePickerViewController.h"
#include "screens/TextValueGetterViewController.h"
#include "screens/TypedNumber.h"

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
    EXPECT_EQ(picker.selectedRow(), std::nullopt);
    picker.search({});
    run();
    EXPECT_EQ(rows.rowCount(), 31);
    values.removeLast();
    EXPECT_FALSE(
        show(TablePickerViewController::initWithTitleValuesSelectedValue("Pick", values, {})).isSearchable());
}

TEST(TypedNumber, NumbersAreTypedAsTheLocaleWritesThem) {
    EXPECT_EQ(typedNumber("31,5", QLocale{QLocale::German}), "31.5");
    EXPECT_EQ(typedNumber("31.5", QLocale{QLocale::German}), "31.5");
    EXPECT_EQ(typedNumber("31,5", QLocale{QLocale::English}), "31,5");
    EXPECT_EQ(typedNumber("3.250", QLocale{QLocale::German}), "3250");
    EXPECT_EQ(typedNumber(" -1.003.250,5", QLocale{QLocale::German}), " -1003250.5");
    EXPECT_EQ(typedNumber("3.2500", QLocale{QLocale::German}), "3.2500");
    EXPECT_EQ(typedNumber("1234.567", QLocale{QLocale::German}), "1234.567");
    EXPECT_EQ(typedNumber("3,250", QLocale{QLocale::English}), "3250");
    EXPECT_EQ(typedNumber("0.123,456", QLocale{QLocale::English}), "0.123,456");
    EXPECT_EQ(typedNumber("3 250,5", QLocale{QLocale::French}), "3250.5");
    EXPECT_EQ(typedNumber("-٣١٫٥", QLocale{QLocale::Arabic, QLocale::Egypt}), "-31.5");
    EXPECT_EQ(typedNumber("−5", QLocale{QLocale::Swedish}), "-5");
    EXPECT_EQ(typedNumber("5²", QLocale{QLocale::English}), "5²");
}

}  // namespace
