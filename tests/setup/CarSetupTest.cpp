// The choice of a vehicle, with an update server that the test plays.
#include <gtest/gtest.h>

#include <map>

#include "fakes/FakePlatform.h"
#include "fakes/FreshEngine.h"
#include "platform/Reachability.h"
#include "platform/StoredKeys.h"
#include "screens/NavigationController.h"
#include "vehicles/VehicleDataSource.h"
#include "vehicles/screens/CarSetupTableViewController.h"

namespace {

using namespace torv;

std::string document(const std::string& name, const std::string& version, int lowest) {
    return R"({"vehicle": ")" + name + R"(", "version": ")" + version +
           R"(", "url": "http://server/x", "parameters": {"settings": [{"aid": 95, "formatter": 0,
               "multiplyFactor": 1, "minValue": )" +
           std::to_string(lowest) + "}]}}";
}

Vehicle vehicle(const std::string& name, int lowest, bool downloaded = true, const char* version = "1.0") {
    Vehicle made;
    made.setName(name);
    made.setVersion(version);
    made.setUrl("http://server/x");
    if (downloaded) made.setInfo(ProfileInfo{document(name, version, lowest)});
    return made;
}

/// Buttons that end the alerts which come, one after the other: a digit each.
struct Case {
    const char* what;
    bool firstRun;
    const char* picked;
    bool pickedIsDownloaded;
    bool updateAvailable;
    const char* download;  ///< what the server answers; nothing for an error
    const char* buttons;
    const char* alerts;
    const char* current;  ///< afterwards, with its version
    const char* stored;   ///< names under which the lowest value of "Old" or "New" was stored
    bool closed;
};

struct Below final : ViewController {
    [[nodiscard]] QString look() const override { return {}; }
};

class CarSetupTest : public testing::Test {
protected:
    CarSetupTest() {
        fakes::freshenEngine();
        platform.network.flags = Reachability::reachable;
        EXPECT_TRUE(VehicleDataSource::setUpdateServer("http://server", platform.loader));
    }
    ~CarSetupTest() override {
        if (app) app->applicationWillTerminate();
        static_cast<void>(
            VehicleDataSource::setUpdateServer(VehicleDataSource::defaultUpdateServer, platform.loader));
    }
    void answer(const std::string& text) {
        platform.loader.replies.push_back(
            {.body = Data{text.begin(), text.end()}, .status = 200, .error = {}});
    }
    void open(bool firstRun) {
        if (!firstRun) platform.defaults.setObjectForKey(true, firstRunKey);
        app = std::make_shared<iTorvAppDelegate>();
        app->applicationDidFinishLaunchingWithOptions({}, [](const auto&) {});
        screen = std::make_shared<CarSetupTableViewController>(app);
        root = std::make_shared<Below>();
        if (firstRun) {
            root->presentModalViewControllerAnimated(std::make_shared<NavigationController>(screen), true);
        } else {
            stack = std::make_shared<NavigationController>(root);
            stack->pushViewControllerAnimated(screen, false);
        }
    }
    /// The list is read, and that nobody answers is taken note of.
    void openOffline(bool firstRun) {
        platform.network.flags = 0;
        open(firstRun);
        run();
        for (; screen->alert(); run())
            screen->alert()->touchButton(0);
    }
    void run() { platform.loop.runWork(); }
    [[nodiscard]] bool closed() const {
        return stack ? stack->topViewController() != screen.get()
                     : root->presentedViewController() == nullptr;
    }
    std::string press(const std::string& buttons) {
        std::string titles;
        for (const char button : buttons) {
            run();
            auto* const alert = screen->alert();
            if (!alert) return titles + "nothing to press";
            for (const auto& [title, message] : messages) {
                if (alert->title() == title) {
                    EXPECT_EQ(alert->message(), message);
                }
            }
            titles += alert->title().toStdString() + " ";
            alert->touchButton(button - '0');
        }
        run();
        if (screen->alert()) titles += "left: " + screen->alert()->title().toStdString();
        return titles;
    }

    std::map<QString, QString> messages{
        {"Update error",
         "There is no internet connection right now. Please restart the app with internet access in order to "
         "update vehicle profiles."}};  // by their titles
    fakes::FakePlatform platform;
    std::shared_ptr<iTorvAppDelegate> app;
    std::shared_ptr<ViewController> root;
    std::shared_ptr<CarSetupTableViewController> screen;
    std::shared_ptr<NavigationController> stack;
};

class CarSetupFlow : public CarSetupTest, public testing::WithParamInterface<Case> {};

TEST_P(CarSetupFlow, RowByRow) {
    const auto& c = GetParam();
    auto picked = vehicle(c.picked, 222, c.pickedIsDownloaded);
    picked.setUpdateAvailable(c.updateAvailable);
    const bool same = std::string{c.picked} == "Old";
    const auto old = same ? picked : vehicle("Old", 111);
    VehicleDataSource::setCurrentVehicle(old);
    VehicleDataSource::saveVehicle(old);
    VehicleDataSource::saveVehicle(picked);
    openOffline(c.firstRun);
    platform.network.flags = Reachability::reachable;
    if (c.download) answer(c.download);
    messages.insert({"Update available",
                     QString{"A newer version of the current vehicle profile is available. %1Do you want to "
                             "download it?"}
                         .arg(c.firstRun ? ""
                                         : "Updating a vehicle profile might clear some sensors you have "
                                           "chosen.")});
    const int row = screen->vehicles()[0].name() == c.picked ? 0 : 1;
    screen->touchRow(0, row);
    EXPECT_EQ(press(c.buttons), c.alerts);
    const auto current = VehicleDataSource::currentVehicle();
    EXPECT_EQ(current.name().value_or("") + " " + current.version().value_or(""), c.current);
    EXPECT_EQ(app->currentVehicle().name(), current.name());
    std::string stored;
    for (const auto* name : {"Old", "New"}) {
        const auto values = SettingValueStore::load(vehicle(name, 0));
        if (values) stored += std::string{name} + " " + std::to_string(values->at(95).bytes()[0]) + " ";
    }
    EXPECT_EQ(stored, c.stored);
    EXPECT_EQ(closed(), c.closed);
}

const auto newer = document("New", "2.0", 33);
const auto newerOld = document("Old", "2.0", 44);
const auto older = document("Old", "0.9", 55);

INSTANTIATE_TEST_SUITE_P(
    All, CarSetupFlow,
    testing::Values(
        Case{"the same, nothing new", false, "Old", true, false, nullptr, "", "", "Old 1.0", "Old 222 ",
             true},
        Case{"the same on the first run", true, "Old", true, false, nullptr, "", "", "Old 1.0", "Old 222 ",
             true},
        Case{"another", false, "New", true, false, nullptr, "1", "Warning ", "New 1.0", "New 111 ", true},
        Case{"another, refused", false, "New", true, false, nullptr, "0", "Warning ", "Old 1.0", "", false},
        Case{"another on the first run", true, "New", true, false, nullptr, "", "", "New 1.0", "New 111 ",
             true},
        Case{"another to download", false, "New", false, false, newer.c_str(), "1", "Warning ", "New 2.0",
             "New 111 ", true},
        Case{"another whose download fails", false, "New", false, false, nullptr, "10",
             "Warning Update error ", "Old 1.0", "", false},
        Case{"another with a login page", true, "New", false, false, "<html>Log in</html>", "0",
             "Update error ", "Old 1.0", "", false},
        Case{"another to download on the first run", true, "New", false, false, newer.c_str(), "", "",
             "New 2.0", "New 111 ", true},
        Case{"another with nothing in it", true, "New", false, false, "", "0", "Update error ", "Old 1.0", "",
             false},
        Case{"another with an older copy, updated", false, "New", true, true, newer.c_str(), "1", "Warning ",
             "New 2.0", "New 111 ", true},
        Case{"another whose update fails on the first run", true, "New", true, true, nullptr, "0",
             "Update error ", "New 1.0", "New 111 ", false},
        Case{"the same on the first run, updated", true, "Old", true, true, newerOld.c_str(), "1",
             "Update available ", "Old 2.0", "Old 44 ", true},
        Case{"the same, with less than was promised", false, "Old", true, true, older.c_str(), "1",
             "Update available ", "Old 0.9", "Old 55 ", true},
        Case{"another whose update fails", false, "New", true, true, nullptr, "10", "Warning Update error ",
             "New 1.0", "New 111 ", false},
        Case{"the same, updated", false, "Old", true, true, newerOld.c_str(), "1", "Update available ",
             "Old 2.0", "Old 44 ", true},
        Case{"the same, update refused", false, "Old", true, true, nullptr, "0", "Update available ",
             "Old 1.0", "", true},
        Case{"the same, updated with a login page", false, "Old", true, true, "<html>Log in</html>", "10",
             "Update available Update error ", "Old 1.0", "", false},
        Case{"the same, update fails", false, "Old", true, true, nullptr, "10",
             "Update available Update error ", "Old 1.0", "Old 222 ", false}));

TEST_F(CarSetupTest, TheListLoadsInTheBackgroundAndMarksWhatThereIs) {
    VehicleDataSource::setCurrentVehicle(vehicle("Old", 1));
    const QString longName = "A" + QString{200, QChar{0x05D0}};
    answer(R"([{"vehicle": "Old", "version": "1.1", "url": "http://server/y"}, {"vehicle": ")" +
           longName.toStdString() + R"(", "version": "3.0"}])");
    open(false);
    EXPECT_EQ(screen->viewForHeaderInSection(0).text, "Choose your vehicle profile");
    EXPECT_EQ(screen->viewForFooterInSection(0).text,
              "Enable your Internet connection to download updated vehicle profiles.");
    EXPECT_EQ(screen->cellAt({0, 0})->text(), "Loading vehicle profiles...");
    EXPECT_TRUE(screen->cellAt({0, 0})->busy());
    screen->touchRow(0, 0);
    run();
    EXPECT_EQ(screen->alert(), nullptr);
    ASSERT_EQ(screen->numberOfRowsInSection(0), 2);
    EXPECT_EQ(screen->cellAt({0, 0})->text(), longName);
    EXPECT_EQ(screen->cellAt({0, 0})->detailText(), "version 3.0");
    EXPECT_EQ(screen->cellAt({0, 0})->marks().size(), 1);
    const auto both = screen->cellAt({0, 1})->marks();
    ASSERT_EQ(both.size(), 2);
    EXPECT_TRUE(both[0].contains("checkmark") && both[1].contains("UPDATE_AVAILABLE"));
    EXPECT_FALSE(app->connectionErrorMessageAllowed());
    screen->viewDidAppear();
    ASSERT_NE(screen->alert(), nullptr);
    answer(document("Old", "1.1", 9));
    EXPECT_EQ(press("1"), "Update available ");
    EXPECT_FALSE(closed());
    EXPECT_EQ(screen->cellAt({0, 1})->marks().size(), 1);
    stack->popViewControllerAnimated(false);
    EXPECT_TRUE(app->connectionErrorMessageAllowed());
}

