#include <unistd.h>

#include <QSocketNotifier>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <utility>

#include "Commands.h"
#include "diagnostics/DtcAIDs.h"
#include "diagnostics/DtcClear.h"
#include "diagnostics/DtcRequest.h"
#include "diagnostics/TroubleCodeDatabase.h"
#include "diagnostics/TroubleCodeReport.h"
#include "platform/Platform.h"

namespace itorvctl {

using namespace torv;

namespace {

/// Longer than three requests with all their attempts take. There has to be a limit, because a write waits
/// without end while the stream takes no bytes.
constexpr std::chrono::seconds mostTime{40};

/// Turns the loop until it is done; false when the time is over or the program is to end.
bool runUntil(const std::function<bool()>& done) {
    auto& loop = Platform::current().runLoop();
    const auto timer = loop.scheduleTimer(mostTime, false, [&loop](Timer&) { loop.quit(); });
    while (!done() && loop.runOnce()) {
    }
    timer->invalidate();
    return done();
}

/// The loop goes on meanwhile, so that the link stays up.
bool asksYes(const std::string& question) {
    std::fprintf(stderr, "%s [y/N] ", question.c_str());
    bool answered = false;
    QSocketNotifier notifier{STDIN_FILENO, QSocketNotifier::Read};
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&] {
        answered = true;
        notifier.setEnabled(false);
    });
    auto& loop = Platform::current().runLoop();
    while (!answered && loop.runOnce()) {
    }
    std::array<char, 16> answer{};
    if (!answered || ::read(STDIN_FILENO, answer.data(), answer.size()) < 1) return false;
    return answer[0] == 'y' || answer[0] == 'Y';
}

int read(Handset& handset, const Arguments& arguments) {
    std::string error;
    const auto texts = TroubleCodeDatabase::load(error);
    if (!texts) complain(error);  // the codes are worth something without their texts too
    if (!handset.connect()) return notConnected(handset);
    bool done = false;
    const auto request = std::make_shared<DtcRequest>(handset.sharedFeeder(), [&done] { done = true; });
    request->begin();
    const bool ended = runUntil([&] { return done; });
    const auto report = TroubleCodeReport::fromStore(handset.feeder(), request->begun(),
                                                     texts.value_or(TroubleCodeReport::Texts{}));
    if (!ended || !report.answered) {
        complain("the module did not report its trouble codes");
        return noAnswer;
    }
    bool oldBegan = false;
    for (const auto& row : report.rows) {
        if (!arguments.json) {
            if (row.old && !std::exchange(oldBegan, true))
                std::printf("%s, and not of this read:\n", report.lastAnswerText().c_str());
            std::puts(row.text().c_str());
            continue;
        }
        printObject({{"code", row.code.empty() ? Value{} : Value{row.code}},
                     {"text", row.description ? Value{*row.description} : Value{}},
                     {"old", row.old}});
    }
    if (!arguments.json && report.rows.empty()) std::puts(report.emptyText().c_str());
    const auto missing = std::ranges::count(report.rows, std::string{}, &TroubleCodeReport::Row::code);
    if (missing == 0) return success;
    complain("the module reports " + std::to_string(report.rows.size()) + " codes, and " +
             std::to_string(missing) + " of them did not come");
    return noAnswer;
}

int leftAlone(bool json) {
    if (json) {
        printObject({{"cleared", false}});
    } else {
        std::puts("Nothing was cleared.");
    }
    return success;
}

int clear(Handset& handset, const Arguments& arguments) {
    const bool canAsk = ::isatty(STDIN_FILENO) != 0 && ::isatty(STDERR_FILENO) != 0;
    if (!arguments.yes && !canAsk) {
        complain(
            "codes clear asks before it clears, and there is no terminal to ask on; --yes clears "
            "without");
        return badArguments;
    }
    if (!arguments.yes && !asksYes("Clear all trouble codes of the module?"))
        return leftAlone(arguments.json);
    if (!handset.connect()) return notConnected(handset);
    if (!arguments.yes) {
        handset.feeder().requestValueForAID(engineSpeedAID);
        if (DtcClear::engineTurns(handset.feeder()) &&
            !asksYes("The engine is running. Clear them all the same?"))
            return leftAlone(arguments.json);
    }
    std::optional<DtcClear::Result> result;
    const auto clearing = std::make_shared<DtcClear>(handset.sharedFeeder(),
                                                     [&result](DtcClear::Result told) { result = told; });
    clearing->begin();
    runUntil([&] { return result.has_value(); });
    const auto told = result.value_or(DtcClear::Result{});
    const bool cleared = told.cleared && told.confirmed;
    if (arguments.json) printObject({{"cleared", cleared}});
    if (!cleared) {
        complain(told.cleared ? "the module has not confirmed that it cleared its trouble codes"
                              : "the module did not clear its trouble codes");
        return noAnswer;
    }
    if (!arguments.json) std::puts("The trouble codes are cleared.");
    return success;
}

}  // namespace

int codes(Handset& handset, const Arguments& arguments) {
    return arguments.words.empty() ? read(handset, arguments) : clear(handset, arguments);
}

}  // namespace itorvctl
