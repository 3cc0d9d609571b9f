#pragma once

#include <cstdint>

#include "screens/TableViewCell.h"

namespace torv {

class SwitchTableViewCell;

/// Hears of a touch on the switch, with its new state. Main thread.
class SwitchTableViewCellDelegate {
public:
    SwitchTableViewCellDelegate() = default;
    SwitchTableViewCellDelegate(const SwitchTableViewCellDelegate&) = delete;
    SwitchTableViewCellDelegate& operator=(const SwitchTableViewCellDelegate&) = delete;
    virtual ~SwitchTableViewCellDelegate() = default;

    virtual void switchTableViewCellDidChangedValue(SwitchTableViewCell& cell, bool on) = 0;
};

/// A row with a switch. Main thread. The delegate is not owned.
class SwitchTableViewCell final : public torv::TableViewCell {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(bool on READ isOn NOTIFY switchChanged)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY switchChanged)
    Q_PROPERTY(int offsetFromRight READ offsetFromRight NOTIFY switchChanged)

public:
    SwitchTableViewCell(Style style, const QString& reuseIdentifier)
        : TableViewCell(style, reuseIdentifier) {}

    [[nodiscard]] QString control() const override { return QStringLiteral("SwitchControl.qml"); }
    bool activate() override {
        touchSwitch();
        return true;
    }
    void setDelegate(SwitchTableViewCellDelegate* delegate) { m_delegate = delegate; }
    [[nodiscard]] bool isOn() const { return m_on; }
    /// Without a word to the delegate.
    void on(bool on);
    [[nodiscard]] bool isEnabled() const { return m_enabled; }
    void enable(bool enabled);
    /// Points between the switch and the row's right edge.
    [[nodiscard]] int offsetFromRight() const { return static_cast<int>(m_offsetFromRight); }
    void setOffsetFromRight(std::int64_t points);

    Q_INVOKABLE void touchSwitch();

signals:
    void switchChanged();

private:
    SwitchTableViewCellDelegate* m_delegate = nullptr;
    bool m_on = false;
    bool m_enabled = true;
    std::int64_t m_offsetFromRight = 0;
};

}  // namespace torv
