#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QString>
#include <string_view>

#include "platform/UserDefaults.h"

namespace torv {

/// How the whole window looks by day and by night, and whether warnings are heard. Stored with each choice.
/// Main thread.
class DisplayChoices final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(double shade READ shade NOTIFY changed)
    Q_PROPERTY(bool contrast READ contrast NOTIFY changed)

public:
    enum class Brightness { full, dim, night };

    /// As it was stored. The store outlives it.
    explicit DisplayChoices(UserDefaults& store);

    [[nodiscard]] Brightness brightness() const { return m_brightness; }
    [[nodiscard]] QString brightnessText() const;
    /// Full, dim, night, and full again.
    void nextBrightness();
    /// How much of the light is taken away, 0 to 1.
    [[nodiscard]] double shade() const;
    /// For sunlight: black ground without pictures, and brighter letters.
    [[nodiscard]] bool contrast() const { return m_contrast; }
    void setContrast(bool high);
    [[nodiscard]] bool sounds() const;
    void setSounds(bool on);

signals:
    void changed();

private:
    void keep(Value value, std::string_view key);

    UserDefaults& m_store;
    Brightness m_brightness = Brightness::full;
    bool m_contrast = false;
};

}  // namespace torv
