#include "diagnostics/screens/GroupsViewController.h"

#include <algorithm>
#include <utility>

namespace torv {
namespace {

std::string topicOf(const std::string& category) {
    return category.substr(0, category.find('_'));
}

}  // namespace

GroupsViewController::GroupsViewController(Vehicle currentVehicle, std::shared_ptr<iTorvFeeder> feeder)
    : m_currentVehicle(std::move(currentVehicle)), m_feeder(std::move(feeder)) {}

void GroupsViewController::viewDidLoad() {
    setTitle(QStringLiteral("Diagnostics"));
    m_attributes = m_currentVehicle.sensors();
    for (const auto& attribute : m_attributes) {
        if (!attribute.category) continue;
        const auto topic = topicOf(*attribute.category);
        if (std::find(m_topicarray.begin(), m_topicarray.end(), topic) == m_topicarray.end()) {
            m_topicarray.push_back(topic);
        }
        m_datadict[topic].push_back(attribute);
    }
}

int GroupsViewController::numberOfRowsInSection(int section) {
    return static_cast<int>(m_datadict[m_topicarray[static_cast<std::size_t>(section)]].size());
}

QString GroupsViewController::titleForHeaderInSection(int section) {
    return QString::fromStdString(m_topicarray[static_cast<std::size_t>(section)]);
}

std::shared_ptr<TableViewCell> GroupsViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = std::dynamic_pointer_cast<CustomCell>(dequeueReusableCell(identifier));
    if (!cell) cell = std::make_shared<CustomCell>(m_feeder, identifier);
    const auto& topic = m_topicarray[static_cast<std::size_t>(path.section)];
    const auto category = topic + '_' + std::to_string(path.row);
    for (const auto& attribute : m_datadict[topic]) {
        if (attribute.category == category) cell->initWithAttribute(attribute);
    }
    return cell;
}

QString GroupsViewController::emptyText() const {
    return QStringLiteral("This vehicle lists no sensors by topic.");
}

}  // namespace torv

#include "moc_GroupsViewController.cpp"
