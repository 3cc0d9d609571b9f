#include "tuning/TuningPass.h"

#include <array>

#include "platform/Log.h"

namespace torv {
namespace {

constexpr AID resetAID = 24;
constexpr std::array<std::uint8_t, 1> resetValue{0x55};
constexpr int readAttempts = 21;

}  // namespace

void TuningPass::readBack(AID aid) {
    for (int attempt = 0; attempt < readAttempts; ++attempt) {
        if (m_feeder->requestValueForAID(aid)) return;
    }
}

void TuningPass::reset(const Vehicle& vehicle) {
    logLine("default");
    m_progress(0, 0, 1);
    m_feeder->setValueForAID(resetValue, resetAID);
    for (const auto& item : vehicle.tuningItems()) {
        if (m_cancelled()) return;
        readBack(item.aid);
    }
}

void TuningPass::apply(const ProfileDictionary& profile) {
    std::size_t index = 0;
    std::size_t failed = 0;
    for (const auto& [aid, value] : profile) {
        if (m_cancelled()) return;
        m_progress(index++, failed, profile.size());
        if (!m_feeder->setValueForAID(value.bytes(), aid)) ++failed;
        readBack(aid);
    }
}

}  // namespace torv
