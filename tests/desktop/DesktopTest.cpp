// Mail and files by a desktop's portal of our own on a private bus, and without one.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <future>
#include <map>
#include <sstream>

#include "app/SingleInstance.h"
#include "fakes/WaitUntil.h"
#include "platform/Log.h"
#include "platform/real/DesktopDocumentSaver.h"
#include "platform/real/DesktopFileChooser.h"
#include "platform/real/DesktopMailComposer.h"
#include "platform/real/DesktopWirelessNetworks.h"
#include "platform/real/IdleInhibitor.h"
#include "platform/real/QtRunLoop.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");

std::string contentsOf(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream{file}.rdbuf();
    return text.str();
}

Document document(const std::string& name = "drive.csv") {
    const std::string text = "a,b\n1,2\n";
    return {.fileName = name, .mimeType = "text/csv", .contents = {text.begin(), text.end()}};
}

/// Takes every question, and answers as it is told.
class Portal final : public QDBusVirtualObject {
public:
    enum class Mood { answers, cancels, refuses };

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() == "Get") {
            versions += message.arguments().value(0).toString();
            return bus.send(hasMail ? message.createReply(QVariant::fromValue(QDBusVariant{4U}))
                                    : message.createErrorReply(QDBusError::InvalidArgs, "no such interface"));
        }
        const auto options = qdbus_cast<QVariantMap>(message.arguments().last().value<QDBusArgument>());
        if (mood == Mood::refuses)
            return bus.send(message.createErrorReply(QDBusError::UnknownInterface, "no such portal"));
        asked = message.member();
        subject = options.value("subject").toString();
        name = options.value("current_name").toString();
        if (options.contains("attachment_fds")) {
            const auto files = qdbus_cast<QList<QDBusUnixFileDescriptor>>(
                options.value("attachment_fds").value<QDBusArgument>());
            QFile file;
            if (files.size() == 1 && file.open(::dup(files[0].fileDescriptor()), QIODevice::ReadOnly,
                                               QFileDevice::AutoCloseHandle))
                attachment = file.readAll().toStdString();
            if (files.size() == 1) {
                attachmentPath = std::filesystem::read_symlink("/proc/self/fd/" +
                                                               std::to_string(files[0].fileDescriptor()));
            }
            writable = files.size() == 1 && ::write(files[0].fileDescriptor(), "x", 1) == 1;
        }
        auto sender = message.service().mid(1);
        const auto path = "/org/freedesktop/portal/desktop/request/" + sender.replace('.', '_') + '/' +
                          options.value("handle_token").toString();
        bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath{path})));
        auto response = QDBusMessage::createSignal(path, "org.freedesktop.portal.Request", "Response");
        response << (mood == Mood::cancels ? 1U : 0U)
                 << QVariantMap{{"uris", QStringList{"file://" + chosen}}};
        return bus.send(response);
    }

    Mood mood = Mood::answers;
    bool hasMail = true;
    QStringList versions;  // of which interfaces they were asked
    QString asked;
    QString subject;
    QString name;
    QString chosen;
    std::string attachment;
    std::filesystem::path attachmentPath;
    bool writable = true;
};

class DesktopTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
        bus = std::make_unique<QProcess>();
        bus->start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        ASSERT_TRUE(bus->waitForReadyRead(10000));
        const auto address = bus->readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
        other = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(QString{address}, "portal"));
        ASSERT_TRUE(other->isConnected());
    }
    static void TearDownTestSuite() {
        other.reset();
        QDBusConnection::disconnectFromBus("portal");
        QDBusConnection::disconnectFromBus("qt_default_session_bus");
        QDBusConnection::disconnectFromBus("qt_default_system_bus");
        bus->kill();
        bus->waitForFinished();
        bus.reset();
    }
    DesktopTest() {
        qputenv("HOME", folder.path().toUtf8());
        qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
        qputenv("PATH", folder.path().toUtf8());
    }
    ~DesktopTest() override {
        other->unregisterService(service);
        other->unregisterObject("/");
        qputenv("PATH", path);
    }
    void raisePortal() {
        ASSERT_TRUE(other->registerVirtualObject("/", &portal, QDBusConnection::SubPath));
        ASSERT_TRUE(other->registerService(service));
    }
    /// A mail program that keeps what it was called with.
    void installProgram() {
        const auto file = folder.filePath("xdg-email").toStdString();
        std::ofstream{file} << "#!/bin/sh\nPATH=/usr/bin:/bin\nprintf '%s\\n' \"$@\" > '" << called.string()
                            << ".part'; mv '" << called.string() << ".part' '" << called.string() << "'\n";
        ::chmod(file.c_str(), 0755);
    }
    /// It waits for the portal, which lives on this thread.
    [[nodiscard]] bool canSendMail(const DesktopMailComposer& composer) {
        auto can = std::async(std::launch::async, [&] { return composer.canSendMail(); });
        EXPECT_TRUE(wait([&] { return can.wait_for(0s) == std::future_status::ready; }));
        return can.get();
    }
    bool wait(const std::function<bool()>& condition) { return fakes::waitUntil(loop, condition, 10s); }

    inline static std::unique_ptr<QProcess> bus;
    inline static std::unique_ptr<QDBusConnection> other;
    const QByteArray path = qgetenv("PATH");
    const QTemporaryDir folder;
    const std::filesystem::path called = folder.filePath("called").toStdString();
    QtRunLoop loop;
    Portal portal;
    DesktopMailComposer mail{folder.filePath("outbox").toStdString()};
    DesktopDocumentSaver saver;
    int failures = 0;
    const MailComposer::Failed failed = [this] { ++failures; };
};

/// Keeps what it was asked, and answers when it is told to.
class ScreenSaver final : public QDBusVirtualObject {
public:
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        calls.push_back(message.member() + ' ' + message.arguments().last().toString());
        if (message.member() != "Inhibit") return bus.send(message.createReply());
        waiting = message;
        return holds || answer(bus);
    }
    bool answer(const QDBusConnection& bus) { return bus.send(waiting.createReply(cookie)); }

    static constexpr unsigned int cookie = 4711;
    bool holds = false;
    QDBusMessage waiting;
    QStringList calls;
};

TEST_F(DesktopTest, TheScreenStaysOnWhileThatIsWanted) {
    std::vector<std::string> log;
    setLogSink([&](std::string_view line) { log.emplace_back(line); });
    const auto name = QStringLiteral("org.freedesktop.ScreenSaver");
    ScreenSaver screen;
    IdleInhibitor inhibitor;
    inhibitor.setInhibited(true);  // nobody is there
    ASSERT_TRUE(wait([&] { return log.size() == 1; }));
    inhibitor.setInhibited(false);
    ASSERT_TRUE(other->registerVirtualObject("/org/freedesktop/ScreenSaver", &screen));
    ASSERT_TRUE(other->registerService(name));
    for (const bool late : {false, true}) {
        screen.calls.clear();
        screen.holds = late;
        inhibitor.setInhibited(true);
        inhibitor.setInhibited(true);
        ASSERT_TRUE(wait([&] { return screen.calls.size() == 1; }));
        EXPECT_EQ(screen.calls[0], "Inhibit Live gauges are shown");
        inhibitor.setInhibited(false);
        if (late) screen.answer(*other);
        ASSERT_TRUE(wait([&] { return screen.calls.size() == 2; })) << late;
        EXPECT_EQ(screen.calls[1], "UnInhibit 4711");
    }
    other->unregisterService(name);
    other->unregisterObject("/org/freedesktop/ScreenSaver");
    setLogSink(nullptr);
}

