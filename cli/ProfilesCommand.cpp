#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "Commands.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "support/FileContents.h"
#include "support/Utf8.h"
#include "support/WholeFile.h"
#include "tuning/Activation.h"
#include "tuning/ProfileEditor.h"
#include "tuning/ProfileList.h"
#include "tuning/ProfileValues.h"
#include "vehicles/VehicleDataSource.h"

namespace itorvctl {

using namespace torv;

namespace {

/// A list that ended an earlier process would end this one too.
bool hasList(bool beginsAnew) {
    if ((!beginsAnew && ProfileList::damagedFile().empty()) || ProfileList::tryAgain()) return true;
    const auto file = ProfileList::dataFilePath().string();
    if (beginsAnew) {
        if (ProfileList::beginAnew()) return true;
        complain(file + " can't be moved out of the way");
    } else {
        complain(
            "the list of tuning profiles could not be read; it stays as it is in " + file +
            ", and \"profiles list --new-list\" makes a new one of the profiles whose values are stored");
    }
    return false;
}

bool isListed(const std::string& name) {
    if (ProfileList{}.count(name) > 0) return true;
    complain("there is no tuning profile \"" + printable(name) + "\"");
    return false;
}

int listNames(bool json) {
    const auto active = torv::defaults().objectForKey(activeProfileKey).textValue();
    auto names = ProfileList{}.names();
    names.emplace(names.begin(), defaultProfileName);
    for (const auto& name : names) {
        if (json) {
            printObject({{"name", name}, {"active", active == name}});
        } else {
            std::printf("%c %s\n", active == name ? '*' : ' ', printable(name).c_str());
        }
    }
    return success;
}

int show(const Vehicle& vehicle, const std::string& name, bool json) {
    if (!isListed(name)) return badArguments;
    const auto values = ProfileValues::load(name);
    if (!values) {
        complain("the values of \"" + printable(name) + "\" can't be read");
        return badArguments;
    }
    for (const auto& item : namedTuningItems(vehicle)) {
        const auto value = values->find(item.aid);
        const auto text = value == values->end() ? std::string{} : shownValue(item, value->second);
        if (json) {
            printObject({{"aid", Number::fromInteger(item.aid)}, {"name", *item.name}, {"value", text}});
        } else {
            std::printf("%-28s  %s\n", printable(*item.name).c_str(), printable(text).c_str());
        }
    }
    return success;
}

/// Nothing, after a complaint, when the module does not tell all of them.
std::optional<ProfileDictionary> valuesOfModule(Handset& handset) {
    ProfileDictionary values;
    for (const auto& item : handset.vehicle().tuningItems()) {
        if (!readBack(handset.feeder(), item.aid)) {
            complain("the module did not tell its value of AID " + std::to_string(item.aid));
            return std::nullopt;
        }
        values.insert_or_assign(item.aid, handset.feeder().valueForAID(item.aid));
    }
    return values;
}

int compare(Handset& handset, const Arguments& arguments) {
    const auto& names = arguments.words;
    if (!isListed(names[1]) || (!arguments.live && !isListed(names[2]))) return badArguments;
    std::optional<ProfileDictionary> other;
    if (arguments.live) {
        if (!handset.connect()) return notConnected(handset);
        handset.limitTime();
        other = valuesOfModule(handset);
        if (!other) return noAnswer;
    } else {
        other = ProfileValues::load(names[2]);
    }
    const auto own = ProfileValues::load(names[1]);
    if (!own || !other) {
        complain("the values of a profile can't be read");
        return badArguments;
    }
    for (const auto& row : differencesOf(*own, *other, handset.vehicle())) {
        if (arguments.json) {
            printObject({{"aid", Number::fromInteger(row.aid)},
                         {"name", row.name},
                         {"first", row.first},
                         {"second", row.second}});
        } else {
            std::printf("%-28s  %-16s  %s\n", printable(row.name).c_str(), printable(row.first).c_str(),
                        printable(row.second).c_str());
        }
    }
    return success;
}

const char* nameOf(PassReport::Fault fault) {
    using Fault = PassReport::Fault;
    constexpr std::array<std::pair<Fault, const char*>, 4> names{{{Fault::notAcknowledged, "notAcknowledged"},
                                                                  {Fault::different, "different"},
                                                                  {Fault::unanswered, "unanswered"},
                                                                  {Fault::overtaken, "overtaken"}}};
    return std::ranges::find(names, fault, &std::pair<Fault, const char*>::first)->second;
}

int activate(Handset& handset, const std::string& name, bool json) {
    if (name != defaultProfileName && !isListed(name)) return badArguments;
    if (!handset.connect()) return notConnected(handset);
    Activation activation{handset.sharedFeeder(), handset.vehicle()};
    const auto report = activation.push(
        name, [](std::size_t, std::size_t, std::size_t) {}, [] { return false; });
    if (Platform::current().runLoop().isQuitting()) {
        complain("interrupted; the active profile is the one that it was");
        return noAnswer;
    }
    Activation::setActive(name);
    for (const auto& row : report.rows) {
        if (json) {
            printObject({{"aid", Number::fromInteger(row.aid)},
                         {"name", row.name},
                         {"wanted", row.wanted},
                         {"found", row.found},
                         {"fault", nameOf(row.fault)},
                         {"acknowledged", row.fault != PassReport::Fault::notAcknowledged}});
        } else {
            std::printf("%-28s  %s\n", printable(row.name).c_str(), printable(sentenceFor(row)).c_str());
        }
    }
    if (!report.isClean()) complain(report.summary());
    if (json) printObject({{"name", name}, {"active", true}, {"asFoundMissing", report.asFoundMissing}});
    if (!report.rows.empty()) return notTaken;
    if (!isKept()) return noAnswer;
    if (!json) {
        std::printf("%s is the active profile.\n", printable(name).c_str());
    }
    return success;
}

int exportTo(Handset& handset, const std::string& name, const std::filesystem::path& file, bool json) {
    if (!isListed(name)) return badArguments;
    const auto document = ProfileEditor{name, handset.vehicle(), handset.sharedFeeder()}.document();
    if (!document) return noAnswer;
    WholeFile written{file};
    if (written.write(*document) && written.finish()) {
        if (json) printObject({{"name", name}, {"file", file.string()}});
        return success;
    }
    complain(file.string() + " can't be written");
    return noAnswer;
}

int importFrom(Handset& handset, const Arguments& arguments) {
    std::string error;
    const auto contents = contentsOfFile(arguments.words[1], error);
    const auto document =
        contents && isUtf8(*contents) ? VehicleDataSource::vehicleInfo(*contents) : std::nullopt;
    if (!document || !(*document)["settingsMap"].dictionary()) {
        complain(contents ? arguments.words[1] + " holds no tuning profile" : error);
        return badArguments;
    }
    const auto name = arguments.words.size() > 2 ? arguments.words[2] : profileNameOf(*document);
    if (ProfileList{}.count(name) > 0) {
        complain("there is already a profile \"" + printable(name) + "\"; another name may follow the file");
        return badArguments;
    }
    if (isSystemKey(name) && !arguments.force) {
        complain("\"" + printable(name) +
                 "\" is a name that itorv uses itself; --force overwrites what is there");
        return badArguments;
    }
    // What the document does not tell, or not in a form that can be taken, is what the module holds.
    std::vector<AID> missing;
    for (const auto& item : handset.vehicle().tuningItems()) {
        if (!valueFor(item, *document)) missing.push_back(item.aid);
    }
    if (!missing.empty() && !handset.connect()) return notConnected(handset);
    for (const AID aid : missing) {
        if (readBack(handset.feeder(), aid)) continue;
        complain("the module did not tell its value of AID " + std::to_string(aid) +
                 ", which the file lacks");
        return noAnswer;
    }
    ProfileEditor{name, handset.vehicle(), handset.sharedFeeder()}.take(*document);
    if (!isKept()) return noAnswer;
    ProfileList{}.add(name);
    const auto oddity = oddityOf(*document, handset.vehicle());
    if (!oddity.empty()) complain(oddity);
    if (arguments.json) printObject({{"name", name}, {"imported", true}});
    return success;
}

int remove(const std::string& name, bool json) {
    if (!isListed(name)) return badArguments;
    ProfileList{}.remove(name);
    ProfileValues::remove(name);
    if (!isKept()) return noAnswer;
    if (json) printObject({{"name", name}, {"deleted", true}});
    return success;
}

}  // namespace

int profiles(Handset& handset, const Arguments& arguments) {
    const auto& words = arguments.words;
    if (!hasList(arguments.newList)) return noAnswer;
    if (words.empty() || words[0] == "list") return listNames(arguments.json);
    if (words[0] == "show") return show(handset.vehicle(), words[1], arguments.json);
    if (words[0] == "diff") return compare(handset, arguments);
    if (words[0] == "activate") return activate(handset, words[1], arguments.json);
    if (words[0] == "export") return exportTo(handset, words[1], words[2], arguments.json);
    if (words[0] == "import") return importFrom(handset, arguments);
    return remove(words[1], arguments.json);
}

}  // namespace itorvctl
