#pragma once

#include "dashboards/LampView.h"

namespace torv {

/// Lit while the catalyst burns its sulphur. Main thread, except for reading.
class SoxView final : public torv::LampView {
    Q_OBJECT

public:
    explicit SoxView(QRectF frame)
        : LampView(frame, QStringLiteral("54_SIDE_GLOW.png"), QStringLiteral("54_SIDE_GLOW.png"),
                   QStringLiteral("blank.png")) {}
};

}  // namespace torv
