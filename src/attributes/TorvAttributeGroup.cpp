#include "attributes/TorvAttributeGroup.h"

namespace torv {

TorvAttributeGroup TorvAttributeGroup::torvAttributeGroupFromDictionary(const Dictionary& dictionary) {
    const auto single = [&](std::string_view key) {
        return static_cast<double>(dictionary[key].floatValue());
    };
    return {.name = dictionary["name"].textValue(),
            .type = dictionary["type"].textValue(),
            .unit = dictionary["unit"].textValue(),
            .defaultValue = single("default"),
            .lowValue = single("low"),
            .highValue = single("high"),
            .resolutionValue = single("resolution"),
            .items = torvAttributesFromList(dictionary["items"])};
}

std::vector<TorvAttribute> torvAttributesFromList(const Value& list) {
    std::vector<TorvAttribute> attributes;
    attributes.reserve(list.elements().size());
    for (const auto& element : list.elements()) {
        const auto* dictionary = element.dictionary();
        attributes.push_back(
            TorvAttribute::torvAttributeFromDictionary(dictionary ? *dictionary : Dictionary{}));
    }
    return attributes;
}

}  // namespace torv
