// Dials, marks, needles and read-outs.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Dashboard.h"
#include "fonts/LcdFont.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

GaugeDial dial(std::int64_t minimumDegree, std::int64_t maximumDegree, std::int64_t minimum,
               std::int64_t maximum) {
    return {minimumDegree, maximumDegree, minimum, maximum};
}

TEST(GaugeDial, ValuesToRotationsAndBack) {
    struct Row {
        std::int64_t minimum, maximum;
        double unit, value, rotation;
    };
    for (const auto& row : {Row{0, 100, 1.8, 0, -110}, Row{0, 100, 1.8, 50, -20}, Row{0, 100, 1.8, 100, 70},
                            Row{-40, 120, 1.125, -40, -110}, Row{-40, 120, 1.125, 0, -65},
                            Row{10, 110, 1.8, 10, -92}, Row{10, 110, 1.8, 110, 88}}) {
        const auto scale = dial(-20, 160, row.minimum, row.maximum);
        EXPECT_DOUBLE_EQ(scale.degreeUnit(), row.unit);
        EXPECT_NEAR(scale.degreesForValue(row.value), row.rotation, 1e-9) << row.minimum << " " << row.value;
    }
    EXPECT_NEAR(dial(-20, 160, 0, 100).neutralValue(), 61.11, 0.01);
    EXPECT_NEAR(dial(-20, 160, -40, 120).valueForDegree(-110), -40, 1e-9);
    EXPECT_NEAR(dial(35, 210, -40, 120).valueForDegree(-55), 0, 1e-9);  // no minimum is added on this arc
    EXPECT_TRUE(std::isinf(dial(-20, 160, 5, 5).degreeUnit()));
    EXPECT_EQ(GaugeDial::degreesForMark(36, 5), 180);
    EXPECT_EQ(GaugeDial::degreesForMark(37, 5), -175);
    const std::vector<std::pair<std::int64_t, std::int32_t>> quadrants{
        {0, 7},   {1, 0},   {89, 0},   {90, 4},  {91, 1},  {179, 1}, {180, 5}, {181, 2},
        {269, 2}, {-91, 2}, {-179, 2}, {270, 6}, {-90, 6}, {360, 6}, {271, 3}, {-45, 3}};
    for (const auto& [degree, quadrant] : quadrants)
        EXPECT_EQ(GaugeDial::quadrant(degree), quadrant) << degree;
}

TEST(GaugeScale, EveryStyleHasItsTicksMajorsAndLabels) {
    struct Row {
        std::int32_t style;
        std::int64_t from, to;
        double side;
        bool mph;
        int ticks, majors, labels;
    };
    for (const auto& row : {Row{0, -20, 160, 392, false, 37, 7, 7}, Row{0, -20, 160, 350, true, 27, 7, 7},
                            Row{1, 35, 210, 180, false, 36, 6, 0}, Row{2, 90, 200, 180, false, 23, 6, 0},
                            Row{3, -10, 140, 180, false, 31, 7, 0}, Row{4, -30, 90, 180, false, 25, 7, 0},
                            Row{5, -30, 90, 90, false, 0, 0, 0}, Row{6, -30, 90, 114, false, 0, 0, 0}}) {
        const auto scale = GaugeScale::make(dial(row.from, row.to, 0, 100), row.style, {row.side, row.side},
                                            row.mph, [](double value) { return value >= 75; });
        const auto majors =
            std::count_if(scale.ticks.begin(), scale.ticks.end(), [](const auto& t) { return t.major; });
        EXPECT_EQ(static_cast<int>(scale.ticks.size()) - majors, row.ticks) << row.style << row.mph;
        EXPECT_EQ(majors, row.majors) << row.style << row.mph;
        EXPECT_EQ(static_cast<int>(scale.labels.size()), row.labels) << row.style;
        for (const auto& label : scale.labels) {
            const QRectF frame{label.position, QSizeF{label.width, GaugeScale::labelHeight}};
            EXPECT_TRUE((QRectF{0, 0, row.side, row.side}.contains(frame))) << label.value;
        }
    }
    const auto scale =
        GaugeScale::make(dial(-20, 160, 0, 60), 0, {392, 392}, false, [](double v) { return v >= 45; });
    std::vector<std::int64_t> labels;
    for (const auto& label : scale.labels)
        labels.push_back(label.value);
    EXPECT_EQ(labels, (std::vector<std::int64_t>{0, 10, 20, 30, 40, 50, 60}));
    EXPECT_NEAR(scale.outerRadius, 157.74, 0.01);
    for (const auto& tick : scale.ticks) {
        const double rotation = tick.degrees > 180 ? tick.degrees - 360 : tick.degrees;
        EXPECT_EQ(tick.warning, rotation > 24.9) << rotation;  // where 45 is
    }
}

