#include "screens/TableViewCell.h"

#include <utility>

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
    assign(m_detailText, text, &TableViewCell::detailTextChanged);
}
void TableViewCell::setAccessory(Accessory a) {
    assign(m_accessory, a, &TableViewCell::accessoryChanged);
}
void TableViewCell::setDimmed(bool dimmed) {
    assign(m_dimmed, dimmed, &TableViewCell::dimmedChanged);
}
void TableViewCell::setAlarming(bool alarming) {
    assign(m_alarming, alarming, &TableViewCell::alarmingChanged);
}

}  // namespace torv
