#include "tuning/ProfileList.h"

#include <memory>
#include <system_error>

#include "platform/Log.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "tuning/ProfileValues.h"

namespace torv {
namespace {

constexpr auto createStatement =
    "CREATE TABLE IF NOT EXISTS FIELDS (ID INTEGER PRIMARY KEY AUTOINCREMENT, NAME TEXT);";
constexpr auto listStatement = "SELECT NAME FROM FIELDS";
constexpr auto nameTest = "SELECT ID FROM FIELDS WHERE NAME ='%q'";
constexpr auto addStatement = "INSERT OR REPLACE INTO FIELDS (NAME) VALUES ('%q')";
constexpr auto deleteStatement = "DELETE FROM FIELDS WHERE NAME = '%q'";

/// The statement with the name in quotes.
std::string withName(const char* statement, const std::string& name) {
    const std::unique_ptr<char, decltype(&sqlite3_free)> text{sqlite3_mprintf(statement, name.c_str()),
                                                              &sqlite3_free};
    return text ? text.get() : std::string{};
}

}  // namespace

std::filesystem::path ProfileList::dataFilePath() {
    return Platform::current().resources().documentsDirectory() / "data.sqlite3";
}

ProfileList::ProfileList() {
    std::string error;
    m_database = open(error);
    if (!error.empty()) fail(error);
}

sqlite::Database ProfileList::open(std::string& error) {
    std::error_code ignored;
    std::filesystem::create_directories(dataFilePath().parent_path(), ignored);
    sqlite3* opened = nullptr;
    const int result = sqlite3_open(dataFilePath().c_str(), &opened);
    sqlite::Database database{opened};
    if (result != SQLITE_OK) {
        error = "failed to open";
        return database;
    }
    sqlite3_busy_timeout(opened, sqlite::busyMilliseconds);
    if (!sqlite::run(opened, createStatement))
        error = std::string{"Error creating table: "} + sqlite3_errmsg(opened);
    return database;
}

bool ProfileList::canBeRead() {
    std::string error;
    const auto database = open(error);
    return error.empty() && sqlite::run(database.get(), listStatement);
}

bool ProfileList::isUsable() {
    return damagedFile().empty() && canBeRead();
}

bool ProfileList::tryAgain() {
    if (!canBeRead()) return false;
    defaults().removeObjectForKey(damagedListKey);
    defaults().synchronize();
    return true;
}

void ProfileList::fail(const std::string& text) const {
    defaults().setObjectForKey(dataFilePath().string(), damagedListKey);
    defaults().synchronize();
    failAssertion(text);
}

std::vector<std::string> ProfileList::names() const {
    const auto rows = sqlite::prepare(m_database.get(), listStatement);
    std::vector<std::string> names;
    int step = SQLITE_ERROR;
    while (rows && (step = sqlite3_step(rows.get())) == SQLITE_ROW)
        names.push_back(sqlite::column(rows.get(), 0));
    if (step != SQLITE_DONE)
        fail(std::string{"Error while creating add statement. '"} + sqlite3_errmsg(m_database.get()) + "'");
    return names;
}

int ProfileList::count(const std::string& name) const {
    const auto rows = sqlite::prepare(m_database.get(), withName(nameTest, name).c_str());
    int count = 0;
    int step = SQLITE_ERROR;
    while (rows && (step = sqlite3_step(rows.get())) == SQLITE_ROW)
        ++count;
    if (step != SQLITE_DONE)
        fail(std::string{"Error while creating add statement. '"} + sqlite3_errmsg(m_database.get()) + "'");
    return count;
}

void ProfileList::add(const std::string& name) {
    const auto text = withName(addStatement, name);
    logLine("request: " + text);
    const auto statement = sqlite::prepare(m_database.get(), text.c_str());
    if (!statement)
        fail(std::string{"Error while creating add statement. '"} + sqlite3_errmsg(m_database.get()) + "'");
    if (sqlite3_step(statement.get()) != SQLITE_DONE)
        fail(std::string{"error sqlite "} + sqlite3_errmsg(m_database.get()));
}

void ProfileList::remove(const std::string& name) {
    if (!sqlite::run(m_database.get(), withName(deleteStatement, name)))
        fail(std::string{"Error creating table: "} + sqlite3_errmsg(m_database.get()));
}

std::filesystem::path ProfileList::damagedFile() {
    return defaults().objectForKey(damagedListKey).textValue().value_or(std::string{});
}

bool ProfileList::beginAnew() {
    const auto file = dataFilePath();
    auto aside = file;
    for (int number = 1; std::filesystem::exists(aside); ++number)
        aside = file.string() + " unreadable " + std::to_string(number);
    std::error_code error;
    // SQLite would play what is left of a change into the new list.
    const auto journalOf = [](const std::filesystem::path& list) {
        return std::filesystem::path{list.string() + "-journal"};
    };
    if (std::filesystem::exists(journalOf(file)))
        std::filesystem::rename(journalOf(file), journalOf(aside), error);
    if (!error && std::filesystem::exists(file)) std::filesystem::rename(file, aside, error);
    if (error) {
        logLine(file.string() + " can't be put aside: " + error.message());
        return false;
    }
    defaults().removeObjectForKey(damagedListKey);
    defaults().synchronize();
    logLine("the list of tuning profiles is kept as " + aside.string() + ", and a new one begun");
    ProfileList fresh;
    for (const auto& key : defaults().keys()) {
        if (!isSystemKey(key) && ProfileValues::load(key)) fresh.add(key);
    }
    return true;
}

}  // namespace torv
