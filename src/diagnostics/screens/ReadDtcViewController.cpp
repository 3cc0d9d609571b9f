#include "diagnostics/screens/ReadDtcViewController.h"

#include <algorithm>

#include "diagnostics/TroubleCodeDatabase.h"
#include "diagnostics/TroubleCodeFile.h"
#include "diagnostics/screens/DTCDataViewController.h"
#include "platform/Log.h"
#include "screens/MailComposeViewController.h"
#include "screens/NavigationController.h"

namespace torv {
namespace {

constexpr int saveButton = 1;

}  // namespace

void ReadDtcViewController::viewDidLoad() {
    setTitle(QStringLiteral("Read DTC's"));
    std::string error;
    const auto dataDict = TroubleCodeDatabase::load(error);
    if (!dataDict) failAssertion(error);
    m_report = TroubleCodeReport::fromStore(*m_feeder, m_begun, *dataDict);
    m_fresh = static_cast<int>(std::ranges::count(m_report.rows, false, &TroubleCodeReport::Row::old));
    m_readAt = TroubleCodeReport::WallClock::now();
    if (m_report.rows.empty()) return;
    const bool canMail = MailComposeViewController::canSendMail();
    setRightBarButton(canMail ? std::make_unique<BarButtonItem>("Share", [this] { share(); })
                              : std::make_unique<BarButtonItem>("Save to file", [this] { saveToFile(); }));
}

int ReadDtcViewController::numberOfRowsInSection(int section) {
    const auto old = static_cast<int>(m_report.rows.size()) - m_fresh;
    return section == 0 && m_fresh > 0 ? m_fresh : old;
}

const TroubleCodeReport::Row& ReadDtcViewController::row(IndexPath path) const {
    const int before = path.section == 0 ? 0 : m_fresh;
    return m_report.rows[static_cast<std::size_t>(path.row) + static_cast<std::size_t>(before)];
}

TableSectionView ReadDtcViewController::viewForHeaderInSection(int section) {
    const bool isOld = m_report.hasOldRows() && section + 1 == numberOfSections();
    if (!isOld) return {};
    return {.text = QString::fromStdString(m_report.lastAnswerText()), .fontSize = 14};
}

std::shared_ptr<TableViewCell> ReadDtcViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Plain, identifier);
    const auto& shown = row(path);
    cell->setText(QString::fromStdString(shown.text()));
    cell->setAccessory(shown.description ? TableViewCell::Accessory::Disclosure
                                         : TableViewCell::Accessory::None);
    cell->setDimmed(shown.old || shown.code.empty());
    return cell;
}

bool ReadDtcViewController::shouldHighlightRowAtIndexPath(IndexPath path) {
    return row(path).description.has_value();
}

void ReadDtcViewController::didSelectRowAtIndexPath(IndexPath path) {
    deselectRow();
    const auto& chosen = row(path);
    if (!chosen.description || !navigationController()) return;
    navigationController()->pushViewControllerAnimated(
        std::make_shared<DTCDataViewController>(QString::fromStdString(chosen.code),
                                                QString::fromStdString(*chosen.description)),
        true);
}

void ReadDtcViewController::share() {
    const auto document = m_report.document(m_vehicleName, m_readAt);
    MailComposeViewController mail;
    mail.setSubject("Trouble codes of " + m_vehicleName);
    mail.addAttachmentDataMimeTypeFileName({document.begin(), document.end()}, "text/plain",
                                           "iTorv-codes-" + m_vehicleName + ".txt");
    if (mail.present()) return;
    auto alert =
        std::make_shared<AlertView>("The mail can't be written", "The mail program could not be started.",
                                    QStringList{"Cancel", "Save to file"});
    alert->setDismissedHandler([weak = weak_from_this()](int index) {
        const auto screen = std::dynamic_pointer_cast<ReadDtcViewController>(weak.lock());
        if (screen && index == saveButton) screen->saveToFile();
    });
    showAlert(std::move(alert));
}

void ReadDtcViewController::saveToFile() {
    std::string error;
    const auto file = saveTroubleCodes(m_report.document(m_vehicleName, m_readAt), m_readAt, error);
    if (file) return tell("Saved", "The codes are in " + QString::fromStdString(file->string()));
    tell("Not saved", QString::fromStdString(error));
}

void ReadDtcViewController::tell(const QString& title, const QString& message) {
    showAlert(std::make_shared<AlertView>(title, message, QStringList{"OK"}));
}

}  // namespace torv
