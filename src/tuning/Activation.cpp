#include "tuning/Activation.h"

#include <utility>

#include "platform/NotificationNames.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "tuning/AsFoundProfile.h"

namespace torv {

PassReport Activation::push(const std::string& name, TuningPass::Progress progress,
                            TuningPass::Cancelled cancelled, TuningPass::Words words) {
    const auto found = AsFoundProfile::keep(m_feeder, m_vehicle, cancelled);
    if (cancelled()) return {};
    TuningPass pass{m_feeder, std::move(progress), std::move(cancelled), words};
    const auto record = pass.push(name, m_vehicle);
    AsFoundProfile::closeAfter(record, m_vehicle);
    auto report = PassReport::of(record, m_vehicle);
    report.asFoundMissing = found == AsFoundProfile::Outcome::unanswered;
    return report;
}

PassReport Activation::pushAgain(const ProfileDictionary& values, TuningPass::Progress progress,
                                 TuningPass::Cancelled cancelled) {
    TuningPass pass{m_feeder, std::move(progress), std::move(cancelled), TuningPass::Words::many};
    return PassReport::of(pass.apply(values), m_vehicle);
}

void Activation::setActive(const std::string& name) {
    defaults().setObjectForKey(name, activeProfileKey);
    defaults().synchronize();
    Platform::current().notificationCenter().postNotificationName(customTuningSettingsUpdated);
}

}  // namespace torv
