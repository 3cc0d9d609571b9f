#include "attributes/TorvAttribute.h"

#include <algorithm>
#include <array>

#include "attributes/AVFormatterFactory.h"
#include "support/PropertyTable.h"

namespace torv {
namespace {

/// What documents can set, beside the numbers of the formatter, which are read by hand.
struct AttributeFields : TorvAttribute {
    std::optional<Value> formatterNumber;  // replaced by the formatter it stands for
};

using P = Property<AttributeFields>;
constexpr std::array<P, 21> properties{{
    {"Aid", &AttributeFields::aid},
    {"Name", &AttributeFields::name},
    {"Unit", &AttributeFields::unit},
    {"MinValue", &AttributeFields::minValue},
    {"MaxValue", &AttributeFields::maxValue},
    {"Warningvaluelow", &AttributeFields::warningvaluelow},
    {"Warningvaluehigh", &AttributeFields::warningvaluehigh},
    {"AdditionalUnit", &AttributeFields::additionalUnit},
    {"AdditionalMinValue", &AttributeFields::additionalMinValue},
    {"AdditionalMaxValue", &AttributeFields::additionalMaxValue},
    {"WarningValue", &AttributeFields::warningValue},
    {"WarningRule", &AttributeFields::warningRule},
    {"Formatter", &AttributeFields::formatterNumber},
    {"Options", &AttributeFields::options},
    {"OptionValues", &AttributeFields::optionValues},
    {"Options1", &AttributeFields::options1},
    {"OptionValues1", &AttributeFields::optionValues1},
    {"Toggable", &AttributeFields::toggable},
    {"Enabled", &AttributeFields::enabled},
    {"Minmax", &AttributeFields::minmax},
    {"Category", &AttributeFields::category},
}};

struct Unit {
    std::string_view key;
    std::string_view text;
};
constexpr std::array<Unit, 9> units{{
    {"DEGF", "\u00BAF"},
    {"PSI", "PSI"},
    {"PERC", "%"},
    {"DEG", "\u00B0"},
    {"", ""},
    {"RPM", "RPM"},
    {"USEC", "microseconds"},
    {"SEC", "SEC"},
    {"INCHES", "INCHES"},
}};

struct Rule {
    std::int32_t number;
    bool (*holds)(double value, double limit);
};
constexpr std::array<Rule, 4> rules{{
    {1, [](double value, double limit) { return value >= limit; }},
    {2, [](double value, double limit) { return value <= limit; }},
    {3, [](double value, double limit) { return value > limit; }},
    {4, [](double value, double limit) { return value < limit; }},
}};

}  // namespace

TorvAttribute TorvAttribute::torvAttributeFromDictionary(const Dictionary& dictionary) {
    AttributeFields attribute;
    setPropertiesFromDictionary<AttributeFields>(attribute, dictionary, properties);
    const auto decimalDigits = dictionary["decimalDigits"].intValue();
    const auto parameter = AVFormatterParameter::formatterParameterMultiplyFactorOffsetDecimalDigits(
        dictionary["formatter"].intValue(), dictionary["multiplyFactor"].floatValue(),
        static_cast<float>(dictionary["offset"].intValue()), decimalDigits);
    attribute.minmax = dictionary["minmax"].textValue();
    attribute.category = dictionary["category"].textValue();
    attribute.decimaldigits = decimalDigits;
    attribute.formatter = AVFormatterFactory::formatterWithParameter(parameter);
    return static_cast<TorvAttribute&&>(attribute);
}

std::optional<std::string> TorvAttribute::shortUnitDescriptionForUnitKey(std::string_view key) {
    const auto* unit = std::find_if(units.begin(), units.end(), [&](const Unit& u) { return u.key == key; });
    if (unit == units.end()) return std::nullopt;
    return std::string{unit->text};
}

bool TorvAttribute::isInWarning(double value) const {
    const auto* rule =
        std::find_if(rules.begin(), rules.end(), [&](const Rule& r) { return r.number == warningRule; });
    return rule != rules.end() && rule->holds(value, static_cast<double>(warningValue));
}

std::optional<AVFormatterData> TorvAttribute::dataFromAV(AV& value) const {
    if (!formatter) return std::nullopt;
    return formatter->dataFromAV(value.bytes().data());
}

std::string unitText(const std::optional<std::string>& key) {
    const auto text = key.value_or(std::string{});
    return TorvAttribute::shortUnitDescriptionForUnitKey(text).value_or(text);
}

std::vector<std::string> textsOfList(const std::optional<Value>& list) {
    std::vector<std::string> texts;
    if (!list) return texts;
    for (const auto& element : list->elements())
        texts.push_back(element.textValue().value_or(std::string{}));
    return texts;
}

}  // namespace torv
