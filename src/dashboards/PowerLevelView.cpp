#include "dashboards/PowerLevelView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/NotificationNames.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr std::int32_t greenLevel = 228;
constexpr std::int32_t warningLevels = 128;
constexpr AID levelCountAID = 15;
constexpr int requestAttempts = 21;
constexpr double numberGap = 5;
constexpr QSizeF numberSize{36, 17};

float& sharedMaximum() {
    static float level = 127;
    return level;
}

}  // namespace

PowerLevelView::PowerLevelView(QRectF frame, std::shared_ptr<iTorvFeeder> feeder)
    : StatusWidget(frame),
      m_feeder(std::move(feeder)),
      m_normal(imageNamed(QStringLiteral("POWERMETER_BARS.png"))),
      m_green(imageNamed(QStringLiteral("POWERMETER_BARS_GREEN.png"))),
      m_warning(imageNamed(QStringLiteral("POWERMETER_BARS_WARN.png"))),
      m_overlay(imageNamed(QStringLiteral("POWERMETER_OVERLAY.png"))),
      m_powerLevelNumber(std::make_unique<DigitalDisplayView>(
          QRectF{QPointF{m_normal.size.width() + numberGap, 0}, numberSize})),
      m_powerLevelIcon(m_normal),
      m_tuningUpdated(Platform::current().notificationCenter().addObserver(customTuningSettingsUpdated,
                                                                           [this] { updateMaxLevels(); })) {
    m_powerLevelNumber->setStyle(1);
    m_powerLevelNumber->setTextAlignment(1);
}

float PowerLevelView::maximumLevel() {
    return sharedMaximum();
}

void PowerLevelView::setMaximumLevel(float level) {
    sharedMaximum() = level;
}

void PowerLevelView::updateMaxLevels() {
    const auto kept = shared_from_this();  // the loop turns meanwhile, and the page may go
    for (int attempt = 0; attempt < requestAttempts; ++attempt) {
        if (m_feeder->requestValueForAID(levelCountAID)) break;
    }
    const auto stored = m_feeder->valueForAID(levelCountAID);
    setMaximumLevel(static_cast<float>(stored.bytes()[0]) - 1);
}

std::int32_t PowerLevelView::number(const AVFormatterData& data) const {
    return intValue(data.value);
}

void PowerLevelView::show(std::int32_t level) {
    if (level == greenLevel) {
        m_powerLevelIcon = m_green;
        m_powerLevelNumber->setValue(level - greenLevel);
        m_barWidth = m_green.size.width();
    } else if (level >= warningLevels) {
        m_powerLevelIcon = m_warning;
        m_powerLevelNumber->setValue(level - warningLevels);
        m_barWidth = m_warning.size.width();
    } else {
        m_powerLevelIcon = m_normal;
        m_powerLevelNumber->setValue(level);
        m_barWidth = m_normal.size.width() * static_cast<double>(static_cast<float>(level) / maximumLevel());
    }
    emit barChanged();
}

double PowerLevelView::shownBarWidth() const {
    return std::isnan(m_barWidth) ? 0 : std::clamp(m_barWidth, 0.0, barSize().width());
}

}  // namespace torv

#include "moc_PowerLevelView.cpp"
