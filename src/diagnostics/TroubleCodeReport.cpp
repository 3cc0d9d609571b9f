#include "diagnostics/TroubleCodeReport.h"

#include <algorithm>

#include "diagnostics/AVDTCData224.h"
#include "diagnostics/AVDTCFormatter224.h"
#include "diagnostics/AVDTCFormatter225.h"
#include "diagnostics/DtcAIDs.h"
#include "support/TextNumbers.h"
#include "support/TimeTexts.h"

namespace torv {
namespace {

using Arrival = std::optional<RunLoop::Clock::time_point>;

template <class Codes>
Codes decoded(AVFormatter& formatter, AV value) {
    const auto data = formatter.dataFromAV(value.bytes().data());
    const auto* codes = data ? std::any_cast<Codes>(&data->additionalData) : nullptr;
    return codes ? *codes : Codes{};
}

constexpr std::size_t bytesBeforeCodes = 3;  // of AID 224: its length, which counts itself, and two numbers

/// Of the first report's codes, as many as came whole. Behind its length the slot holds what came before.
std::size_t codesWithin(const AV& firstReport) {
    const std::size_t length = firstReport.bytes()[0];
    return length < bytesBeforeCodes ? 0 : (length - bytesBeforeCodes) / 2;
}

}  // namespace

std::string TroubleCodeReport::Row::text() const {
    if (code.empty()) return "Code not received";
    return code + " - " + description.value_or("No Info");
}

TroubleCodeReport TroubleCodeReport::fromStore(const iTorvFeeder& feeder, RunLoop::Clock::time_point begun,
                                               const Texts& texts) {
    AVDTCFormatter224 formatter224;
    AVDTCFormatter225 formatter225;
    const auto firstReport = feeder.valueForAID(firstCodesReportAID);
    const auto first = decoded<AVDTCData224>(formatter224, firstReport);
    const bool tellsCount = firstReport.bytes()[0] >= bytesBeforeCodes;
    const auto second =
        decoded<std::vector<std::string>>(formatter225, feeder.valueForAID(secondCodesReportAID));
    const auto arrival224 = feeder.arrivalOfAID(firstCodesReportAID);
    const auto arrival225 = feeder.arrivalOfAID(secondCodesReportAID);
    const auto isOld = [&](const Arrival& arrival) { return !arrival || *arrival < begun; };
    const auto inFirst = first.DTCData.size();
    const auto numOfDTCReported =
        tellsCount ? static_cast<std::size_t>(intValue(first.numberOfDTCReported)) : 0;
    const auto wall224 = feeder.wallArrivalOfAID(firstCodesReportAID);
    const auto wall225 = feeder.wallArrivalOfAID(secondCodesReportAID);

    TroubleCodeReport report;
    report.answered = tellsCount && !isOld(arrival224);
    if (isOld(arrival224)) report.lastAnswer = wall224;
    for (std::size_t i = 0; i < numOfDTCReported; ++i) {
        const bool ofSecond = i >= inFirst && i - inFirst < second.size();
        Row row{.code = {}, .old = isOld(ofSecond ? arrival225 : arrival224), .description = {}};
        if (i < std::min(inFirst, codesWithin(firstReport))) row.code = first.DTCData[i];
        if (ofSecond) row.code = second[i - inFirst];
        if (const auto found = texts.find(row.code); found != texts.end()) row.description = found->second;
        if (ofSecond && row.old && wall225)
            report.lastAnswer = std::min(report.lastAnswer.value_or(*wall225), *wall225);
        report.rows.push_back(std::move(row));
    }
    std::stable_partition(report.rows.begin(), report.rows.end(), [](const Row& row) { return !row.old; });
    return report;
}

std::string TroubleCodeReport::lastAnswerText() const {
    return "Last answer from " + (lastAnswer ? dateText(*lastAnswer) : "earlier");
}

std::string TroubleCodeReport::emptyText() const {
    if (answered) return "The module reports no trouble codes.";
    if (lastAnswer) return "The module does not answer now. " + lastAnswerText() + ": no trouble codes.";
    return "The module has not reported its trouble codes. Is the ignition on?";
}

std::string TroubleCodeReport::document(const std::string& vehicle, const std::string& recording,
                                        WallClock::time_point now) const {
    std::string text = "Trouble codes of " + vehicle + "\nRead on " + dateText(wallTime(now)) + "\n";
    if (!recording.empty()) text += "While the drive was recorded as " + recording + "\n";
    text += "\n";
    if (rows.empty()) text += emptyText() + "\n";
    bool oldBegan = false;
    for (const auto& row : rows) {
        if (row.old && !oldBegan) {
            oldBegan = true;
            text += "\n" + lastAnswerText() + ", and not of this read:\n";
        }
        text += row.text() + "\n";
    }
    return text;
}

}  // namespace torv
