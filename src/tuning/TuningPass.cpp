#include "tuning/TuningPass.h"

#include <array>

#include "platform/Log.h"
#include "platform/StoredKeys.h"
#include "tuning/ProfileValues.h"

namespace torv {
namespace {

constexpr AID resetAID = 24;
constexpr std::array<std::uint8_t, 1> resetValue{0x55};
constexpr int readAttempts = 21;

// Of this process, on the main thread; by these a pass knows that another one has run inside it.
int passesBegun = 0;
int profilesBegun = 0;

}  // namespace

bool readBack(iTorvFeeder& feeder, AID aid) {
    for (int attempt = 0; attempt < readAttempts; ++attempt) {
        if (feeder.requestValueForAID(aid)) return true;
    }
    return false;
}

PassRecord TuningPass::push(const std::string& name, const Vehicle& vehicle) {
    if (name == defaultProfileName) return reset(vehicle);
    tell("pass0");
    const auto profile = ProfileValues::load(name);
    tell("pass1");
    tell("count:" + std::to_string(profile ? profile->size() : 0));
    tell("pass2");
    return profile ? apply(*profile) : PassRecord{};
}

void TuningPass::tell(const std::string& line) const {
    if (m_words == Words::many) logLine(line);
}

PassRecord TuningPass::reset(const Vehicle& vehicle) {
    logLine("default");
    ++passesBegun;
    const int profilesBefore = profilesBegun;
    m_progress(0, 0, 1);
    PushedItem written{.aid = resetAID, .wanted = AV::forAID(resetAID, resetValue), .isReset = true};
    written.acknowledged = m_feeder->setValueForAID(resetValue, resetAID);
    for (const auto& item : vehicle.tuningItems()) {
        if (m_cancelled()) break;
        readBack(*m_feeder, item.aid);
    }
    written.overtaken = profilesBegun != profilesBefore;
    return {written};
}

PassRecord TuningPass::apply(const ProfileDictionary& profile) {
    PassRecord record;
    std::size_t failed = 0;
    ++profilesBegun;
    const int passes = ++passesBegun;
    for (const auto& [aid, value] : profile) {
        if (m_cancelled()) break;
        m_progress(record.size(), failed, profile.size());
        tell("saving aid: " + std::to_string(aid) + " with value: " + std::to_string(value.bytes()[0]));
        PushedItem item{.aid = aid, .wanted = value};
        item.acknowledged = m_feeder->setValueForAID(value.bytes(), aid);
        if (!item.acknowledged) ++failed;
        if (readBack(*m_feeder, aid)) item.found = m_feeder->valueForAID(aid);
        record.push_back(item);
    }
    if (passesBegun != passes) readAgain(record);
    return record;
}

void TuningPass::readAgain(PassRecord& record) {
    int passes = 0;
    do {
        passes = passesBegun;
        for (auto& item : record) {
            if (m_cancelled()) return;
            item.found =
                readBack(*m_feeder, item.aid) ? std::optional{m_feeder->valueForAID(item.aid)} : std::nullopt;
        }
    } while (passesBegun != passes);
}

}  // namespace torv
