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

}  // namespace

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

bool TuningPass::readBack(AID aid) {
    for (int attempt = 0; attempt < readAttempts; ++attempt) {
        if (m_feeder->requestValueForAID(aid)) return true;
    }
    return false;
}

PassRecord TuningPass::reset(const Vehicle& vehicle) {
    logLine("default");
    m_progress(0, 0, 1);
    PushedItem written{.aid = resetAID, .wanted = AV::forAID(resetAID, resetValue), .isReset = true};
    written.acknowledged = m_feeder->setValueForAID(resetValue, resetAID);
    for (const auto& item : vehicle.tuningItems()) {
        if (m_cancelled()) break;
        readBack(item.aid);
    }
    return {written};
}

PassRecord TuningPass::apply(const ProfileDictionary& profile) {
    PassRecord record;
    std::size_t failed = 0;
    for (const auto& [aid, value] : profile) {
        if (m_cancelled()) break;
        m_progress(record.size(), failed, profile.size());
        tell("saving aid: " + std::to_string(aid) + " with value: " + std::to_string(value.bytes()[0]));
        PushedItem item{.aid = aid, .wanted = value};
        item.acknowledged = m_feeder->setValueForAID(value.bytes(), aid);
        if (!item.acknowledged) ++failed;
        if (readBack(aid)) item.found = m_feeder->valueForAID(aid);
        record.push_back(item);
    }
    return record;
}

}  // namespace torv
