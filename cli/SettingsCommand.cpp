#include <algorithm>
#include <cctype>
#include <cstdio>

#include "Commands.h"
#include "settings/DriveTrainInfo.h"
#include "settings/SensorWarnings.h"
#include "support/TextNumbers.h"
#include "vehicles/StoreTrouble.h"
#include "vehicles/VehicleDataSource.h"

namespace itorvctl {

using namespace torv;

namespace {

using Part = DriveTrainInfo::Part;

bool isSame(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
    });
}

std::string nameOf(const TorvAttribute& attribute) {
    return printable(attribute.name.value_or("AID " + std::to_string(attribute.aid)));
}

/// The place in the list of what has this name, whatever the case, or this AID. Nothing, after a complaint,
/// where there is none.
std::optional<std::size_t> named(const std::vector<TorvAttribute>& attributes, const std::string& name,
                                 const char* what) {
    const auto found =
        std::find_if(attributes.begin(), attributes.end(), [&](const TorvAttribute& attribute) {
            return isSame(attribute.name.value_or(""), name) || std::to_string(attribute.aid) == name;
        });
    if (found != attributes.end()) return static_cast<std::size_t>(found - attributes.begin());
    complain("the vehicle has no " + std::string{what} + " \"" + name + "\"");
    return std::nullopt;
}

/// What stands beside the value of a setting, a word each.
std::vector<std::string> wordsOf(const TorvAttribute& setting, const AVFormatterData& record) {
    std::vector<std::string> words;
    if (setting.toggable) words.emplace_back(isSwitchedOn(record) ? "on" : "off");
    if (setting.aid == threeWaySettingAID || setting.aid == turboTimerSettingAID)
        words.push_back(printable(textOfChoice(setting, choiceOfSetting(setting, record))));
    return words;
}

std::string textOf(DeviceSettings& settings, const TorvAttribute& setting, const AVFormatterData& record) {
    auto words = wordsOf(setting, record);
    if (setting.aid == driveTrainSettingAID) {
        const DriveTrainInfo info{settings, setting};
        words = {printable(info.choice(record, Part::transmission)),
                 printable(info.choice(record, Part::rearEndRatio))};
    }
    std::string text = record.value + " " + printable(unitText(valueRange(setting, record).unit));
    for (const auto& word : words)
        text += ", " + word;
    return text;
}

int list(Handset& handset, DeviceSettings& settings, bool json) {
    bool silent = false;
    for (const auto& setting : settings.settings()) {
        const auto stored = textOf(settings, setting, settings.formattedValueForSetting(setting));
        std::optional<std::string> module;
        if (handset.feeder().requestValueForAID(setting.aid)) {
            auto value = handset.feeder().valueForAID(setting.aid);
            module = textOf(settings, setting, setting.dataFromAV(value).value_or(AVFormatterData{}));
        }
        silent = silent || !module;
        const bool same = settings.isStored(setting) && module == stored;
        if (json) {
            Dictionary line{{"aid", Number::fromInteger(setting.aid)},
                            {"name", setting.name.value_or("")},
                            {"stored", settings.isStored(setting) ? Value{stored} : Value{}},
                            {"module", module ? Value{*module} : Value{}},
                            {"same", same},
                            {"taken", !settings.isUntaken(setting)}};
            printObject(line);
            continue;
        }
        std::printf("%-20s  %-40s  %s%s\n", nameOf(setting).c_str(),
                    settings.isStored(setting) ? stored.c_str() : "(not stored)",
                    !module ? "the module did not answer"
                    : same  ? "the same in the module"
                            : ("the module has " + *module).c_str(),
                    settings.isUntaken(setting) ? "; not taken by the module" : "");
    }
    return silent ? noAnswer : success;
}

