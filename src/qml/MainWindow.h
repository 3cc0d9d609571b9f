#pragma once

#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include "screens/Stage.h"

namespace torv {

/// The application's one window, drawn from its QML. Main thread.
class MainWindow final {
public:
    explicit MainWindow(Stage& stage);

    /// Null when the window could not be made.
    [[nodiscard]] QQuickWindow* window() const;

private:
    QQmlApplicationEngine m_engine;
};

}  // namespace torv
