#pragma once

#include "dashboards/LampView.h"

namespace torv {

/// Lit while the particle filter burns its soot. Main thread, except for reading.
class SootView final : public torv::LampView {
    Q_OBJECT

public:
    explicit SootView(QRectF frame)
        : LampView(frame, QStringLiteral("blank.png"), QStringLiteral("53_SIDE_GLOW.png"),
                   QStringLiteral("blank.png")) {}
};

}  // namespace torv
