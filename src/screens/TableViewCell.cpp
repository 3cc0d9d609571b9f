#include "screens/TableViewCell.h"

#include <algorithm>
#include <utility>

#include "screens/Image.h"
#include "screens/Ownership.h"

namespace torv {

TableViewCell::TableViewCell(Style style, QString reuseIdentifier)
    : m_style(style), m_reuseIdentifier(std::move(reuseIdentifier)) {
    keepOwnership(*this);
}

template <class Member>
void TableViewCell::assign(Member& member, const Member& value, void (TableViewCell::*changed)()) {
    if (member == value) return;
    member = value;
    emit(this->*changed)();
}

void TableViewCell::setText(const QString& text) {
    assign(m_text, text, &TableViewCell::textChanged);
}
void TableViewCell::setDetailText(const QString& text) {
    m_number.clear();
    assign(m_detailText, text, &TableViewCell::detailTextChanged);
}
void TableViewCell::setDetailValue(const QString& number, const QString& unit) {
    const auto isDigit = [](QChar sign) {
        return (sign >= u'0' && sign <= u'9') || sign == u'.' || sign == u'-';
    };
    m_number = std::all_of(number.begin(), number.end(), isDigit) ? number : QString{};
    m_unit = unit;
    assign(m_detailText, number + u' ' + unit, &TableViewCell::detailTextChanged);
}
void TableViewCell::setNote(const QString& note) {
    assign(m_note, note, &TableViewCell::noteChanged);
}
void TableViewCell::setAccessory(Accessory accessory) {
    assign(m_accessory, accessory, &TableViewCell::accessoryChanged);
}
void TableViewCell::setImage(const QString& name) {
    assign(m_image, name, &TableViewCell::accessoryChanged);
}
void TableViewCell::setMarks(const QStringList& names) {
    assign(m_marks, names, &TableViewCell::accessoryChanged);
}
void TableViewCell::setBusy(bool busy) {
    assign(m_busy, busy, &TableViewCell::accessoryChanged);
}
void TableViewCell::setDimmed(bool dimmed) {
    assign(m_dimmed, dimmed, &TableViewCell::dimmedChanged);
}
void TableViewCell::setAlarming(bool alarming) {
    assign(m_alarming, alarming, &TableViewCell::alarmingChanged);
}
void TableViewCell::setSelected(bool selected) {
    assign(m_selected, selected, &TableViewCell::selectedChanged);
}

QString TableViewCell::image() const {
    return m_image.isEmpty() ? QString{} : imageNamed(m_image).source;
}

QStringList TableViewCell::marks() const {
    QStringList sources;
    for (const auto& name : m_marks)
        sources.push_back(imageNamed(name).source);
    return sources;
}

}  // namespace torv

#include "moc_TableViewCell.cpp"
