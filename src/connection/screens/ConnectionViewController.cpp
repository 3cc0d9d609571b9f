#include "connection/screens/ConnectionViewController.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Platform.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds lookInterval{500};

QString picture(ConnectionLine::Verdict verdict) {
    switch (verdict) {
        case ConnectionLine::Verdict::good:
            return QStringLiteral("LINK_GOOD.png");
        case ConnectionLine::Verdict::bad:
            return QStringLiteral("LINK_BAD.png");
        case ConnectionLine::Verdict::open:
            break;
    }
    return QStringLiteral("LINK_OPEN.png");
}

std::string textOf(const ConnectionLine& line) {
    return line.advice.empty() ? line.state : line.state + ". " + line.advice;
}

// Points, with the subject above.
constexpr double heightOfOneLine = 48;
constexpr double heightOfTwoLines = 64;
constexpr std::size_t lettersOfOneLine = 66;  // on the narrowest stage
bool isLong(const ConnectionLine& line) {
    return textOf(line).size() > lettersOfOneLine;
}

}  // namespace

ConnectionViewController::ConnectionViewController(std::shared_ptr<iTorvAppDelegate> application,
                                                   DisplayChoices& display)
    : m_application(std::move(application)), m_display(display) {
    connect(&m_display, &DisplayChoices::changed, this, [this] { refresh(); });
}

ConnectionViewController::~ConnectionViewController() {
    if (m_timer) m_timer->invalidate();
}

void ConnectionViewController::viewDidLoad() {
    setTitle(QStringLiteral("Connection"));
    m_hasSettings = Platform::current().wirelessNetworks().canOpenSettings();
    setLeftBarButton(std::make_unique<BarButtonItem>(QStringLiteral("Close"),
                                                     [this] { dismissModalViewControllerAnimated(true); }));
    setRightBarButton(std::make_unique<BarButtonItem>(QStringLiteral("Brightness"),
                                                      [this] { m_display.nextBrightness(); }));
    refresh();
}

void ConnectionViewController::viewWillAppear() {
    refresh();
    TableViewController::viewWillAppear();
    if (m_timer) m_timer->invalidate();
    m_timer = Platform::current().runLoop().scheduleTimer(lookInterval, true,
                                                          [this, self = weak_from_this()](Timer&) {
                                                              if (const auto alive = self.lock()) refresh();
                                                          });
}

void ConnectionViewController::viewWillDisappear() {
    if (m_timer) m_timer->invalidate();
}

/// Rows that are there change in place, so that the list stays where it is; new events are new rows.
void ConnectionViewController::refresh() {
    auto& platform = Platform::current();
    auto facts = connectionFacts(m_application->feeder()->driver(), m_application->statistics(),
                                 platform.networkInterfaces(), platform.runLoop().now());
    const auto interface = facts.route ? facts.route->interface : std::string {};
    askOfWireless(interface);
    facts.wireless = m_wireless;
    auto lines = connectionReport(facts);
    const bool same = m_events.size() == facts.figures.events.size() &&
                      std::ranges::equal(m_lines, lines, {}, &isLong, &isLong);
    m_lines = std::move(lines);
    m_events = std::move(facts.figures.events);
    if (!same) return reloadData();
    for (int section = report; section <= device; ++section) {
        for (int row = 0; row < numberOfRowsInSection(section); ++row) {
            auto* const cell = cellAt({section, row});
            if (!cell) continue;
            const auto index = static_cast<std::size_t>(row);
            if (section == report) {
                fill(*cell, m_lines[index]);
            } else if (section == events) {
                fill(*cell, m_events[index]);
            } else {
                fillDisplay(*cell, row);
            }
        }
    }
}

/// One question at a time; the answer is shown with the next look.
void ConnectionViewController::askOfWireless(const std::string& interface) {
    if (std::exchange(m_askedOf, interface) != interface) m_wireless.reset();
    if (interface.empty() || m_asking) return;
    m_asking = true;
    Platform::current().wirelessNetworks().ask(interface, [self = weak_from_this(), interface](auto network) {
        const auto alive = std::dynamic_pointer_cast<ConnectionViewController>(self.lock());
        if (!alive) return;
        alive->m_asking = false;
        if (alive->m_askedOf == interface) alive->m_wireless = std::move(network);
    });
}