TEST(NeedleMotion, EasesInItsSecondAndTakesUpWhatIsUnderWay) {
    NeedleMotion needle{1.0s};
    NeedleMotion::Time now{10s};
    EXPECT_TRUE(needle.atRest(now));
    needle.aim(100, now);
    double last = 0;
    for (int i = 1; i <= 10; ++i) {
        const double angle = needle.angle(now + i * 100ms);
        EXPECT_GT(angle, last);
        last = angle;
    }
    EXPECT_NEAR(needle.angle(now + 500ms), 50, 1e-9);
    EXPECT_LT(needle.angle(now + 100ms), 5);
    EXPECT_FALSE(needle.atRest(now + 999ms));
    EXPECT_TRUE(needle.atRest(now + 1s));
    EXPECT_EQ(needle.angle(now + 5s), 100);
    // Targets that come faster than it turns: no jump, and it gets there.
    for (int i = 0; i < 20; ++i) {
        now += 5s / 20;
        const double before = needle.angle(now);
        needle.aim(i % 2 ? 30 : -40, now);
        EXPECT_NEAR(needle.angle(now), before, 1e-9);
        EXPECT_NEAR(needle.angle(now + 1ms), before, 1);
    }
    EXPECT_EQ(needle.angle(now + 1s), 30);
    for (const double nowhere : {std::nan(""), std::numeric_limits<double>::infinity()})
        needle.aim(nowhere, now + 2s);
    EXPECT_EQ(needle.angle(now + 4s), 30);
}

class GaugeViewTest : public testing::Test {
protected:
    GaugeViewTest() { gauge->setAttribute(attribute(8)); }

    static std::shared_ptr<const TorvAttribute> attribute(int aid, int rule = 1, int mark = 45) {
        return std::make_shared<const TorvAttribute>(
            TorvAttribute::torvAttributeFromDictionary(fakes::sensor(aid, "0", "60", rule, mark)));
    }
    void read(AID aid, std::uint8_t value) {
        fakes::Bytes bytes{value, 0, 0, 0};
        gauge->readAid(bytes, aid);
        platform.loop.runWork();
    }

    fakes::FakePlatform platform;
    std::shared_ptr<GaugeView> gauge = makeReader<GaugeView>(QRectF{0, 0, 180, 180});
};

TEST_F(GaugeViewTest, OnlyAnActiveGaugeTakesValues) {
    read(8, 12);
    EXPECT_EQ(gauge->value(), 0);
    gauge->setActive(true);
    int aimed = 0;
    QObject::connect(gauge.get(), &GaugeView::needleAimed, [&] { ++aimed; });
    read(8, 12);
    EXPECT_EQ(gauge->value(), 12);
    EXPECT_EQ(gauge->previousValue(), 12);
    read(8, 12);
    EXPECT_EQ(aimed, 1);  // of the same angle nothing comes
    platform.loop.runFor(1s);
    EXPECT_EQ(gauge->needleAngle(), gauge->dial().degreesForValue(12));
    EXPECT_TRUE(gauge->needleAtRest());
    gauge->reloadView();
    EXPECT_EQ(gauge->needleAngle(), 0);  // a new needle
    gauge->updateValue(std::nullopt);
    EXPECT_EQ(gauge->value(), 0);
}

