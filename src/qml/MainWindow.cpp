#include "qml/MainWindow.h"

#include <QGuiApplication>
#include <QIcon>
#include <QInputMethod>
#include <QPixmap>
#include <QQuickItem>
#include <chrono>
#include <utility>

#include "platform/Platform.h"
#include "qml/KeyboardShift.h"
#include "qml/PictureProvider.h"

void qml_register_types_iTorv();
void qml_register_types_iTorv_Screens();
void qml_register_types_iTorv_Dashboards();
void qml_register_types_iTorv_DataLog();
void qml_register_types_iTorv_Tuning();

namespace torv {
namespace {

constexpr std::chrono::milliseconds longEnough{200};  // a window that nobody sees is never painted
constexpr QSize iconSize{128, 128};

}  // namespace

MainWindow::MainWindow() {
    // They stand in static libraries, and would not be linked without these calls.
    qml_register_types_iTorv();
    qml_register_types_iTorv_Screens();
    qml_register_types_iTorv_Dashboards();
    qml_register_types_iTorv_DataLog();
    qml_register_types_iTorv_Tuning();
    m_engine.addImportPath(QStringLiteral("qrc:/"));
    m_engine.addImageProvider(QStringLiteral("iTorv"), std::make_unique<PictureProvider>().release());
    m_engine.load("qrc:/iTorv/Main.qml");
}

MainWindow::~MainWindow() {
    if (m_timer) m_timer->invalidate();
}

void MainWindow::whenPainted(std::function<void()> action) {
    m_whenPainted = std::move(action);
    auto& loop = Platform::current().runLoop();
    m_timer = loop.scheduleTimer(longEnough, false, [this](Timer&) { painted(); });
    if (auto* shown = window()) {
        QObject::connect(
            shown, &QQuickWindow::frameSwapped, shown, [this] { painted(); },
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    }
}

void MainWindow::painted() {
    m_timer->invalidate();
    if (const auto action = std::exchange(m_whenPainted, nullptr)) action();
}

void MainWindow::show(Stage& stage) {
    auto* shown = window();
    if (!shown) return;
    m_stage = &stage;
    const auto look = [this] { lookAtTurn(); };
    QObject::connect(&stage, &Stage::portraitChanged, &m_watcher, look);
    QObject::connect(shown, &QWindow::widthChanged, &m_watcher, look);
    QObject::connect(shown, &QWindow::heightChanged, &m_watcher, look);
    QObject::connect(shown, &QWindow::visibilityChanged, &m_watcher, look);
    const auto* const input = QGuiApplication::inputMethod();
    const auto uncover = [this] { lookAtKeyboard(); };
    QObject::connect(input, &QInputMethod::keyboardRectangleChanged, &m_watcher, uncover);
    QObject::connect(input, &QInputMethod::visibleChanged, &m_watcher, uncover);
    QObject::connect(shown, &QQuickWindow::activeFocusItemChanged, &m_watcher, uncover);
    lookAtTurn();
    shown->setProperty("stage", QVariant::fromValue<QObject*>(&stage));
    const auto icon = PictureProvider{}.requestImage(QStringLiteral("picture/itorv.png"), nullptr, iconSize);
    shown->setIcon(QIcon{QPixmap::fromImage(icon)});
}

void MainWindow::setTurn(Turn turn) {
    m_turn = turn;
    lookAtTurn();
}

void MainWindow::lookAtTurn() {
    auto* shown = window();
    if (!shown || !m_stage) return;
    // Qt is not told of the content's orientation: under Wayland it would say that the pixels are turned
    // already, and the compositor would turn them back and show a window of swapped width and height.
    const WindowState state{.fullScreen = shown->visibility() == QWindow::FullScreen,
                            .upright = shown->height() > shown->width(),
                            .portraitScreen = m_stage->portrait()};
    shown->setProperty("turn", turnOf(m_turn, state));
}

void MainWindow::lookAtKeyboard() {
    auto* shown = window();
    if (!shown) return;
    const auto* const input = QGuiApplication::inputMethod();
    const auto* const field = shown->activeFocusItem();
    double shift = 0;
    if (field && field->flags().testFlag(QQuickItem::ItemAcceptsInputMethod) && input->isVisible()) {
        const auto where = field->mapRectToScene(field->boundingRect());
        shift = shiftToUncover(where.translated(0, shown->property("shift").toDouble()),
                               input->keyboardRectangle());
    }
    shown->setProperty("shift", shift);
}

QQuickWindow* MainWindow::window() const {
    const auto roots = m_engine.rootObjects();
    return roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.first());
}

}  // namespace torv
