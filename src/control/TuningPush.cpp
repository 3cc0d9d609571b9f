#include "control/TuningPush.h"

#include "control/TuningOverlay.h"

namespace torv {

PassReport TuningPush::run(const Pass& pass) {
    const auto underWay = m_application->beginPass();
    m_application->forgetWhatWasTold();
    TuningOverlay overlay{[this] { cancel(); }};
    m_screen.setProgress(overlay.hud());
    Activation activation{m_application->feeder(), m_application->currentVehicle()};
    auto report = pass(
        activation,
        [&](std::size_t index, std::size_t failed, std::size_t total) { overlay.show(index, failed, total); },
        [this] { return m_requestCancelCustomTuning; });
    m_screen.setProgress(nullptr);
    return report;
}

}  // namespace torv
