#include "qml/MainWindow.h"

#include "qml/GaugeScaleItem.h"
#include "qml/PictureProvider.h"

namespace torv {

MainWindow::MainWindow(Stage& stage) {
    qmlRegisterType<GaugeScaleItem>("iTorv.Looks", 1, 0, "GaugeScaleItem");
    m_engine.addImageProvider(QStringLiteral("iTorv"), std::make_unique<PictureProvider>().release());
    m_engine.setInitialProperties({{"stage", QVariant::fromValue(&stage)}});
    m_engine.load("qrc:/iTorv/Main.qml");
}

QQuickWindow* MainWindow::window() const {
    const auto roots = m_engine.rootObjects();
    return roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.first());
}

}  // namespace torv