int ConnectionViewController::numberOfRowsInSection(int section) {
    if (section == report) return static_cast<int>(m_lines.size());
    if (section == events) return static_cast<int>(m_events.size());
    return m_hasSettings ? 4 : 3;
}

QString ConnectionViewController::titleForHeaderInSection(int section) {
    if (section == events) return m_events.empty() ? QString{} : QStringLiteral("Last events");
    return section == device ? QStringLiteral("This device") : QString{};
}

double ConnectionViewController::heightForRowAtIndexPath(IndexPath path) {
    if (path.section != report) return usualRowHeight;
    return isLong(m_lines[static_cast<std::size_t>(path.row)]) ? heightOfTwoLines : heightOfOneLine;
}

void ConnectionViewController::fill(TableViewCell& cell, const ConnectionLine& line) const {
    cell.setImage(picture(line.verdict));
    cell.setText(QString::fromStdString(line.subject));
    cell.setDetailText(QString::fromStdString(textOf(line)));
    cell.setDimmed(line.verdict == ConnectionLine::Verdict::open);
}

void ConnectionViewController::fill(TableViewCell& cell, const LinkStatistics::Event& event) const {
    const auto times = event.times > 1 ? " (" + std::to_string(event.times) + " times)" : std::string{};
    cell.setText(QString::fromStdString(event.text + times));
    cell.setDetailText(QString::fromStdString(clockText(event.when)));
}

void ConnectionViewController::fillDisplay(TableViewCell& cell, int row) const {
    if (row == brightness) cell.setDetailText(m_display.brightnessText());
    auto* const withSwitch = qobject_cast<SwitchTableViewCell*>(&cell);
    if (withSwitch) withSwitch->on(row == contrast ? m_display.contrast() : m_display.sounds());
}

std::shared_ptr<TableViewCell> ConnectionViewController::cellForRowAtIndexPath(IndexPath path) {
    using Style = TableViewCell::Style;
    const auto index = static_cast<std::size_t>(path.row);
    if (path.section == report) {
        auto cell = std::make_shared<TableViewCell>(Style::Subtitle, QStringLiteral("Line"));
        fill(*cell, m_lines[index]);
        return cell;
    }
    if (path.section == events) {
        auto cell = std::make_shared<TableViewCell>(Style::ValueBesideTitle, QStringLiteral("Event"));
        fill(*cell, m_events[index]);
        return cell;
    }
    std::shared_ptr<TableViewCell> cell;
    if (path.row == contrast || path.row == sound) {
        auto withSwitch = std::make_shared<SwitchTableViewCell>(Style::Plain, QStringLiteral("Switch"));
        withSwitch->setDelegate(this);
        withSwitch->setTag(path.row);
        cell = withSwitch;
    } else {
        cell = std::make_shared<TableViewCell>(Style::ValueBesideTitle, QStringLiteral("Choice"));
    }
    constexpr std::array texts{"Brightness", "High contrast", "Sound at warnings", "Wi-Fi settings"};
    cell->setText(QString::fromLatin1(texts[index]));
    if (path.row == wirelessSettings) cell->setAccessory(TableViewCell::Accessory::Disclosure);
    fillDisplay(*cell, path.row);
    return cell;
}

bool ConnectionViewController::shouldHighlightRowAtIndexPath(IndexPath path) {
    return path.section == device && (path.row == brightness || path.row == wirelessSettings);
}

void ConnectionViewController::didSelectRowAtIndexPath(IndexPath path) {
    deselectRow();
    if (path.section != device) return;
    if (path.row == brightness) m_display.nextBrightness();
    if (path.row != wirelessSettings || Platform::current().wirelessNetworks().openSettings()) return;
    showAlert(std::make_shared<AlertView>(QStringLiteral("Wi-Fi settings"),
                                          QStringLiteral("The system's settings could not be opened."),
                                          QStringList{QStringLiteral("OK")}));
}

void ConnectionViewController::switchTableViewCellDidChangedValue(SwitchTableViewCell& cell, bool on) {
    if (cell.tag() == contrast) m_display.setContrast(on);
    if (cell.tag() == sound) m_display.setSounds(on);
}

}  // namespace torv

#include "moc_ConnectionViewController.cpp"
