#include <array>
#include <cstdio>

#include "Commands.h"
#include "attributes/AVNumberFormatter.h"
#include "attributes/AVThreeCharTurboFormatter.h"
#include "support/TextNumbers.h"

namespace itorvctl {

using namespace torv;

namespace {

/// An AID that the profile does not tell of still has bytes to show.
TorvAttribute attributeOrRaw(const Handset& handset, AID aid) {
    if (auto known = handset.attribute(aid)) return *known;
    TorvAttribute raw;
    raw.aid = aid;
    raw.name = "AID " + std::to_string(aid);
    return raw;
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

void complain(const std::string& why) {
    std::fprintf(stderr, "itorvctl: %s\n", why.c_str());
}

int notConnected() {
    complain("no module answers; is the handset on the module's network?");
    return noConnection;
}

int get(Handset& handset, const Arguments& arguments) {
    const auto attribute = attributeOrRaw(handset, arguments.aid);
    if (!handset.connect()) return notConnected();
    handset.limitTime();
    if (!handset.feeder().requestValueForAID(arguments.aid)) {
        complain("the module did not respond to the request for AID " + std::to_string(arguments.aid));
        return noAnswer;
    }
    const auto reading = readingOf(attribute, handset.feeder().valueForAID(arguments.aid), handset.elapsed());
    std::puts(arguments.json          ? jsonLine(reading).c_str()
              : reading.value.empty() ? (reading.name + ": " + reading.raw).c_str()
                                      : plainText(reading).c_str());
    return success;
}

int set(Handset& handset, const Arguments& arguments) {
    const auto attribute = handset.attribute(arguments.aid);
    if (!attribute || !attribute->formatter) {
        complain("the profile does not tell how AID " + std::to_string(arguments.aid) + " is written");
        return badArguments;
    }
    const auto refuseOutside = [&](const TorvAttribute& mode) {
        complain(arguments.value + " is outside " + rangeText(mode) + " " + unitText(mode));
        return badArguments;
    };
    if (!isPacked(*attribute) && isOutside(*attribute, arguments.value)) return refuseOutside(*attribute);
    if (!attribute->formatter->allocAVFromFormatterData({})) {
        complain(attribute->name.value_or("this value") + " can only be read");
        return badArguments;
    }
    if (!handset.connect()) return notConnected();
    handset.limitTime();
    // Switches and codes beside the number stay as the module has them, so they have to be known.
    if (isPacked(*attribute) && !handset.feeder().requestValueForAID(arguments.aid)) {
        complain(
            "the module did not tell the present value, and parts of it would be lost; nothing was written");
        return noAnswer;
    }
    auto current = handset.feeder().valueForAID(arguments.aid);
    auto data = attribute->dataFromAV(current).value_or(AVFormatterData{});
    data.value = arguments.value;
    if (arguments.flags) data.flags = *arguments.flags;
    const auto mode = inItsMode(*attribute, data.flags);
    if (isOutside(mode, arguments.value)) return refuseOutside(mode);
    const auto bytes = attribute->formatter->allocAVFromFormatterData(data);
    if (!bytes || !handset.feeder().setValueForAID({bytes.get(), slotSize(arguments.aid)}, arguments.aid)) {
        complain("the module did not acknowledge");
        return noAnswer;
    }
    // As the module has it now: what the value's form can't hold is gone.
    auto written = AV::forAID(arguments.aid, {bytes.get(), slotSize(arguments.aid)});
    const auto shown = attribute->dataFromAV(written).value_or(data).value;
    std::printf("%s set to %s %s: acknowledged\n", attribute->name.value_or("value").c_str(), shown.c_str(),
                unitText(mode).c_str());
    return success;
}

}  // namespace itorvctl