TEST_F(CarSetupTest, AChoiceMixesTheStoresAndTellsANewVersion) {
    const auto old = vehicle("Old", 7, true, "1.0");
    auto updated = vehicle("Old", 7, true, "1.1");
    updated.setInfo(ProfileInfo{R"({"vehicle": "Old", "version": "1.1", "parameters": {"settings": [
        {"aid": 152, "formatter": 7, "minValue": 30}]}})"});
    VehicleDataSource::setCurrentVehicle(updated);
    VehicleDataSource::saveVehicle(updated);
    const std::vector<std::uint8_t> modes{3, 99, 0};
    SettingValueStore::save({{152, AV::forAID(152, modes)}, {17, AV::forAID(17, modes)}}, updated);
    platform.defaults.setObjectForKey(true, turboSettingKey);
    platform.network.flags = 0;
    open(false);
    run();
    EXPECT_EQ(screen->alert()->message(),
              "You are not connected to the Internet. Please quit this app and connect to the Internet. Then "
              "re-launch this app");
    screen->alert()->touchButton(0);
    run();
    VehicleDataSource::setCurrentVehicle(old);  // another program has done this
    screen->touchRow(0, 0);
    run();
    EXPECT_EQ(app->currentVehicle().version(), "1.1");
    const auto values = SettingValueStore::load(updated);
    EXPECT_EQ(values->at(152).bytes()[0], 3);   // the switches stay
    EXPECT_EQ(values->at(152).bytes()[1], 30);  // the number is the lowest
    EXPECT_EQ(values->at(17).bytes()[1], 99);   // what the profile does not tell of stays
    EXPECT_FALSE(platform.defaults.objectForKey(turboSettingKey).boolValue());
}

