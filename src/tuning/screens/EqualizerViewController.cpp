#include "tuning/screens/EqualizerViewController.h"

#include <algorithm>
#include <utility>

#include "screens/NavigationController.h"
#include "screens/TypedNumber.h"
#include "support/TextNumbers.h"
#include "tuning/screens/ExactValue.h"

namespace torv {
namespace {

// Points. The labelled scale stands as high as those of the bands, which begin below the screen's top.
constexpr double stripTop = 32;
constexpr double labelledLeft = 10;
constexpr double labelledWidth = 20;
constexpr double labelledTop = 73;
constexpr double labelledBottom = 51;

}  // namespace

EqualizerViewController::EqualizerViewController(TorvAttributeGroup group,
                                                 std::vector<AVFormatterData> values)
    : m_group(std::move(group)), m_values(std::move(values)) {
    m_values.resize(m_group.items.size());
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        auto knob = std::make_unique<EqualizerKnobView>();
        knob->configureForSettingInGroupWithValue(m_group.items[i], m_group, m_values[i]);
        connect(knob.get(), &EqualizerKnobView::tuneRequested, this, [this, i] { didRequestTuneForKnob(i); });
        m_knobs.push_back(std::move(knob));
    }
}

void EqualizerViewController::viewDidLoad() {
    setTitle(QString::fromStdString(m_group.name.value_or(std::string{})));
    setRightBarButton(std::make_unique<BarButtonItem>("Save", [this] { didRequestSave(); }));
}

QVariantList EqualizerViewController::knobObjects() const {
    QVariantList objects;
    for (const auto& knob : m_knobs)
        objects.push_back(QVariant::fromValue(knob.get()));
    return objects;
}

void EqualizerViewController::setHeight(double height) {
    if (std::exchange(m_height, height) == height) return;
    for (const auto& knob : m_knobs)
        knob->setHeight(std::max(m_height - stripTop, 0.0));
    emit laidOut();
}

QRectF EqualizerViewController::scaleFrame() const {
    return {labelledLeft, labelledTop, labelledWidth, std::max(m_height - labelledTop - labelledBottom, 0.0)};
}

QList<EqualizerTick> EqualizerViewController::ticks() const {
    return equalizerTicks({m_group.lowValue, m_group.highValue, m_group.defaultValue}, scaleFrame().size(),
                          true);
}

QString EqualizerViewController::maximum() const {
    return QString::fromStdString(fixedText(m_group.highValue, 0));
}

QString EqualizerViewController::unit() const {
    return m_group.items.empty() ? QString{} : QString::fromStdString(unitText(m_group.items.front().unit));
}

void EqualizerViewController::didRequestSave() {
    const auto self = shared_from_this();
    if (m_delegate) m_delegate->didRequestSaveValuesForEqualizer(*this);
}

void EqualizerViewController::didRequestTuneForKnob(std::size_t band) {
    auto* const stack = navigationController();
    if (!stack || stack->topViewController() != this) return;
    stack->pushViewControllerAnimated(
        exactValueScreen(m_group.items[band], m_values[band].value, static_cast<std::int32_t>(band), *this),
        true);
}

bool EqualizerViewController::textValueGetterViewControllerShouldValidateValues(
    TextValueGetterViewController& screen) {
    const auto typed = trimmed(typedNumber(screen.values().value(0)));
    return valueRange(item(screen.tag()), {}).contains(intValue(typed));
}

QString EqualizerViewController::textValueGetterViewControllerDidRequestTitleForValidationError(
    TextValueGetterViewController&) {
    return outOfRangeTitle;
}

QString EqualizerViewController::textValueGetterViewControllerDidRequestMessageForValidationError(
    TextValueGetterViewController& screen) {
    const auto range = valueRange(item(screen.tag()), {});
    return outOfRangeMessage(range.lowest, range.highest);
}

void EqualizerViewController::textValueGetterViewControllerDidGetValue(
    TextValueGetterViewController& screen) {
    const auto band = static_cast<std::size_t>(screen.tag());
    m_values[band].value = trimmed(typedNumber(screen.values().value(0)));
    m_knobs[band]->configureForSettingInGroupWithValue(m_group.items[band], m_group, m_values[band]);
    screen.popIfOnTop();
}

}  // namespace torv

#include "moc_EqualizerViewController.cpp"
