#pragma once

#include <QString>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

#include "screens/ProgressHUD.h"

namespace torv {

/// The words of a tuning pass on its overlay. Its Cancel button is offered once a write has failed, and only
/// until it has been pressed. Main thread.
class TuningOverlay final {
public:
    explicit TuningOverlay(std::function<void()> cancel)
        : m_hud(std::make_shared<ProgressHUD>([this, cancel = std::move(cancel)] {
              m_cancelling = true;
              m_hud->setCancelHidden(true);
              m_hud->setTexts(m_hud->labelText(), QStringLiteral("Cancelling..."));
              cancel();
          })) {
        begin();
    }

    /// As it was made, for a pass that follows on another. It stays in the background if it is there.
    void begin() {
        m_cancelling = false;
        m_hud->setCancelHidden(true);
        m_hud->setTexts(QStringLiteral("Initializing settings"), QStringLiteral("Setting custom variables"));
    }

    /// The look keeps the overlay a while longer, and a touch on Cancel may be on its way.
    ~TuningOverlay() { m_hud->setCancelHidden(true); }
    TuningOverlay(const TuningOverlay&) = delete;
    TuningOverlay& operator=(const TuningOverlay&) = delete;

    [[nodiscard]] const std::shared_ptr<ProgressHUD>& hud() const { return m_hud; }

    void show(std::size_t index, std::size_t failed, std::size_t total) {
        const auto label = QStringLiteral("Initializing settings (%1/%2)").arg(index + 1).arg(total);
        auto details = QStringLiteral("Setting custom variables");
        if (failed > 0) {
            details = QStringLiteral("%1 tuning %2 failed")
                          .arg(failed)
                          .arg(failed == 1 ? QStringLiteral("variable") : QStringLiteral("variables"));
        }
        if (m_cancelling) details = QStringLiteral("Cancelling...");
        m_hud->setTexts(label, details);
        m_hud->setCancelHidden(failed == 0 || m_cancelling);
    }

private:
    bool m_cancelling = false;
    std::shared_ptr<ProgressHUD> m_hud;
};

}  // namespace torv
