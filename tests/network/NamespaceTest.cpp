// The handset and the bench in two network namespaces, joined by a pair of virtual interfaces: what a real
// network does to a link. The handset is found by the address of its en0, without any option.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <iostream>
#include <memory>

namespace {

constexpr int vanished = 5000;       // ms until a peer that is gone must have become a stream error
constexpr int flowing = 3000 + 500;  // ms from the network's return to values; half a second is the machine's

const QString handsetSpace = "itorv-handset";
const QString moduleSpace = "itorv-module";

bool run(const QStringList& words) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(words.first(), words.mid(1));
    return process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

bool ip(const QString& arguments) {
    return run(QStringList{"ip"} + arguments.split(' '));
}
bool inModule(const QString& arguments) {
    return ip("netns exec " + moduleSpace + " ip " + arguments);
}

/// A program of ours in a namespace; killed with this object.
class Program {
public:
    Program(const QString& space, const QString& name, const QStringList& arguments) {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        const auto path = QCoreApplication::applicationDirPath() + "/" + name;
        m_process.start("ip", QStringList{"netns", "exec", space, path} + arguments);
        EXPECT_TRUE(m_process.waitForStarted());
    }
    ~Program() {
        m_process.kill();
        m_process.waitForFinished();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Milliseconds until this text comes in what is printed from now on; nothing when it does not.
    std::optional<qint64> waitFor(const QByteArray& text, int limit) {
        QElapsedTimer timer;
        timer.start();
        QByteArray seen;
        while (!seen.contains(text)) {
            const auto left = limit - timer.elapsed();
            if (left <= 0 ||
                (!m_process.waitForReadyRead(static_cast<int>(left)) && timer.elapsed() >= limit))
                return {};
            seen = seen.right(text.size()) + m_process.readAll();
        }
        return timer.elapsed();
    }
    /// True if no value is printed for that long.
    bool isQuiet(int time) {
        while (m_process.waitForReadyRead(50))
            m_process.readAll();  // what was under way
        return !waitFor("\"aid\"", time);
    }
    /// Milliseconds until its connection to the module has ended; nothing when it stands.
    std::optional<qint64> waitForLoss(int limit) {
        const auto established = [this] {
            QFile table{"/proc/" + QString::number(m_process.processId()) + "/net/tcp"};
            if (!table.open(QIODevice::ReadOnly)) return QByteArray{};
            for (const auto& line : table.readAll().split('\n')) {
                const auto words = line.simplified().split(' ');  // number, own address, the other's, state
                if (words.size() > 3 && words[2] == "04030201:07D0" && words[3] == "01") return words[1];
            }
            return QByteArray{};
        };
        const auto before = established();
        EXPECT_FALSE(before.isEmpty());
        QElapsedTimer timer;
        timer.start();
        while (established() == before) {
            if (timer.elapsed() >= limit) return {};
            m_process.waitForReadyRead(20);
        }
        return timer.elapsed();
    }
    /// Drops what was printed before now.
    void forget() {
        for (int i = 0; i < 5 && m_process.waitForReadyRead(5); ++i)
            m_process.readAll();
        m_process.readAll();
    }

private:
    QProcess m_process;
};

class NamespaceTest : public testing::Test {
protected:
    void SetUp() override {
        takeDown();
        if (geteuid() != 0 || !ip("netns add " + handsetSpace))
            GTEST_SKIP() << "network namespaces are not to be had here";
        ASSERT_TRUE(ip("netns add " + moduleSpace));
        ASSERT_TRUE(
            ip("link add en0 netns " + handsetSpace + " type veth peer name module netns " + moduleSpace));
    }
    void TearDown() override { takeDown(); }

