#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>

#include "Commands.h"
#include "attributes/AVNumberFormatter.h"
#include "connection/ConnectionReport.h"
#include "connection/LinkInspector.h"
#include "diagnostics/DtcAIDs.h"
#include "diagnostics/DtcClear.h"
#include "platform/Platform.h"
#include "settings/SettingRules.h"
#include "support/Hexadecimal.h"
#include "support/TextNumbers.h"

namespace itorvctl {

using namespace torv;

namespace {

constexpr std::chrono::seconds usualLength{10};
constexpr std::chrono::milliseconds betweenQuestions{150};
constexpr AID heartbeatAID = 9;
constexpr int readAttempts = 5;
// For a changed value to be sent back: a second.
constexpr int patience = 20;
constexpr std::chrono::milliseconds patienceStep{50};

/// Settings and tuning items: what may be written.
std::vector<TorvAttribute> writableOf(const Vehicle& vehicle) {
    auto all = vehicle.settings();
    for (auto& item : vehicle.tuningItems())
        all.push_back(std::move(item));
    std::erase_if(all, [](const TorvAttribute& each) { return !isChangeable(each); });
    return all;
}

/// Turns the loop for as long; false when the program is to end.
bool wait(std::chrono::milliseconds length) {
    auto& loop = Platform::current().runLoop();
    bool over = false;
    const auto timer = loop.scheduleTimer(length, false, [&over](Timer&) { over = true; });
    while (!over) {
        if (!loop.runOnce()) break;
    }
    timer->invalidate();
    return over;
}

/// Asks for the heartbeat and for all values in turn, and writes those that may be written back as they are.
void exercise(Handset& handset, std::chrono::milliseconds length) {
    auto& loop = Platform::current().runLoop();
    auto& driver = handset.feeder().driver();
    const auto writable = writableOf(handset.vehicle());
    const auto isWritable = [&](AID aid) {
        return std::ranges::find(writable, aid, &TorvAttribute::aid) != writable.end();
    };
    auto asked = writable;
    for (auto& sensor : handset.vehicle().sensors())
        asked.push_back(std::move(sensor));
    const auto end = loop.now() + length;
    for (std::size_t i = 0; loop.now() < end && wait(betweenQuestions); ++i) {
        if (!driver.connected()) continue;
        const bool beat = asked.empty() || i % 4 == 0;
        const auto aid = beat ? heartbeatAID : asked[(i - i / 4 - 1) % asked.size()].aid;
        if (!driver.requestValueForAID(static_cast<std::int32_t>(aid)) || beat || !isWritable(aid)) continue;
        static_cast<void>(
            driver.writeValueForAID(handset.feeder().valueForAID(aid), static_cast<std::int32_t>(aid)));
    }
}

std::optional<AV> readFrom(iTorvFeeder& feeder, AID aid) {
    for (int attempt = 0; attempt < readAttempts; ++attempt) {
        if (feeder.requestValueForAID(aid)) return feeder.valueForAID(aid);
    }
    return std::nullopt;
}

/// Three quarters up the item's range, or one quarter where it is higher than half already; nothing for what
/// is no plain number.
std::optional<AV> otherValue(const TorvAttribute& item, AV present) {
    const auto data = item.dataFromAV(present);
    if (!data || !std::dynamic_pointer_cast<AVNumberFormatter>(item.formatter) ||
        item.maxValue <= item.minValue)
        return std::nullopt;
    const auto range = item.maxValue - item.minValue;
    const bool high = doubleValue(data->value) > item.minValue + range / 2;
    AVFormatterData other;
    other.value = fixedText(item.minValue + range * (high ? 0.25 : 0.75), item.decimaldigits);
    const auto bytes = item.formatter->allocAVFromFormatterData(other);
    if (!bytes) return std::nullopt;
    return AV::forAID(item.aid, {bytes.get(), slotSize(item.aid)});
}

bool engineStands(iTorvFeeder& feeder) {
    return readFrom(feeder, engineSpeedAID) && !DtcClear::engineTurns(feeder);
}

/// Writes another value and reads it back, and puts the old one there again; false when that can't be done.
bool tryWrite(iTorvFeeder& feeder, LinkInspector& inspector, const TorvAttribute& item) {
    const auto before = readFrom(feeder, item.aid);
    const auto other = before ? otherValue(item, *before) : std::nullopt;
    if (!other) return true;
    const auto shown = [&](AV value) { return item.dataFromAV(value).value_or(AVFormatterData{}).value; };
    const auto name = printable(item.name.value_or("AID " + std::to_string(item.aid)));
    const auto aid = static_cast<std::uint8_t>(item.aid);
    const auto pushes = inspector.pushesOf(aid);
    if (feeder.setValueForAID(other->bytes(), item.aid)) {
        for (int i = 0; i < patience && inspector.pushesOf(aid) == pushes; ++i)
            wait(patienceStep);
        const auto after = readFrom(feeder, item.aid);
        const bool kept = after && shown(*after) == shown(*other);
        if (after && !kept) {
            inspector.find(LinkRule::notKept,
                           name + ": " + shown(*other) + " was written, and " + shown(*after) + " is there");
        } else if (kept && inspector.pushesOf(aid) == pushes) {
            inspector.find(LinkRule::notSentBack, name);
        }
    }
    if (feeder.setValueForAID(before->bytes(), item.aid)) return true;
    const auto now = readFrom(feeder, item.aid);
    if (now && shown(*now) == shown(*before)) return true;
    complain(name + " was " + shown(*before) + " and could not be put back; write it by hand");
    return false;
}

/// Nothing when all was tried, or the program is to end; else the exit code.
std::optional<int> tryWrites(Handset& handset, LinkInspector& inspector, bool force) {
    for (const auto& item : writableOf(handset.vehicle())) {
        if (!force && !engineStands(handset.feeder())) {
            complain("the engine is running, or its speed is not told; --force tries writes all the same");
            return badArguments;
        }
        // An end within this would leave a value that nobody wanted.
        handset.holdInterrupt(true);
        const bool putBack = tryWrite(handset.feeder(), inspector, item);
        handset.holdInterrupt(false);
        if (!putBack) return noAnswer;
        if (handset.interrupted()) break;
    }
    return std::nullopt;
}

const char* word(ConnectionLine::Verdict verdict) {
    switch (verdict) {
        case ConnectionLine::Verdict::good:
            return "ok";
        case ConnectionLine::Verdict::bad:
            return "no";
        case ConnectionLine::Verdict::open:
            break;
    }
    return "-";
}

/// Answers and pushes that are missing may have been in the reads that this machine was too slow for.
bool mayBeOwn(const LinkInspector::Finding& finding, const std::vector<LinkInspector::Finding>& all) {
    constexpr std::array answers{LinkRule::missingAck, LinkRule::lateAck, LinkRule::missingResponse,
                                 LinkRule::lateResponse, LinkRule::notSentBack};
    const auto lag = std::ranges::find(all, LinkRule::ownLag, &LinkInspector::Finding::rule);
    return lag != all.end() && finding.count <= lag->count &&
           std::ranges::find(answers, finding.rule) != answers.end();
}

/// True when nothing is wrong.
bool tell(const std::vector<ConnectionLine>& lines, const std::vector<LinkInspector::Finding>& findings,
          bool json) {
    for (const auto& line : lines) {
        if (json) {
            printObject({{"subject", line.subject},
                         {"state", line.state},
                         {"verdict", word(line.verdict)},
                         {"advice", line.advice}});
        } else {
            std::printf("%-3s %-12s  %s%s\n", word(line.verdict), line.subject.c_str(),
                        printable(line.state).c_str(),
                        line.advice.empty() ? "" : (". " + line.advice).c_str());
        }
    }
    bool passed = true;
    for (const auto& finding : findings) {
        const auto& rule = *std::ranges::find(linkRules, finding.rule, &LinkRuleText::rule);
        const bool isRemark = rule.isRemark || mayBeOwn(finding, findings);
        passed = passed && isRemark;
        if (json) {
            printObject({{"finding", rule.name},
                         {"text", rule.sentence},
                         {"count", Number::fromInteger(static_cast<std::int64_t>(finding.count))},
                         {"frame", hexadecimalText(finding.frame)},
                         {"detail", finding.detail},
                         {"remark", isRemark}});
            continue;
        }
        auto text = std::string{isRemark ? "remark  " : "finding "} + rule.name + ": " + rule.sentence;
        text += finding.count == 1 ? "; once" : "; " + std::to_string(finding.count) + " times";
        if (!finding.detail.empty()) text += "; first: " + finding.detail;
        if (!finding.frame.empty()) text += "; first frame " + hexadecimalText(finding.frame);
        std::puts(text.c_str());
    }
    return passed;
}

void tellVerdict(bool passed, bool json) {
    if (json) {
        printObject({{"passed", passed}});
    } else {
        std::puts(passed ? "The module does what docs/link.md asks for."
                         : "The module does not do all that docs/link.md asks for.");
    }
}

}  // namespace

int check(Handset& handset, const Arguments& arguments) {
    auto& loop = Platform::current().runLoop();
    auto& driver = handset.feeder().driver();
    const auto inspector = std::make_shared<LinkInspector>(loop);
    const auto statistics = std::make_shared<LinkStatistics>(loop);
    driver.addMonitor(inspector);
    driver.addMonitor(statistics);
    const bool connected = handset.connect();
    const auto wireless = std::make_shared<std::optional<WirelessNetworks::Network>>();
    const auto& interfaces = Platform::current().networkInterfaces();
    if (const auto route = interfaces.routeTo(driver.endpoint().host))
        Platform::current().wirelessNetworks().ask(route->interface,
                                                   [wireless](auto told) { *wireless = told; });
    if (connected) {
        if (arguments.tryWrites) {
            if (const auto code = tryWrites(handset, *inspector, arguments.force)) return *code;
        }
        exercise(handset, arguments.duration.value_or(usualLength));
    }
    auto facts = connectionFacts(driver, *statistics, interfaces, loop.now());
    facts.wireless = *wireless;
    driver.closeSockets();  // what became of this connection counts too
    const bool passed = tell(connectionReport(facts), inspector->findings(), arguments.json);
    if (handset.interrupted()) {
        complain("it was interrupted, and gives no verdict");
        return noAnswer;
    }
    if (!connected) return notConnected(handset);
    tellVerdict(passed, arguments.json);
    return passed ? success : findings;
}

}  // namespace itorvctl
