#include "diagnostics/screens/ReadDtcViewController.h"

#include <algorithm>

#include "diagnostics/TroubleCodeDatabase.h"
#include "diagnostics/screens/DTCDataViewController.h"
#include "platform/Log.h"
#include "screens/DocumentExport.h"
#include "screens/NavigationController.h"

namespace torv {
void ReadDtcViewController::viewDidLoad() {
    setTitle(QStringLiteral("Read DTC's"));
    std::string error;
    const auto dataDict = TroubleCodeDatabase::load(error);
    if (!dataDict) failAssertion(error);
    m_report = TroubleCodeReport::fromStore(*m_feeder, m_begun, *dataDict);
    m_fresh = static_cast<int>(std::ranges::count(m_report.rows, false, &TroubleCodeReport::Row::old));
    m_readAt = TroubleCodeReport::WallClock::now();
    if (m_report.rows.empty() && !m_report.answered) return;
    BarButtons buttons;
    if (canSendMail()) buttons.push_back(std::make_unique<BarButtonItem>("Share", [this] { share(); }));
    buttons.push_back(
        std::make_unique<BarButtonItem>("Save to file", [this] { saveDocument(*this, document()); }));
    setRightBarButtons(std::move(buttons));
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

Document ReadDtcViewController::document() const {
    const auto text = m_report.document(m_vehicleName, m_recording, m_readAt);
    return {.fileName = "iTorv-codes-" + m_vehicleName + ".txt",
            .mimeType = "text/plain",
            .contents = {text.begin(), text.end()}};
}

void ReadDtcViewController::share() {
    mailDocument(*this, "Trouble codes of " + m_vehicleName, document());
}

}  // namespace torv

#include "moc_ReadDtcViewController.cpp"
