#include "screens/Ownership.h"

#include <QQmlEngine>

namespace torv {

void keepOwnership(QObject& object) {
    QQmlEngine::setObjectOwnership(&object, QQmlEngine::CppOwnership);
}

}  // namespace torv