TEST_F(CarSetupTest, TheUpdateThatIsOfferedAtOnceMayBeRefusedOrFail) {
    const auto old = vehicle("Old", 111);
    VehicleDataSource::setCurrentVehicle(old);
    VehicleDataSource::saveVehicle(old);
    answer(R"([{"vehicle": "Old", "version": "2.0", "url": "http://server/x"}])");
    open(false);
    run();
    screen->viewDidAppear();
    EXPECT_EQ(press("0"), "Update available ");
    EXPECT_FALSE(closed());
    EXPECT_EQ(VehicleDataSource::currentVehicle().version(), "1.0");
    screen->viewDidAppear();
    EXPECT_EQ(press("1"), "Update available left: Update error");  // the server is silent
    EXPECT_FALSE(SettingValueStore::load(old));
    EXPECT_EQ(press("0"), "Update error ");  // goes on with what there is
    EXPECT_EQ(VehicleDataSource::currentVehicle().version(), "1.0");
    EXPECT_EQ(SettingValueStore::load(old)->at(95).bytes()[0], 111);
}

TEST_F(CarSetupTest, AScreenThatIsLeftDuringADownloadChangesNothing) {
    VehicleDataSource::setCurrentVehicle(vehicle("Old", 1));
    VehicleDataSource::saveVehicle(vehicle("New", 2, false));
    openOffline(false);
    answer(document("New", "2.0", 3));
    screen->touchRow(0, 0);
    run();
    EXPECT_EQ(screen->alert()->message(),
              "Choosing a new vehicle profile will clear the sensors you have chosen.");
    screen->alert()->touchButton(1);
    stack->touchBack();  // comes after the button and before the download's end
    run();
    EXPECT_TRUE(closed());
    EXPECT_EQ(VehicleDataSource::currentVehicle().name(), "Old");
}

TEST_F(CarSetupTest, ARowIsLeftAloneDuringADownload) {
    VehicleDataSource::setCurrentVehicle(vehicle("Old", 1));
    VehicleDataSource::saveVehicle(vehicle("New", 2, false));
    VehicleDataSource::saveVehicle(vehicle("Third", 3));
    openOffline(true);
    answer(document("New", "2.0", 3));
    screen->touchRow(0, 0);
    screen->touchRow(0, 1);  // comes while the document is on its way
    run();
    EXPECT_EQ(VehicleDataSource::currentVehicle().name(), "New");
    EXPECT_TRUE(closed());
}

TEST_F(CarSetupTest, ARowIsLeftAloneDuringAPass) {
    VehicleDataSource::setCurrentVehicle(vehicle("Old", 1));
    VehicleDataSource::saveVehicle(vehicle("New", 2));
    openOffline(false);
    const auto oneMoment = [&] {
        const auto title = screen->alert() ? screen->alert()->title() : QString{};
        EXPECT_FALSE(screen->cellAt({0, 0})->busy());
        press("0");
        return title == "One moment";
    };
    auto pass = app->beginPass();
    screen->touchRow(0, 0);
    run();
    EXPECT_TRUE(oneMoment());
    pass.reset();
    screen->touchRow(0, 0);
    run();
    pass = app->beginPass();  // a replay, while the question stands
    screen->alert()->touchButton(1);
    run();
    EXPECT_TRUE(oneMoment());
}

TEST_F(CarSetupTest, TheFirstRunHasACloseButtonOnce) {
    VehicleDataSource::setCurrentVehicle(vehicle("Old", 1));
    open(true);
    run();
    ASSERT_NE(screen->leftBarButton(), nullptr);
    EXPECT_TRUE(platform.defaults.objectForKey("FIRST_RUN_KEY").boolValue());
    screen->leftBarButton()->touch();
    run();
    EXPECT_TRUE(closed());
    EXPECT_EQ(VehicleDataSource::currentVehicle().name(), "Old");
}

}  // namespace
