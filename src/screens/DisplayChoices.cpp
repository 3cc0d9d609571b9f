#include "screens/DisplayChoices.h"

#include <algorithm>
#include <array>

#include "platform/StoredKeys.h"

namespace torv {
namespace {

struct Step {
    const char* text;
    double shade;
};
constexpr std::array<Step, 3> steps{{{"Full", 0.0}, {"Dim", 0.45}, {"Night", 0.75}}};

const Step& stepOf(DisplayChoices::Brightness brightness) {
    return steps[static_cast<std::size_t>(brightness)];
}

}  // namespace

DisplayChoices::DisplayChoices(UserDefaults& store)
    : m_store(store),
      m_brightness(static_cast<Brightness>(
          std::clamp(store.objectForKey(brightnessKey).intValue(), 0, static_cast<int>(steps.size()) - 1))),
      m_contrast(store.objectForKey(contrastKey).boolValue()) {}

QString DisplayChoices::brightnessText() const {
    return QString::fromLatin1(stepOf(m_brightness).text);
}

void DisplayChoices::nextBrightness() {
    const auto next = (static_cast<std::size_t>(m_brightness) + 1) % steps.size();
    m_brightness = static_cast<Brightness>(next);
    keep(Number::fromInteger(static_cast<std::int64_t>(next)), brightnessKey);
    emit changed();
}

double DisplayChoices::shade() const {
    return stepOf(m_brightness).shade;
}

void DisplayChoices::keep(Value value, std::string_view key) {
    m_store.setObjectForKey(std::move(value), key);
    m_store.synchronize();
}

void DisplayChoices::setContrast(bool high) {
    if (m_contrast == high) return;
    m_contrast = high;
    keep(high, contrastKey);
    emit changed();
}

bool DisplayChoices::sounds() const {
    return m_store.objectForKey(warningSoundKey).boolValue();
}

void DisplayChoices::setSounds(bool on) {
    keep(on, warningSoundKey);
}

}  // namespace torv

#include "moc_DisplayChoices.cpp"
