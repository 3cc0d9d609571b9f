#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "platform/Log.h"
#include "platform/real/SqliteUserDefaults.h"

namespace {

using namespace torv;
namespace fs = std::filesystem;

class UserDefaultsTest : public testing::Test {
protected:
    UserDefaultsTest() {
        fs::remove_all(folder);
        fs::create_directories(folder);
        setLogSink([this](std::string_view line) { log.emplace_back(line); });
    }
    ~UserDefaultsTest() override {
        setLogSink(nullptr);
        fs::permissions(folder, fs::perms::owner_all);
    }

    const fs::path folder = fs::path{testing::TempDir()} / "itorv-defaults";
    const fs::path file = folder / "defaults.sqlite";
    std::vector<std::string> log;
};

TEST_F(UserDefaultsTest, KeepsEveryKindOfValueUnderAnyKey) {
    const std::vector<Value> values{
        Value{},
        Value{true},
        Value{Number{"12345678901234567890.123456789e-7"}},
        Value{""},
        Value{"quote ' \" and \\, ºF, \xF0\x9F\x9A\x97"},
        Value{std::string("\0\xFF\xC3", 3)},
        Value{Data{0, 255, 13}},
        Value{Array{Number{"1"}, Value{"two"}, Value{Data{3}}, Array{}}},
        Value{Dictionary{{"$data", "not data"}, {"a", Dictionary{{"b", Value{}}}}}},
    };
    const std::vector<std::string> keys{"",
                                        "/",
                                        "../../etc",
                                        "it's \"quoted\"; --",
                                        std::string(10240, 'k'),
                                        "ключ",
                                        std::string("a\0b", 3),
                                        std::string("\xFF\xFE"),
                                        " "};
    {
        SqliteUserDefaults defaults{file};
        for (std::size_t i = 0; i < keys.size(); ++i)
            defaults.setObjectForKey(values[i], keys[i]);
        defaults.setObjectForKey(Value{"gone"}, "removed");
        EXPECT_TRUE(defaults.synchronize());
        defaults.removeObjectForKey("removed");
        EXPECT_TRUE(defaults.synchronize());
        defaults.setObjectForKey(Value{"kept at the end too"}, "unsynchronized");
    }
    const SqliteUserDefaults again{file};
    for (std::size_t i = 0; i < keys.size(); ++i)
        EXPECT_EQ(again.objectForKey(keys[i]), values[i]) << i;
    EXPECT_EQ(again.keys().size(), keys.size() + 1);
    EXPECT_TRUE(again.objectForKey("removed").isNull());
    EXPECT_TRUE(log.empty());
}

TEST_F(UserDefaultsTest, WhatIsNoDatabaseIsSetAside) {
    std::ofstream{file} << "this was never a database, and it is long enough to be read as one";
    for (const auto* aside : {"defaults.sqlite.damaged-1", "defaults.sqlite.damaged-2"}) {
        {
            SqliteUserDefaults defaults{file};
            defaults.setObjectForKey(Value{"new"}, "key");
            EXPECT_TRUE(defaults.synchronize());
        }
        EXPECT_TRUE(fs::exists(folder / aside));
        EXPECT_EQ(std::exchange(log, {}).size(), 1U);
        fs::remove(file);
        sqlite3* other = nullptr;  // and the next time a database of somebody else
        ASSERT_EQ(sqlite3_open(file.c_str(), &other), SQLITE_OK);
        sqlite3_exec(other, "CREATE TABLE defaults (something)", nullptr, nullptr, nullptr);
        sqlite3_close(other);
    }
}

TEST_F(UserDefaultsTest, AnUnreadableEntryIsSetAside) {
    { SqliteUserDefaults{file}.setObjectForKey(Value{"good"}, "good"); }
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(database, "INSERT INTO defaults VALUES (x'626164', 'archive', '{\"$data\": 5}')",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(database);
    {
        SqliteUserDefaults defaults{file};
        EXPECT_EQ(defaults.objectForKey("good"), Value{"good"});
        EXPECT_TRUE(defaults.objectForKey("bad").isNull());
        EXPECT_EQ(log.size(), 1U);
        defaults.setObjectForKey(Value{"better"}, "good");
        defaults.setObjectForKey(Value{"new"}, "bad");
    }
    const SqliteUserDefaults again{file};
    EXPECT_EQ(again.objectForKey("good"), Value{"better"});
    EXPECT_EQ(again.objectForKey("bad"), Value{"new"});
    EXPECT_EQ(log.size(), 1U);
    EXPECT_NE(log[0].find("is kept as \"bad unreadable 1\""), std::string::npos) << log[0];
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    const auto content = "UPDATE defaults SET kind = 'text' WHERE key = x'62616420756e7265616461626c652031'";
    EXPECT_EQ(sqlite3_exec(database, content, nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(sqlite3_changes(database), 1);
    sqlite3_close(database);
}

TEST_F(UserDefaultsTest, WhatCanNotBeWrittenIsStillRead) {
    if (mount("none", folder.c_str(), "tmpfs", 0, "size=128k") != 0)
        GTEST_SKIP() << "no file system can be mounted here";
    { SqliteUserDefaults{file}.setObjectForKey(Value{"stored"}, "key"); }
    const auto readable = [&](const char* how) {
        SqliteUserDefaults defaults{file};
        EXPECT_EQ(defaults.objectForKey("key"), Value{"stored"}) << how;
        defaults.setObjectForKey(Value{"changed"}, "key");
        EXPECT_FALSE(defaults.synchronize()) << how;
        EXPECT_FALSE(defaults.synchronize()) << how;
        EXPECT_EQ(std::exchange(log, {}).size(), 1U) << how;
    };
    {
        std::ofstream filler{folder / "filler"};
        while (filler << std::string(4096, 'x') << std::flush) {
        }
    }
    readable("full");
    EXPECT_EQ(mount("none", folder.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    readable("read-only");
    EXPECT_EQ(umount(folder.c_str()), 0);
}

TEST_F(UserDefaultsTest, WithoutAPlaceItLivesInMemory) {
    SqliteUserDefaults defaults{"/proc/no such place/defaults.sqlite"};
    defaults.setObjectForKey(Value{"v"}, "k");
    EXPECT_EQ(defaults.objectForKey("k"), Value{"v"});
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(log.size(), 1U);
}

/// Each round of the child sets two keys to one number and says so once `synchronize` has returned.
TEST_F(UserDefaultsTest, SurvivesBeingKilledAtAnyMoment) {
    std::mt19937 random{4711};
    int kept = 0;
    const char* const asked = std::getenv("ITORV_KILLS");  // a soak asks for more
    const int kills = asked ? std::atoi(asked) : 40;
    for (int i = 0; i < kills; ++i) {
        int said[2];
        ASSERT_EQ(pipe(said), 0);
        const pid_t child = fork();
        if (child == 0) {
            SqliteUserDefaults defaults{file};
            for (int round = kept + 1;; ++round) {
                const Value number{Number::fromInteger(round)};
                defaults.setObjectForKey(number, "a");
                defaults.setObjectForKey(Value{Array{number, Value{std::string(5000, 'x')}}}, "b");
                if (!defaults.synchronize() || ::write(said[1], &round, sizeof round) != sizeof round)
                    _exit(1);
            }
        }
        close(said[1]);
        int last = kept;
        const auto rounds = random() % 12;
        for (unsigned round = 0; round < rounds; ++round)
            ASSERT_EQ(::read(said[0], &last, sizeof last), ssize_t{sizeof last});
        // Anywhere within the next round, and not only at its end.
        const auto moment = std::chrono::steady_clock::now() + std::chrono::microseconds{random() % 3000};
        while (std::chrono::steady_clock::now() < moment) {
        }
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        while (::read(said[0], &last, sizeof last) == ssize_t{sizeof last}) {
        }
        close(said[0]);
        const SqliteUserDefaults defaults{file};
        const auto a = defaults.objectForKey("a");
        const auto b = defaults.objectForKey("b");
        ASSERT_GE(a.intValue(), last);
        ASSERT_LE(a.intValue(), last + 1);
        if (a.intValue() > 0) {
            ASSERT_EQ(a, b.elements().at(0));
        }
        kept = a.intValue();
    }
    EXPECT_TRUE(log.empty());
}

}  // namespace
