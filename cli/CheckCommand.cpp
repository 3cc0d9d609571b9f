#include <algorithm>
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

/// The highest value of the item, or the lowest where it has that; nothing for what is no plain number.
std::optional<AV> otherValue(const TorvAttribute& item, AV present) {
    if (!std::dynamic_pointer_cast<AVNumberFormatter>(item.formatter) || item.maxValue <= item.minValue)
        return std::nullopt;
    const auto encoded = [&](double value) -> std::optional<AV> {
        AVFormatterData data;
        data.value = fixedText(value, item.decimaldigits);
        const auto bytes = item.formatter->allocAVFromFormatterData(data);
        if (!bytes) return std::nullopt;
        return AV::forAID(item.aid, {bytes.get(), slotSize(item.aid)});
    };
    const auto same = [&](const std::optional<AV>& value) {
        return value && std::ranges::equal(value->bytes(), present.bytes());
    };
    const auto highest = encoded(item.maxValue);
    return same(highest) ? encoded(item.minValue) : highest;
}

/// False when the program ends with a value that is not put back.
bool tryWrites(Handset& handset, LinkInspector& inspector) {
    auto& feeder = handset.feeder();
    for (const auto& item : writableOf(handset.vehicle())) {
        const auto before = readFrom(feeder, item.aid);
        const auto other = before ? otherValue(item, *before) : std::nullopt;
        if (!other) continue;
        const auto shown = [&](AV value) { return item.dataFromAV(value).value_or(AVFormatterData{}).value; };
        const auto name = printable(item.name.value_or("AID " + std::to_string(item.aid)));
        if (feeder.setValueForAID(other->bytes(), item.aid)) {
            const auto after = readFrom(feeder, item.aid);
            if (after && shown(*after) != shown(*other)) {
                inspector.find(LinkRule::notKept, name + ": " + shown(*other) + " was written, and " +
                                                      shown(*after) + " is there");
            }
        }
        if (feeder.setValueForAID(before->bytes(), item.aid)) continue;
        const auto now = readFrom(feeder, item.aid);
        if (now && shown(*now) == shown(*before)) continue;
        complain(name + " was " + shown(*before) + " and could not be put back; write it by hand");
        return false;
    }
    return true;
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
        passed = passed && rule.isRemark;
        if (json) {
            printObject({{"finding", rule.name},
                         {"text", rule.sentence},
                         {"count", Number::fromInteger(static_cast<std::int64_t>(finding.count))},
                         {"frame", hexadecimalText(finding.frame)},
                         {"detail", finding.detail},
                         {"remark", rule.isRemark}});
            continue;
        }
        auto text = std::string{rule.isRemark ? "remark  " : "finding "} + rule.name + ": " + rule.sentence;
        text += finding.count == 1 ? "; once" : "; " + std::to_string(finding.count) + " times, first";
        if (!finding.detail.empty()) text += ": " + finding.detail;
        if (!finding.frame.empty()) text += "; frame " + hexadecimalText(finding.frame);
        std::puts(text.c_str());
    }
    if (json) {
        printObject({{"passed", passed}});
    } else {
        std::puts(passed ? "The module holds to what is told of the link."
                         : "The module does not hold to what is told of the link.");
    }
    return passed;
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
    bool putBack = true;
    if (connected) {
        if (arguments.tryWrites && !arguments.force) {
            static_cast<void>(readFrom(handset.feeder(), engineSpeedAID));
            if (DtcClear::engineTurns(handset.feeder())) {
                complain("the engine is running, and nothing was written; --force tries it all the same");
                return badArguments;
            }
        }
        exercise(handset, arguments.duration.value_or(usualLength));
        putBack = !arguments.tryWrites || tryWrites(handset, *inspector);
    }
    const auto facts =
        connectionFacts(driver, *statistics, Platform::current().networkInterfaces(), loop.now());
    driver.closeSockets();  // what became of this connection counts too
    const bool passed = tell(connectionReport(facts), inspector->findings(), arguments.json);
    if (!connected) return notConnected(handset);
    if (!putBack) return noAnswer;
    return passed ? success : findings;
}

}  // namespace itorvctl