/// "on" and "off" turn the switch, the text of an option chooses it, and a number is the value. False, after
/// a complaint, for what is none of these.
bool change(DeviceSettings& settings, const TorvAttribute& setting, const std::string& value,
            bool isStoreSound) {
    if (!isChangeable(setting)) {
        complain(nameOf(setting) + " can only be read");
        return false;
    }
    // The rest of the record would be invented, and a new vehicle would never get its other lowest values.
    if (!settings.isStored(setting)) {
        complain(isStoreSound
                     ? "nothing is stored of " + nameOf(setting) + " yet; start itorv once with the module"
                     : "what is stored of " + nameOf(setting) + " is not known");
        return false;
    }
    if (setting.toggable && (isSame(value, "on") || isSame(value, "off"))) {
        settings.setSwitch(setting, isSame(value, "on"));
        return true;
    }
    if (setting.aid == driveTrainSettingAID) {
        DriveTrainInfo info{settings, setting};
        for (const auto part : {Part::transmission, Part::rearEndRatio}) {
            for (const auto& choice : info.choices(part)) {
                if (isSame(choice, value)) return info.pick(part, choice), true;
            }
        }
        if (wholeTextFloatValue(value) && info.acceptsTireSize(value)) return info.setTireSize(value), true;
        complain("\"" + value + "\" is neither a transmission nor a ratio nor a tire size from " +
                 fixedText(setting.minValue, 1) + " to " + fixedText(setting.maxValue, 1));
        return false;
    }
    if (!wordsOf(setting, {}).empty()) {
        const auto options = textsOfList(setting.options);
        for (std::size_t i = 0; i < options.size(); ++i) {
            if (isSame(options[i], value)) return settings.pick(setting, i), true;
        }
    }
    if (wholeTextFloatValue(value) && settings.accepts(setting, value))
        return settings.setText(setting, value), true;
    const auto range = settings.range(setting);
    complain("\"" + value + "\" is no value of " + nameOf(setting) + ", which takes " +
             std::to_string(range.lowest) + " to " + std::to_string(range.highest) + " " +
             printable(unitText(range.unit)));
    return false;
}

}  // namespace

int settings(Handset& handset, const Arguments& arguments) {
    DeviceSettings settings{handset.sharedFeeder(), handset.vehicle()};
    const bool lists = arguments.words.empty();
    const auto row = lists ? std::nullopt : named(settings.settings(), arguments.words[1], "setting");
    if (!lists && !row) return badArguments;
    const auto trouble = sentenceFor(storeTrouble(handset.vehicle()));
    if (!trouble.empty()) complain(std::string{trouble});
    if (!handset.connect()) return notConnected(handset);
    handset.limitTime();
    if (lists) return list(handset, settings, arguments.json);
    const auto& setting = settings.settings()[*row];
    if (!change(settings, setting, arguments.words[2], trouble.empty())) return badArguments;
    if (!isKept()) return noAnswer;
    const auto text = textOf(settings, setting, settings.formattedValueForSetting(setting));
    if (arguments.json) {
        printObject({{"aid", Number::fromInteger(setting.aid)},
                     {"name", setting.name.value_or("")},
                     {"stored", text},
                     {"taken", !settings.isUntaken(setting)}});
    } else {
        std::printf("%s set to %s%s\n", nameOf(setting).c_str(), text.c_str(),
                    settings.isUntaken(setting) ? "" : ": acknowledged, and stored");
    }
    if (!settings.isUntaken(setting)) return success;
    complain(
        "the module did not acknowledge; it is stored, and goes to the module at the next connect of itorv");
    return noAnswer;
}

int warnings(const Vehicle& vehicle, const Arguments& arguments) {
    SensorWarnings warnings{vehicle};
    const auto& sensors = warnings.sensors();
    const auto show = [&](const TorvAttribute& sensor) {
        const auto unit = printable(unitText(sensor.unit));
        const bool on = SensorWarnings::isOn(sensor);
        const auto value = SensorWarnings::textOfValue(sensor);
        if (arguments.json) {
            printObject({{"aid", Number::fromInteger(sensor.aid)},
                         {"name", sensor.name.value_or("")},
                         {"on", on},
                         {"value", Number::fromInteger(sensor.warningValue)},
                         {"unit", unit}});
        } else {
            std::printf("%-24s  %-3s  %s %s\n", nameOf(sensor).c_str(), on ? "on" : "off", value.c_str(),
                        unit.c_str());
        }
    };
    if (arguments.words.empty()) {
        for (const auto& sensor : sensors)
            show(sensor);
        return success;
    }
    const auto row = named(sensors, arguments.words[0], "warning of a sensor");
    if (!row) return badArguments;
    if (arguments.words.size() > 1) {
        const auto& value = arguments.words[1];
        const auto range = SensorWarnings::range(sensors[*row]);
        const bool turns = isSame(value, "on") || isSame(value, "off");
        if (turns) {
            if (SensorWarnings::isOn(sensors[*row]) != isSame(value, "on"))
                warnings.setSwitch(*row, isSame(value, "on"));
        } else if (wholeTextFloatValue(value) && warnings.accepts(*row, value)) {
            warnings.setText(*row, value);
        } else {
            complain("\"" + value + "\" is neither on nor off nor a number from " +
                     std::to_string(range.lowest) + " to " + std::to_string(range.highest));
            return badArguments;
        }
        if (!isKept()) return noAnswer;
    }
    show(sensors[*row]);
    if (arguments.words.size() > 1) complain(seenAtNextStart);
    return success;
}

}  // namespace itorvctl
