#pragma once

#include "screens/TableViewCell.h"

namespace torv {

class TappableLabelTableViewCell;

/// Hears of a touch on the second text. Main thread.
class TappableLabelTableViewCellDelegate {
public:
    TappableLabelTableViewCellDelegate() = default;
    TappableLabelTableViewCellDelegate(const TappableLabelTableViewCellDelegate&) = delete;
    TappableLabelTableViewCellDelegate& operator=(const TappableLabelTableViewCellDelegate&) = delete;
    virtual ~TappableLabelTableViewCellDelegate() = default;

    virtual void tappableLabelTableViewCellDidChange(TappableLabelTableViewCell& cell) = 0;
};

/// A row with a second text at its right, which can be touched by itself. Main thread. The delegate is not
/// owned.
class TappableLabelTableViewCell final : public torv::TableViewCell {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString additionalLabel READ additionalLabel NOTIFY labelChanged)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY labelChanged)

public:
    TappableLabelTableViewCell(Style style, const QString& reuseIdentifier)
        : TableViewCell(style, reuseIdentifier) {}

    [[nodiscard]] QString control() const override { return QStringLiteral("LabelControl.qml"); }
    bool activate() override {
        touchLabel();
        return true;
    }
    void setDelegate(TappableLabelTableViewCellDelegate* delegate) { m_delegate = delegate; }
    [[nodiscard]] QString additionalLabel() const { return m_additionalLabel; }
    void setAdditionalLabel(const QString& text);
    [[nodiscard]] bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);

    Q_INVOKABLE void touchLabel();

signals:
    void labelChanged();

private:
    TappableLabelTableViewCellDelegate* m_delegate = nullptr;
    QString m_additionalLabel;
    bool m_enabled = true;
};

}  // namespace torv