    static void takeDown() {
        ip("netns del " + handsetSpace);
        ip("netns del " + moduleSpace);
    }
    static void setAddresses(const QString& handset, const QString& module) {
        ASSERT_TRUE(ip("-n " + handsetSpace + " addr add " + handset + " dev en0"));
        ASSERT_TRUE(ip("-n " + handsetSpace + " link set en0 up"));
        ASSERT_TRUE(ip("-n " + moduleSpace + " addr add " + module + " dev module"));
        ASSERT_TRUE(ip("-n " + moduleSpace + " link set module up"));
    }
    [[nodiscard]] std::unique_ptr<Program> startModule(const QString& host, const QStringList& more = {}) {
        auto module = std::make_unique<Program>(moduleSpace, "itorv-bench",
                                                QStringList{"--host", host, "--port", "2000"} + more);
        EXPECT_TRUE(module->waitFor("listening", 10000));
        return module;
    }
    [[nodiscard]] std::unique_ptr<Program> startHandset() const {
        qputenv("XDG_DATA_HOME", folder.path().toUtf8());
        return std::make_unique<Program>(handsetSpace, "itorvctl",
                                         QStringList{"watch", "--json", "--timeout", "60"});
    }
    static void expectFlow(Program& handset, const char* after) {
        handset.forget();
        const auto time = handset.waitFor("\"aid\"", flowing);
        EXPECT_TRUE(time) << after;
        if (time) std::cout << "values " << *time << " ms after " << after << std::endl;
    }

    QTemporaryDir folder;
};

TEST_F(NamespaceTest, EitherModuleIsFoundByTheAddressOfEn0) {
    struct Row {
        const char* handset;
        const char* module;
        const char* host;
    };
    for (const auto& row : {Row{"169.254.7.7/16", "169.254.1.1/16", "169.254.1.1"},
                            Row{"1.2.3.9/24", "1.2.3.4/24", "1.2.3.4"}}) {
        SCOPED_TRACE(row.host);
        setAddresses(row.handset, row.module);
        const auto module = startModule(row.host);
        const auto handset = startHandset();
        EXPECT_TRUE(handset->waitFor("\"Engine Speed\"", 10000));
        ip("-n " + handsetSpace + " addr flush dev en0");
        ip("-n " + moduleSpace + " addr flush dev module");
    }
}

TEST_F(NamespaceTest, ValuesComeBackAfterEveryLossOfTheNetwork) {
    setAddresses("1.2.3.9/24", "1.2.3.4/24");
    auto module = startModule("1.2.3.4");
    const auto handset = startHandset();
    ASSERT_TRUE(handset->waitFor("\"aid\"", 10000));

    ASSERT_TRUE(inModule("link set module down"));
    handset->forget();
    EXPECT_TRUE(handset->isQuiet(10000));
    ASSERT_TRUE(inModule("link set module up"));
    expectFlow(*handset, "the link was up again");

    // Gone without a word: the address first, then the module, so that no segment says goodbye. A connection
    // that is not yet a session would be closed by the handset itself.
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(handset->waitFor("\"aid\"", 1000));
    ASSERT_TRUE(inModule("addr flush dev module"));
    module.reset();
    const auto lost = handset->waitForLoss(vanished);
    EXPECT_TRUE(lost);
    if (lost) std::cout << "the loss was known after " << *lost << " ms" << std::endl;
    ASSERT_TRUE(inModule("addr add 1.2.3.4/24 dev module"));
    module = startModule("1.2.3.4");
    expectFlow(*handset, "a fresh module stood where the old one had vanished");

    module.reset();
    module = startModule("1.2.3.4");
    expectFlow(*handset, "the module was started again");

    module.reset();
    module = startModule("1.2.3.4", {"--delay-first", "100", "--jitter", "100"});
    expectFlow(*handset, "the module came back with delay and jitter");
}

TEST_F(NamespaceTest, APeerThatMerelyFallsSilentStaysConnected) {
    setAddresses("1.2.3.9/24", "1.2.3.4/24");
    const auto module = startModule("1.2.3.4", {"--fault", "silent@2:6000"});
    const auto handset = startHandset();
    ASSERT_TRUE(handset->waitFor("\"aid\"", 10000));
    EXPECT_FALSE(module->waitFor("gone", 9000));
    expectFlow(*handset, "the silence");
}

}  // namespace