TEST_F(GaugeViewTest, TheTorqueLockHoldsTheConverterSlipAtZero) {
    gauge->setActive(true);
    auto& center = platform.notificationCenter();
    center.postNotificationName(lockNotification);
    read(8, 12);
    EXPECT_EQ(gauge->value(), 12);
    gauge->setAttribute(attribute(40));
    read(40, 9);
    EXPECT_EQ(gauge->value(), 0);
    EXPECT_FALSE(gauge->copy()->isLocked());
    center.postNotificationName(unlockNotification);
    read(40, 9);
    EXPECT_EQ(gauge->value(), 9);
}

TEST_F(GaugeViewTest, FacesFollowTheStyleAndCopiesStartAnew) {
    gauge->setSmallIconImages({"small", {20, 20}}, {"small glow", {20, 20}});
    gauge->setLargeIconImages({"large", {40, 40}}, {"large glow", {40, 40}});
    gauge->setUnitImage({"unit", {20, 13}});
    gauge->setActive(true);
    for (std::int32_t style = 0; style <= 6; ++style) {
        gauge->setStyle(style);
        gauge->reloadView();
        EXPECT_EQ(gauge->needle().isEmpty(), style >= 5) << style;
        EXPECT_EQ(gauge->name().isEmpty(), style < 5) << style;
        // The icon is above the needle's centre, or beside it, on the side that is free.
        const auto icon = gauge->iconFrame();
        const auto center = gauge->needleFrame().center();
        EXPECT_EQ(icon.left() > center.x(), style == 2) << style;
        EXPECT_EQ(!icon.isEmpty() && icon.right() < center.x(), style == 4) << style;
    }
    gauge->setStyle(0);
    gauge->setFrame({0, 0, 350, 350});
    EXPECT_EQ(gauge->needleFrame().height(), 270);
    EXPECT_EQ(gauge->icon(), "large");
    gauge->setValue(45);
    EXPECT_EQ(gauge->icon(), "large glow");
    gauge->setPriority(1);
    const auto copy = gauge->copy();
    EXPECT_EQ(copy->style(), 0);
    EXPECT_FALSE(copy->isActive());
    EXPECT_EQ(copy->priority(), 0);
    EXPECT_EQ(copy->value(), 0);
    EXPECT_EQ(copy->attribute(), gauge->attribute());
}

TEST_F(GaugeViewTest, NothingThatAProfileOrAModuleSaysBreaksIt) {
    gauge->setActive(true);
    for (const auto& [minimum, maximum] :
         {std::pair{"0", "0"}, {"5", "5"}, {"100", "-100"}, {"-9e18", "9e18"}, {"1e300", "-1e300"}}) {
        gauge->setAttribute(std::make_shared<const TorvAttribute>(
            TorvAttribute::torvAttributeFromDictionary(fakes::sensor(8, minimum, maximum, 1, 45, "MPH"))));
        for (std::int32_t style = -1; style < 9; ++style) {
            gauge->setStyle(style);
            gauge->reloadView();
            for (const double value :
                 {0.0, -1e30, 1e300, std::nan(""), std::numeric_limits<double>::infinity()}) {
                gauge->setValue(value);
                EXPECT_TRUE(std::isfinite(gauge->needleAngle()));
                EXPECT_LE(gauge->scale().ticks.size(), 100U);
            }
        }
    }
    gauge->setAttribute(nullptr);
    read(8, 1);
    EXPECT_EQ(gauge->value(), 0);
}