TEST_F(DesktopTest, MailGoesByThePortal) {
    EXPECT_FALSE(mail.canSendMail());
    raisePortal();
    EXPECT_TRUE(canSendMail(mail) && canSendMail(mail));
    EXPECT_EQ(portal.versions, QStringList{"org.freedesktop.portal.Email"}) << "asked once";
    mail.compose({.subject = "Drive", .attachment = document()}, failed);
    ASSERT_TRUE(wait([&] { return !portal.asked.isEmpty(); }));
    EXPECT_EQ(portal.asked, "ComposeEmail");
    EXPECT_EQ(portal.subject, "Drive");
    EXPECT_EQ(portal.attachment, "a,b\n1,2\n");
    EXPECT_FALSE(portal.writable);
    // A portal looks the file up behind its descriptor: it must have a name, and for nobody else.
    EXPECT_EQ(portal.attachmentPath, folder.filePath("outbox/drive.csv").toStdString());
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(portal.attachmentPath.parent_path()).permissions(), perms::owner_all);
    EXPECT_EQ(std::filesystem::status(portal.attachmentPath).permissions(),
              perms::owner_read | perms::owner_write);
}

TEST_F(DesktopTest, APortalWithoutMailIsNone) {
    raisePortal();
    portal.hasMail = false;
    EXPECT_FALSE(canSendMail(mail));
    installProgram();
    EXPECT_TRUE(canSendMail(mail));
    mail.compose({.subject = "Drive", .attachment = document()}, failed);
    ASSERT_TRUE(wait([&] { return std::filesystem::exists(called); }));
    EXPECT_EQ(portal.asked, "");
}

TEST_F(DesktopTest, MailGoesByTheProgramWhereThePortalRefuses) {
    raisePortal();
    portal.mood = Portal::Mood::refuses;
    EXPECT_TRUE(canSendMail(mail));
    mail.compose({.subject = "Drive", .attachment = document()}, failed);
    ASSERT_TRUE(wait([&] { return failures == 1; })) << "and there is no program either";
    installProgram();
    mail.compose({.subject = "Drive", .attachment = document("../../a b.csv")}, failed);
    ASSERT_TRUE(wait([&] { return std::filesystem::exists(called); }));
    const auto outbox = folder.filePath("outbox").toStdString();
    EXPECT_EQ(contentsOf(called), "--subject\nDrive\n--attach\n" + outbox + "/.._.._a b.csv\n");
    EXPECT_EQ(contentsOf(outbox + "/.._.._a b.csv"), "a,b\n1,2\n");
    EXPECT_EQ(failures, 1);
}

TEST_F(DesktopTest, AFileGoesWhereTheUserWantsIt) {
    std::optional<DocumentSaver::Outcome> outcome;
    const auto save = [&](const Document& what = document()) {
        outcome.reset();
        saver.save(what, [&](const DocumentSaver::Outcome& told) { outcome = told; });
        return wait([&] { return outcome.has_value(); });
    };
    ASSERT_TRUE(save());
    EXPECT_EQ(outcome->file, folder.filePath("Documents/drive.csv").toStdString()) << "without a portal";
    ASSERT_TRUE(save());
    EXPECT_EQ(outcome->file->filename(), "drive 2.csv");

    raisePortal();
    portal.chosen = folder.filePath("mine.csv");
    ASSERT_TRUE(save(document("a/b.csv")));
    EXPECT_EQ(portal.name, "a_b.csv");
    EXPECT_EQ(contentsOf(*outcome->file), "a,b\n1,2\n");
    portal.mood = Portal::Mood::cancels;
    ASSERT_TRUE(save());
    EXPECT_FALSE(outcome->file);
    EXPECT_EQ(outcome->error, "");
    portal.mood = Portal::Mood::answers;
    portal.chosen = "/no/such/folder/mine.csv";
    ASSERT_TRUE(save());
    EXPECT_FALSE(outcome->file);
    EXPECT_NE(outcome->error.find("/no/such/folder/mine.csv"), std::string::npos);
}

TEST_F(DesktopTest, AFileIsChosenByThePortal) {
    EXPECT_NE(DesktopFileChooser::choose("Open").error, "") << "nobody is there";
    raisePortal();
    portal.chosen = "/home/somebody/Tow%20it.itorv.json";
    EXPECT_EQ(DesktopFileChooser::choose("Open").file, "/home/somebody/Tow it.itorv.json");
    EXPECT_EQ(portal.asked, "OpenFile");
    portal.mood = Portal::Mood::cancels;
    const auto none = DesktopFileChooser::choose("Open");
    EXPECT_TRUE(!none.file && none.error.empty());
}

