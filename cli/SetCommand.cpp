#include <algorithm>
#include <cstdio>

#include "Commands.h"
#include "StoredValue.h"
#include "attributes/AVNumberFormatter.h"
#include "attributes/AVThreeCharTurboFormatter.h"
#include "support/TextNumbers.h"

namespace itorvctl {

using namespace torv;

namespace {

struct Target {
    TorvAttribute attribute;
    std::optional<StoredValue::Kind> kind;  ///< nothing where it was forced
};

std::optional<Target> targetOf(const Handset& handset, AID aid, bool force) {
    using Kind = StoredValue::Kind;
    for (const auto kind : {Kind::setting, Kind::tuningItem}) {
        const auto& vehicle = handset.vehicle();
        for (auto& attribute : kind == Kind::setting ? vehicle.settings() : vehicle.tuningItems()) {
            if (attribute.aid == aid) return Target{attribute, kind};
        }
    }
    const auto other = force ? handset.attribute(aid) : std::nullopt;
    return other ? std::optional{Target{*other, std::nullopt}} : std::nullopt;
}

std::string rangeText(const TorvAttribute& attribute) {
    return fixedText(attribute.minValue, attribute.decimaldigits) + " to " +
           fixedText(attribute.maxValue, attribute.decimaldigits);
}

bool isOutside(const TorvAttribute& attribute, const std::string& value) {
    if (attribute.minValue == 0.0 && attribute.maxValue == 0.0) return false;
    const auto number = static_cast<double>(floatValue(value));
    return number < attribute.minValue || number > attribute.maxValue;
}

/// A setting of two modes has a range for each.
TorvAttribute inItsMode(TorvAttribute attribute, std::int32_t flags) {
    const bool second = (flags & AVFormatterData::secondOn) != 0;
    if (!second || !std::dynamic_pointer_cast<AVThreeCharTurboFormatter>(attribute.formatter))
        return attribute;
    attribute.unit = attribute.additionalUnit;
    attribute.minValue = attribute.additionalMinValue;
    attribute.maxValue = attribute.additionalMaxValue;
    return attribute;
}

/// Whether the bytes hold more than the number, so that writing needs to know the rest.
bool isPacked(const TorvAttribute& attribute) {
    return !std::dynamic_pointer_cast<AVNumberFormatter>(attribute.formatter);
}

}  // namespace

int set(Handset& handset, const Arguments& arguments) {
    const auto target = targetOf(handset, arguments.aid, arguments.force);
    if (!target) {
        const auto aid = "AID " + std::to_string(arguments.aid);
        complain(handset.attribute(arguments.aid)
                     ? aid + " is neither a setting nor a tuning item; --force writes it all the same"
                     : "the profile does not tell of " + aid);
        return badArguments;
    }
    const auto& attribute = target->attribute;
    const auto name = printable(attribute.name.value_or("this value"));
    const auto refuseOutside = [&](const TorvAttribute& mode) {
        complain(arguments.value + " is outside " + rangeText(mode) + " " + unitText(mode.unit));
        return badArguments;
    };
    if (!attribute.formatter || !attribute.formatter->allocAVFromFormatterData({})) {
        complain(name + " can only be read");
        return badArguments;
    }
    if (!isPacked(attribute) && isOutside(attribute, arguments.value)) return refuseOutside(attribute);
    const auto kept = target->kind
                          ? std::optional{StoredValue{handset.vehicle(), arguments.aid, *target->kind}}
                          : std::nullopt;
    if (arguments.store) {
        const auto why = kept ? kept->whyNot() : name + " is nothing that itorv stores";
        if (why) {
            complain(*why);
            return badArguments;
        }
    }
    if (!handset.connect()) return notConnected(handset);
    handset.limitTime();
    // Switches and codes beside the number stay as the module has them, so they have to be known.
    if (isPacked(attribute) && !handset.feeder().requestValueForAID(arguments.aid)) {
        complain(
            "the module did not tell the present value, and parts of it would be lost; nothing was written");
        return noAnswer;
    }
    auto current = handset.feeder().valueForAID(arguments.aid);
    auto data = attribute.dataFromAV(current).value_or(AVFormatterData{});
    data.value = arguments.value;
    if (arguments.flags) data.flags = *arguments.flags;
    const auto mode = inItsMode(attribute, data.flags);
    if (isOutside(mode, arguments.value)) return refuseOutside(mode);
    const auto bytes = attribute.formatter->allocAVFromFormatterData(data);
    if (!bytes || !handset.feeder().setValueForAID({bytes.get(), slotSize(arguments.aid)}, arguments.aid)) {
        complain("the module did not acknowledge");
        return noAnswer;
    }
    const auto written = AV::forAID(arguments.aid, {bytes.get(), slotSize(arguments.aid)});
    // As the module has it now: what the value's form can't hold is gone.
    const auto reading = readingOf(mode, written, handset.elapsed());
    if (arguments.json) {
        std::puts(jsonLine(reading).c_str());
    } else {
        const auto shown = wholeTextFloatValue(reading.value);
        const bool cut = shown && shown != wholeTextFloatValue(arguments.value);
        std::printf("%s set to %s %s%s: acknowledged\n", name.c_str(), reading.value.c_str(),
                    unitText(mode.unit).c_str(), cut ? (" (cut from " + arguments.value + ")").c_str() : "");
    }
    if (arguments.store && !kept->store(written)) {
        complain("it could not be stored; --verbose tells why");
        return noAnswer;
    }
    if (const auto undone = kept ? kept->whatUndoes(written) : std::nullopt) complain(*undone);
    return success;
}

}  // namespace itorvctl
