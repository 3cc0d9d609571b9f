#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QString>
#include <QStringList>

namespace torv {

/// What one row of a table shows. Main thread; a setter tells the look only what has really changed.
///
/// From left to right: an image, the texts, a control of a derived cell, marks, and the accessory. An
/// activity indicator takes the place of marks and accessory.
class TableViewCell : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    Q_PROPERTY(QString detailText READ detailText NOTIFY detailTextChanged)
    Q_PROPERTY(QString number READ number NOTIFY detailTextChanged)
    Q_PROPERTY(QString unit READ unit NOTIFY detailTextChanged)
    Q_PROPERTY(QString note READ note NOTIFY noteChanged)
    Q_PROPERTY(Style style READ style CONSTANT)
    Q_PROPERTY(Accessory accessory READ accessory NOTIFY accessoryChanged)
    Q_PROPERTY(QString image READ image NOTIFY accessoryChanged)
    Q_PROPERTY(QStringList marks READ marks NOTIFY accessoryChanged)
    Q_PROPERTY(bool busy READ busy NOTIFY accessoryChanged)
    Q_PROPERTY(QString control READ control CONSTANT)
    Q_PROPERTY(bool dimmed READ dimmed NOTIFY dimmedChanged)
    Q_PROPERTY(bool alarming READ alarming NOTIFY alarmingChanged)
    Q_PROPERTY(bool selected READ selected NOTIFY selectedChanged)

public:
    enum class Style { Plain, ValueBesideTitle, Subtitle };
    Q_ENUM(Style)
    /// A disclosure mark says that the row leads on; a detail button can be touched by itself.
    enum class Accessory { None, Disclosure, Detail };
    Q_ENUM(Accessory)

    explicit TableViewCell(Style style, QString reuseIdentifier);

    [[nodiscard]] const QString& reuseIdentifier() const { return m_reuseIdentifier; }
    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString& text);
    [[nodiscard]] QString detailText() const { return m_detailText; }
    void setDetailText(const QString& text);
    /// A detail text of a number, a blank and its unit; the look shows the number in its own digits.
    void setDetailValue(const QString& number, const QString& unit);
    [[nodiscard]] QString number() const { return m_number; }
    [[nodiscard]] QString unit() const { return m_number.isEmpty() ? QString{} : m_unit; }
    /// A word of warning behind the detail text.
    [[nodiscard]] QString note() const { return m_note; }
    void setNote(const QString& note);
    [[nodiscard]] Style style() const { return m_style; }
    [[nodiscard]] Accessory accessory() const { return m_accessory; }
    void setAccessory(Accessory accessory);
    /// Pictures by the names that they ship under: "checkmark.png"; `image` is the picture's address.
    [[nodiscard]] const QString& imageName() const { return m_image; }
    [[nodiscard]] QString image() const;
    void setImage(const QString& name);
    [[nodiscard]] QStringList marks() const;
    void setMarks(const QStringList& names);
    [[nodiscard]] bool busy() const { return m_busy; }
    void setBusy(bool busy);
    /// The file of the look that draws the control of a derived cell; empty for none.
    [[nodiscard]] virtual QString control() const { return {}; }
    /// The keyboard's way to that control; false when there is none, and the row itself is meant.
    virtual bool activate() { return false; }
    /// Gray instead of the usual text colour.
    [[nodiscard]] bool dimmed() const { return m_dimmed; }
    void setDimmed(bool dimmed);
    /// The detail text in the colour of a warning.
    [[nodiscard]] bool alarming() const { return m_alarming; }
    void setAlarming(bool alarming);
    /// Kept by the table.
    [[nodiscard]] bool selected() const { return m_selected; }
    void setSelected(bool selected);
    /// Free for the screen, which keeps a row number here.
    [[nodiscard]] std::int32_t tag() const { return m_tag; }
    virtual void setTag(std::int32_t tag) { m_tag = tag; }

signals:
    void textChanged();
    void detailTextChanged();
    void noteChanged();
    void accessoryChanged();
    void dimmedChanged();
    void alarmingChanged();
    void selectedChanged();

private:
    template <class Member>
    void assign(Member& member, const Member& value, void (TableViewCell::*changed)());

    const Style m_style;
    const QString m_reuseIdentifier;
    QString m_text;
    QString m_detailText;
    QString m_number;  // empty for a detail text that is no number
    QString m_unit;
    QString m_note;
    Accessory m_accessory = Accessory::None;
    QString m_image;
    QStringList m_marks;
    bool m_busy = false;
    bool m_dimmed = false;
    bool m_alarming = false;
    bool m_selected = false;
    std::int32_t m_tag = 0;
};

}  // namespace torv
