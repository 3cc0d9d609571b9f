#include "tuning/screens/PassReportViewController.h"

#include <utility>

#include "control/PassReportAlert.h"
#include "platform/StoredKeys.h"
#include "screens/NavigationController.h"

namespace torv {

PassReportViewController::PassReportViewController(std::shared_ptr<iTorvAppDelegate> application,
                                                   const QString& profile, PassReport report)
    : m_application(std::move(application)), m_push(m_application, *this), m_report(std::move(report)) {
    setTitle(profile);
}

void PassReportViewController::viewDidLoad() {
    setRightBarButton(std::make_unique<BarButtonItem>("Try these again", [this] { tryAgain(); }));
    if (!navigationController() || navigationController()->depth() > 1) return;
    setLeftBarButton(
        std::make_unique<BarButtonItem>("Close", [this] { dismissModalViewControllerAnimated(true); }));
}

TableSectionView PassReportViewController::viewForHeaderInSection(int) {
    return {.text = QString::fromStdString(m_report.summary()), .fontSize = 14};
}

std::shared_ptr<TableViewCell> PassReportViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Subtitle, identifier);
    const auto& row = m_report.rows[static_cast<std::size_t>(path.row)];
    cell->setText(QString::fromStdString(row.name));
    cell->setDetailText(QString::fromStdString(sentenceFor(row)));
    return cell;
}

void PassReportViewController::tryAgain() {
    const auto self = shared_from_this();  // the pass blocks, and the screen may be left meanwhile
    if (auto alert = m_application->alertDuringPass()) return showAlert(std::move(alert));
    auto report = m_push.run([this](Activation& activation, const auto& progress, const auto& cancelled) {
        if (m_report.isReset) return activation.push(std::string{defaultProfileName}, progress, cancelled);
        return activation.pushAgain(m_report.wanted, progress, cancelled);
    });
    static_cast<void>(m_push.takeCancel());
    m_report = m_report.after(std::move(report));
    if (m_report.rows.empty()) setRightBarButton(nullptr);
    reloadData();
}

void showPassReport(ViewController& screen, const std::shared_ptr<iTorvAppDelegate>& application,
                    const QString& profile, const PassReport& report) {
    if (report.isClean()) return;
    const auto list = [application, profile](const PassReport& told) {
        return std::make_shared<PassReportViewController>(application, profile, told);
    };
    if (report.rows.empty() || !screen.isOnTop())
        return screen.showAlert(passReportAlert(screen, profile, report, list));
    screen.navigationController()->pushViewControllerAnimated(list(report), true);
}

}  // namespace torv

#include "moc_PassReportViewController.cpp"
