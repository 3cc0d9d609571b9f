#pragma once

#include <QObject>

namespace torv {

/// An object that the look is given stays the logic's own: the look never ends it. Main thread.
void keepOwnership(QObject& object);

}  // namespace torv
