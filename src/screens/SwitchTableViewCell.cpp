#include "screens/SwitchTableViewCell.h"

#include "screens/Touch.h"

namespace torv {

void SwitchTableViewCell::on(bool on) {
    if (m_on == on) return;
    m_on = on;
    emit switchChanged();
}

void SwitchTableViewCell::enable(bool enabled) {
    if (m_enabled == enabled) return;
    m_enabled = enabled;
    emit switchChanged();
}

void SwitchTableViewCell::setOffsetFromRight(std::int64_t points) {
    if (m_offsetFromRight == points) return;
    m_offsetFromRight = points;
    emit switchChanged();
}

void SwitchTableViewCell::touchSwitch() {
    queueTouch(this, [](SwitchTableViewCell& self) {
        if (!self.m_enabled) return;
        self.on(!self.m_on);
        if (self.m_delegate) self.m_delegate->switchTableViewCellDidChangedValue(self, self.m_on);
    });
}

}  // namespace torv

#include "moc_SwitchTableViewCell.cpp"