/// A NetworkManager whose wlan0 is in a network.
class Manager final : public QDBusVirtualObject {
public:
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        const auto place = [](const char* path) {
            return QVariant::fromValue(QDBusObjectPath{QLatin1String{path}});
        };
        const std::map<QString, QVariant> answers{
            {"wlan0", place("/device")},
            {"ActiveAccessPoint", QVariant::fromValue(QDBusVariant{place("/point")})},
            {"Ssid", QVariant::fromValue(QDBusVariant{QByteArray{"Truck 7"}})},
            {"Strength", QVariant::fromValue(QDBusVariant{QVariant::fromValue<uchar>(63)})}};
        const auto found = answers.find(message.arguments().last().toString());
        return bus.send(found == answers.end()
                            ? message.createErrorReply(QDBusError::UnknownObject, "no such")
                            : message.createReply(found->second));
    }
};

TEST_F(DesktopTest, NetworkManagerTellsOfTheWirelessNetwork) {
    DesktopWirelessNetworks networks;
    int told = 0;
    std::optional<WirelessNetworks::Network> network;
    const auto ask = [&](const char* interface) {
        networks.ask(interface, [&, before = told](auto answer) {
            network = std::move(answer);
            told = before + 1;
        });
        const int wanted = told + 1;
        return wait([&] { return told == wanted; });
    };
    ASSERT_TRUE(ask("wlan0"));
    EXPECT_FALSE(network) << "there is no NetworkManager";
    Manager manager;
    ASSERT_TRUE(other->registerVirtualObject("/", &manager, QDBusConnection::SubPath));
    ASSERT_TRUE(other->registerService("org.freedesktop.NetworkManager"));
    ASSERT_TRUE(ask("wlan0"));
    ASSERT_TRUE(network);
    EXPECT_EQ(network->name, "Truck 7");
    EXPECT_EQ(network->strength, 63);
    ASSERT_TRUE(ask("eth0"));
    EXPECT_FALSE(network);
    other->unregisterService("org.freedesktop.NetworkManager");
    EXPECT_FALSE(networks.canOpenSettings());
}

/// Another start is the other connection of the bus.
TEST_F(DesktopTest, AnotherStartRaisesTheWindowOrTakesOverForAsLongAsItIsThere) {
    SingleInstance instance{folder.path().toStdString()};
    std::string why;
    ASSERT_EQ(instance.claim(false, why), SingleInstance::Claim::mine);
    QByteArray token;
    std::function<void(bool)> answer;
    int ends = 0;
    instance.serve({.comeForward = [&](const QByteArray& given) { token = given; },
                    .mayEnd = [&](const auto& asked) { answer = asked; },
                    .end = [&] { ++ends; }});
    const auto ask = [&](QDBusConnection& from, const char* what, const QVariantList& arguments) {
        auto call = QDBusMessage::createMethodCall("com.torvwerks.iTorv", "/com/torvwerks/iTorv",
                                                   "com.torvwerks.iTorv", what);
        call.setArguments(arguments);
        return from.send(call);
    };
    ASSERT_TRUE(ask(*other, "Activate", {QByteArray{"the token"}}));
    ASSERT_TRUE(wait([&] { return token == "the token"; }));
    for (const bool goesMeanwhile : {true, false}) {
        auto second = QDBusConnection::connectToBus(QString{qgetenv("DBUS_SESSION_BUS_ADDRESS")}, "second");
        const auto secondName = second.baseService();
        answer = nullptr;
        ASSERT_TRUE(ask(second, "End", {}));
        ASSERT_TRUE(wait([&] { return answer != nullptr; }));
        if (goesMeanwhile) {
            second = QDBusConnection{"none"};
            QDBusConnection::disconnectFromBus("second");
            ASSERT_TRUE(wait([&] { return !other->interface()->isServiceRegistered(secondName); }));
        }
        answer(true);
        EXPECT_EQ(ends, goesMeanwhile ? 0 : 1);
    }
    QDBusConnection::disconnectFromBus("second");
}

}  // namespace
