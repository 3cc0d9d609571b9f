#pragma once

#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <functional>
#include <memory>

#include "platform/Timer.h"
#include "qml/WindowTurn.h"
#include "screens/Stage.h"

namespace torv {

/// The application's one window, drawn from its QML. Main thread.
class MainWindow final {
public:
    /// The bare window: it is on the screen long before a page could be.
    MainWindow();
    ~MainWindow();
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    /// Calls back once the bare window has been painted, or after 0.2 s: one that nobody sees is never
    /// painted. Main thread, in a turn of the loop.
    void whenPainted(std::function<void()> action);
    /// The stage is not owned.
    void show(Stage& stage);
    void setTurn(Turn turn);

    /// Null when the window could not be made.
    [[nodiscard]] QQuickWindow* window() const;

private:
    void painted();
    void lookAtTurn();
    void lookAtKeyboard();

    QQmlApplicationEngine m_engine;
    std::function<void()> m_whenPainted;
    std::shared_ptr<Timer> m_timer;
    QPointer<Stage> m_stage;
    Turn m_turn = Turn::automatic;
    QObject m_watcher;  // of the window; goes before it
};

}  // namespace torv