TEST(DigitalDisplay, ShowsTheShortestFormCutBehindTheFifthSign) {
    const auto text = [](const DigitalDisplayView& view) {
        std::string signs;
        for (const auto& key : view.glyphs())
            signs +=
                key.isEmpty() ? ' ' : static_cast<char>(key.section(u'_', -1).section(u'.', 0, 0).toInt());
        return signs;
    };
    DigitalDisplayView view{{0, 0, 100, 35}};
    EXPECT_EQ(text(view), "     ");
    for (const auto& [value, left] : {std::pair{0.0, "0    "},
                                      {13.8, "13.8 "},
                                      {123456.0, "12345"},
                                      {-12.345, "-12.3"},
                                      {1234567.0, "1.234"},
                                      {0.00001, "1e-05"},
                                      {std::nan(""), "nan  "},
                                      {-INFINITY, "-inf "}}) {
        view.setTextAlignment(1);
        view.setValue(value);
        EXPECT_EQ(text(view), left);
    }
    view.setStyle(3);
    view.setTextAlignment(0);
    view.setValue(42);
    EXPECT_EQ(text(view), "   42");
    const auto copy = view.copy();
    EXPECT_EQ(copy->glyphs()[4], "TXT_BL_SM_50.png");  // of style 0 until its next value
    EXPECT_EQ(copy->style(), 3);
    view.setUseSingleValue(true);
    view.setValue('P');
    EXPECT_EQ(text(view), "    P");
    for (const auto sign : QStringLiteral("0189.-enaif"))
        EXPECT_FALSE(lcdGlyph(sign, {22, 34}).isEmpty()) << sign.toLatin1();
}

TEST(Widgets, PowerLevelsLampsAndTheirNotifications) {
    fakes::Dashboard dashboard;
    dashboard.launch(fakes::truck("Truck", {fakes::sensor(8)}));
    std::string heard;
    auto& center = dashboard.platform.notificationCenter();
    const auto lock = center.addObserver(lockNotification, [&] { heard += "lock "; });
    const auto unlock = center.addObserver(unlockNotification, [&] { heard += "unlock "; });
    const auto& strip = *dashboard.open().controls();
    auto& power = strip.powerLevelView();
    struct Row {
        int level;
        const char* bar;
        double width, shown;
    };
    PowerLevelView::setMaximumLevel(127);
    for (const auto& row :
         {Row{127, "picture/POWERMETER_BARS.png", 45, 127}, Row{0, "picture/POWERMETER_BARS.png", 0, 0},
          Row{128, "picture/POWERMETER_BARS_WARN.png", 45, 0},
          Row{228, "picture/POWERMETER_BARS_GREEN.png", 45, 0},
          Row{229, "picture/POWERMETER_BARS_WARN.png", 45, 101}}) {
        dashboard.receive(4, {static_cast<std::uint8_t>(row.level)});
        EXPECT_EQ(power.bar(), row.bar) << row.level;
        EXPECT_DOUBLE_EQ(power.barWidth(), row.width) << row.level;
        EXPECT_EQ(power.powerLevelNumber().value(), row.shown) << row.level;
    }
    for (const auto& [count, shown] : {std::pair<std::uint8_t, double>{1, 45}, {0, 0}, {11, 22.5}}) {
        dashboard.receive(15, {count});
        center.postNotificationName(customTuningSettingsUpdated);
        EXPECT_EQ(PowerLevelView::maximumLevel(), static_cast<float>(count) - 1);
        dashboard.receive(4, {5});
        EXPECT_EQ(power.shownBarWidth(), shown) << static_cast<int>(count);
    }
    PowerLevelView::setMaximumLevel(127);

    EXPECT_EQ(heard, "unlock ");  // with the page
    for (const bool on : {true, true, false, false})
        dashboard.receive(6, {on ? std::uint8_t{1} : std::uint8_t{0}});
    EXPECT_EQ(heard, "unlock lock unlock ");
    EXPECT_EQ(strip.sootView().image(), "picture/blank.png");
    EXPECT_EQ(strip.soxView().image(), "picture/blank.png");
    EXPECT_EQ(strip.soxView().priority(), 0);
    EXPECT_EQ(strip.sootView().priority(), 1);
    dashboard.receive(53, {1});
    dashboard.receive(54, {1});
    EXPECT_EQ(strip.sootView().image(), "picture/53_SIDE_GLOW.png");
    EXPECT_EQ(strip.soxView().image(), "picture/54_SIDE_GLOW.png");
    EXPECT_EQ(strip.turbo(), "picture/blank.png");
    center.postNotificationName(turboOnNotification);
    EXPECT_EQ(strip.turbo(), "picture/1_SIDE_GLOW.png");
    dashboard.receive(5, {1});
    EXPECT_NE(strip.gearView().currentGear().glyphs()[0], "");
}

}  // namespace
