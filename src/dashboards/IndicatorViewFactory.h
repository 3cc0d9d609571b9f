#pragma once

#include <memory>

#include "dashboards/IndicatorView.h"

namespace torv {

/// Builds the indicator of a sensor with its pattern gauge, and finds a sensor's icons. Main thread.
class IndicatorViewFactory final {
public:
    [[nodiscard]] static std::shared_ptr<IndicatorView> indicatorViewForTorvAttributeDelegate(
        std::shared_ptr<const TorvAttribute> attribute, IndicatorViewDelegate* delegate);

    /// "<AID>_<string><warningString>.png", or the default where no such file ships.
    [[nodiscard]] static Image iconImageForAIDStringWarningStringDefaultImage(AID aid, const QString& string,
                                                                              const QString& warningString,
                                                                              const QString& defaultImage);
};

}  // namespace torv
