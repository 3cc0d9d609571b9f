#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
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

    /// Any statement by SQLite itself.
    void sql(const std::string& text) const {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, text.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(database);
        sqlite3_close(database);
    }
    [[nodiscard]] long logged(std::string_view part) const {
        return std::count_if(log.begin(), log.end(),
                             [&](const auto& line) { return line.find(part) != std::string::npos; });
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
    fs::remove_all(folder);  // which is made
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
        sql("CREATE TABLE defaults (something)");  // and the next time a database of somebody else
    }
}

TEST_F(UserDefaultsTest, AnUnreadableEntryIsSetAside) {
    { SqliteUserDefaults{file}.setObjectForKey(Value{"good"}, "good"); }
    sql("INSERT INTO defaults VALUES (x'626164', 'archive', '{\"$data\": 5}')");
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
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    const auto content = "UPDATE defaults SET kind = 'text' WHERE key = x'62616420756e7265616461626c652031'";
    EXPECT_EQ(sqlite3_exec(database, content, nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(sqlite3_changes(database), 1);
    sqlite3_close(database);
}

TEST_F(UserDefaultsTest, ADamagedPageLosesWhatStandsOnItAlone) {
    constexpr int count = 200;
    constexpr std::size_t page = 4096;
    const auto name = [](int i) { return "key " + std::to_string(i); };
    {
        SqliteUserDefaults defaults{file};
        for (int i = 0; i < count; ++i)
            defaults.setObjectForKey(Value{std::string(500, static_cast<char>('a' + i % 26))}, name(i));
        defaults.setObjectForKey(Value{std::string(20000, 'l')}, "long");
    }
    std::ifstream stream{file, std::ios::binary};
    const std::string sound{std::istreambuf_iterator<char>{stream}, {}};
    const auto pages = sound.size() / page;
    ASSERT_GT(pages, 30U);
    const auto found = [&](const std::string& image) {
        fs::remove_all(folder);
        fs::create_directories(folder);
        std::ofstream{file, std::ios::binary} << image;
        int right = 0;
        {
            SqliteUserDefaults defaults{file};
            for (int i = 0; i < count; ++i) {
                const auto value = defaults.objectForKey(name(i));
                if (value.isNull()) continue;
                EXPECT_EQ(value, Value{std::string(500, static_cast<char>('a' + i % 26))});
                ++right;
            }
            EXPECT_EQ(defaults.stateForKey("never set") == EntryState::unreadable, !defaults.isWhole());
            EXPECT_TRUE(right == count || !defaults.isWhole());
            for (int i = 0; i < count; ++i)
                defaults.setObjectForKey(Value{i % 2 == 0}, "new " + std::to_string(i));
            EXPECT_TRUE(defaults.synchronize());
        }
        const SqliteUserDefaults again{file};
        EXPECT_EQ(again.objectForKey("new 7"), Value{false});
        EXPECT_EQ(again.stateForKey("never set") == EntryState::unreadable, !again.isWhole());
        EXPECT_TRUE(right == count || !again.isWhole());
        for (const auto& descriptor : fs::directory_iterator{"/proc/self/fd"}) {
            std::error_code gone;
            EXPECT_EQ(fs::read_symlink(descriptor.path(), gone).string().find(".damaged"), std::string::npos);
        }
        return right;
    };
    for (std::size_t i = 0; i < pages; ++i) {
        SCOPED_TRACE(i);
        for (const char byte : {'\0', '\xA5'}) {
            log.clear();
            auto image = sound;
            std::fill_n(image.begin() + static_cast<std::ptrdiff_t>(i * page), page, byte);
            EXPECT_GE(found(image), count - 8);  // seven stand on a page
            EXPECT_EQ(logged("entries came over into a new one"), fs::exists(file.string() + ".damaged-1"));
        }
    }
    EXPECT_EQ(found(sound), count);
    for (const std::size_t size : {0U, 100U, 511U, 4096U, 5000U})
        EXPECT_EQ(found(sound.substr(0, size)), 0) << size;
    for (std::size_t i = 11; i < pages; i += 4) {
        log.clear();
        EXPECT_GE(found(sound.substr(0, i * page + 100)), static_cast<int>(i) * 2) << i;
        EXPECT_EQ(logged("entries came over"), 1) << i;
    }
}

TEST_F(UserDefaultsTest, WhatWasOnlyInTheLogComesOverToo) {
    SqliteUserDefaults writer{file};
    writer.setObjectForKey(Value{"old"}, "key");
    ASSERT_TRUE(writer.synchronize());
    sql("PRAGMA wal_checkpoint(TRUNCATE)");
    writer.setObjectForKey(Value{"new"}, "key");
    ASSERT_TRUE(writer.synchronize());
    std::fstream{file, std::ios::in | std::ios::out | std::ios::binary} << std::string(100, 'x');
    {
        // While another has it open, the log is not put into the file by whoever fails to read it.
        const SqliteUserDefaults defaults{file};
        EXPECT_EQ(defaults.objectForKey("key"), Value{"new"});
    }
    EXPECT_TRUE(fs::exists(file.string() + ".damaged-1-wal"));
    EXPECT_EQ(SqliteUserDefaults{file}.objectForKey("key"), Value{"new"});
    writer.setObjectForKey(Value{"later"}, "other");
    EXPECT_TRUE(writer.synchronize());
    EXPECT_EQ(SqliteUserDefaults{file}.keys(), (std::vector<std::string>{"key", "other"}));
}

TEST_F(UserDefaultsTest, AnEntryIsUnreadableUntilItIsSetAgain) {
    { SqliteUserDefaults{file}.setObjectForKey(Value{"good"}, "good"); }
    sql("INSERT INTO defaults VALUES (CAST('bad' AS BLOB), 'archive', '{'),"
        "(CAST('part' AS BLOB), 'archive', '{\"a\":{\"$data\":\"0g\"},\"b\":{\"$data\":\"01\"}}')");
    for (int start = 0; start < 2; ++start) {
        SqliteUserDefaults defaults{file};
        EXPECT_EQ(defaults.stateForKey("good"), EntryState::there);
        EXPECT_EQ(defaults.stateForKey("none"), EntryState::absent);
        EXPECT_EQ(defaults.stateForKey("bad"), EntryState::unreadable);
        EXPECT_EQ(defaults.objectForKey("part"), (Value{Dictionary{{"a", Value{}}, {"b", Data{1}}}}));
        EXPECT_EQ(defaults.keys(),
                  (std::vector<std::string>{"bad unreadable 1", "good", "part", "part unreadable 1"}));
    }
    EXPECT_EQ(log.size(), 2U);
    { SqliteUserDefaults{file}.setObjectForKey(Value{"new"}, "bad"); }
    EXPECT_EQ(SqliteUserDefaults{file}.stateForKey("bad"), EntryState::there);
    EXPECT_EQ(log.size(), 2U);
}

TEST_F(UserDefaultsTest, TwoProgramsSeeAndKeepWhatEachHasSet) {
    SqliteUserDefaults one{file};
    SqliteUserDefaults two{file};
    one.setObjectForKey(Value{"1"}, "a");
    one.setObjectForKey(Value{"1"}, "gone");
    EXPECT_TRUE(one.synchronize());
    EXPECT_EQ(two.objectForKey("a"), Value{"1"});
    two.setObjectForKey(Value{"2"}, "b");
    two.setObjectForKey(Value{"own"}, "a");  // not kept yet
    one.setObjectForKey(Value{"3"}, "c");
    one.removeObjectForKey("gone");
    EXPECT_TRUE(one.synchronize());
    EXPECT_EQ(two.objectForKey("a"), Value{"own"});
    EXPECT_TRUE(two.synchronize());
    for (const auto* store : {&one, &two})
        EXPECT_EQ(store->keys(), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(one.objectForKey("a"), Value{"own"});
}

TEST_F(UserDefaultsTest, AFolderThatIsTakenAwayIsMadeAnewAndSaid) {
    SqliteUserDefaults defaults{file};
    defaults.setObjectForKey(Value{"1"}, "a");
    EXPECT_TRUE(defaults.synchronize());
    fs::remove_all(folder);
    defaults.setObjectForKey(Value{"2"}, "b");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(SqliteUserDefaults{file}.keys(), (std::vector<std::string>{"a", "b"}));
    fs::remove_all(folder);
    std::ofstream{folder} << "in its place";
    defaults.setObjectForKey(Value{"3"}, "c");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_FALSE(defaults.isKept());
    fs::remove(folder);
    fs::create_directories(folder);
    // It comes back with the next call, and nothing that is known is lost.
    defaults.setObjectForKey(Value{"4"}, "d");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_TRUE(defaults.isKept());
    EXPECT_EQ(SqliteUserDefaults{file}.keys(), (std::vector<std::string>{"a", "b", "c", "d"}));
}

TEST_F(UserDefaultsTest, WhatNestsTooDeepIsNotSaidToBeKept) {
    SqliteUserDefaults defaults{file};
    Value deep;
    for (int level = 0; level < 600; ++level)
        deep = Array{deep};
    defaults.setObjectForKey(deep, "deep");
    defaults.setObjectForKey(Value{"kept"}, "flat");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(logged("nests too deep"), 1);
    EXPECT_EQ(SqliteUserDefaults{file}.keys(), (std::vector<std::string>{"flat"}));
    defaults.removeObjectForKey("deep");
    EXPECT_TRUE(defaults.synchronize());
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
    EXPECT_FALSE(defaults.isKept());
    EXPECT_EQ(defaults.stateForKey("k"), EntryState::there);
    EXPECT_EQ(defaults.stateForKey("other"), EntryState::unreadable);
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
