#pragma once

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace torv {

/// What one row of a table shows. Main thread; a setter tells the look only what has really changed.
class TableViewCell : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    Q_PROPERTY(QString detailText READ detailText NOTIFY detailTextChanged)
    Q_PROPERTY(Style style READ style CONSTANT)
    Q_PROPERTY(Accessory accessory READ accessory NOTIFY accessoryChanged)
    Q_PROPERTY(bool dimmed READ dimmed NOTIFY dimmedChanged)
    Q_PROPERTY(bool alarming READ alarming NOTIFY alarmingChanged)

public:
    enum class Style { Plain, ValueBesideTitle, Subtitle };
    Q_ENUM(Style)
    enum class Accessory { None, Disclosure, Detail };
    Q_ENUM(Accessory)

    explicit TableViewCell(Style style, QString reuseIdentifier);

    [[nodiscard]] const QString& reuseIdentifier() const { return m_reuseIdentifier; }
    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString& text);
    [[nodiscard]] QString detailText() const { return m_detailText; }
    void setDetailText(const QString& text);
    [[nodiscard]] Style style() const { return m_style; }
    [[nodiscard]] Accessory accessory() const { return m_accessory; }
    void setAccessory(Accessory accessory);
    /// Gray instead of the usual text colour.
    [[nodiscard]] bool dimmed() const { return m_dimmed; }
    void setDimmed(bool dimmed);
    /// The detail text in the colour of a warning.
    [[nodiscard]] bool alarming() const { return m_alarming; }
    void setAlarming(bool alarming);

signals:
    void textChanged();
    void detailTextChanged();
    void accessoryChanged();
    void dimmedChanged();
    void alarmingChanged();

private:
    template <class Member>
    void assign(Member& member, const Member& value, void (TableViewCell::*changed)());

    const Style m_style;
    const QString m_reuseIdentifier;
    QString m_text;
    QString m_detailText;
    Accessory m_accessory = Accessory::None;
    bool m_dimmed = false;
    bool m_alarming = false;
};

}  // namespace torv
