#include "Profile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <algorithm>
#include <cmath>

namespace bench {
namespace {

using Single = std::optional<Attribute> Profile::*;
struct SingleRow {
    const char* key;
    Single member;
};
constexpr std::array<SingleRow, 5> singles{{{"powerLevel", &Profile::powerLevel},
                                            {"currentGear", &Profile::currentGear},
                                            {"torqueLock", &Profile::torqueLock},
                                            {"sootReg", &Profile::sootReg},
                                            {"soxReg", &Profile::soxReg}}};

struct ProfileError {
    std::string text;
};

std::string textOf(const QJsonValue& value) {
    return QUrl::fromPercentEncoding(value.toString().toUtf8()).toStdString();
}

Attribute readAttribute(const QJsonObject& object) {
    Attribute attribute;
    attribute.name = textOf(object["name"]);
    const int aid = object["aid"].toInt(-1);
    if (aid < 0 || aid >= aidCount) {
        throw ProfileError{"attribute \"" + attribute.name + "\" has no AID from 0 to 254"};
    }
    attribute.aid = static_cast<std::uint8_t>(aid);
    attribute.unit = textOf(object["unit"]);
    attribute.layout = static_cast<Layout>(std::clamp(object["formatter"].toInt(), 0, 10));
    attribute.factor = object["multiplyFactor"].toDouble();
    attribute.offset = std::trunc(object["offset"].toDouble());
    attribute.minValue = object["minValue"].toDouble();
    attribute.maxValue = std::max(attribute.minValue, object["maxValue"].toDouble());
    attribute.warningRule = object["warningRule"].toInt();
    attribute.warningValue = object["warningValue"].toDouble();
    attribute.initial = attribute.minValue;
    return attribute;
}

std::vector<Attribute> readList(const QJsonValue& list) {
    std::vector<Attribute> attributes;
    const QJsonArray elements = list.toArray();
    for (const auto& element : elements)
        attributes.push_back(readAttribute(element.toObject()));
    return attributes;
}

std::vector<Attribute> readGroups(const QJsonValue& list) {
    std::vector<Attribute> all;
    const QJsonArray groups = list.toArray();
    for (const auto& element : groups) {
        const QJsonObject group = element.toObject();
        for (Attribute& item : readList(group["items"])) {
            const double middle = (item.minValue + item.maxValue) / 2;
            item.initial = group["default"].toDouble(middle);
            all.push_back(std::move(item));
        }
    }
    return all;
}

Profile readProfile(const std::filesystem::path& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) throw ProfileError{"is a folder"};
    if (path.empty()) throw ProfileError{"no file named"};
    QFile file(QString::fromStdString(path.string()));
    if (!file.open(QIODevice::ReadOnly)) throw ProfileError{file.errorString().toStdString()};
    QJsonParseError parse{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parse);
    if (parse.error != QJsonParseError::NoError) {
        throw ProfileError{"not JSON at byte " + std::to_string(parse.offset) + ": " +
                           parse.errorString().toStdString()};
    }
    const QJsonValue parameters = document.object()["parameters"];
    if (!parameters.isObject()) throw ProfileError{"no \"parameters\" object"};
    Profile profile;
    profile.sensors = readList(parameters["sensors"]);
    profile.settings = readList(parameters["settings"]);
    profile.tuning = readGroups(parameters["tuning"]);
    for (const SingleRow& row : singles) {
        const QJsonValue value = parameters[QLatin1String(row.key)];
        if (value.isObject()) profile.*row.member = readAttribute(value.toObject());
    }
    return profile;
}

void appendNumber(Bytes& bytes, double number, std::size_t width) {
    const double limit = std::exp2(8.0 * static_cast<double>(width)) - 1;
    auto raw =
        std::isfinite(number) ? static_cast<std::uint64_t>(std::clamp(std::round(number), 0.0, limit)) : 0;
    for (std::size_t index = 0; index < width; ++index, raw >>= 8U) {
        bytes.push_back(static_cast<std::uint8_t>(raw & 0xFFU));
    }
}

}  // namespace

Bytes Attribute::encode(double value) const {
    const bool isLong = aid >= firstLongAid;
    const std::size_t width = isLong ? 4 : valueWidth(aid);
    Bytes bytes;
    if (isLong) bytes.push_back(0);
    switch (layout) {
        case Layout::number:
        case Layout::speed:
            appendNumber(bytes, factor == 0 ? 0 : (value - offset) / factor, width);
            break;
        case Layout::boolean:
            bytes.push_back(value != 0 ? 1 : 0);
            break;
        case Layout::gear:
        case Layout::powerLevel:
            appendNumber(bytes, value, 1);
            break;
        case Layout::switchByte:
        case Layout::threeWayByte:
            bytes.push_back(0);
            appendNumber(bytes, value, 1);
            break;
        case Layout::switchWord:
        case Layout::turboWord:
            bytes.push_back(0);
            appendNumber(bytes, value, 2);
            break;
        case Layout::driveTrain:  // transmission, axle, tire size in tenths, vehicle
            bytes.insert(bytes.end(), 2, 0);
            appendNumber(bytes, value * 10, 2);
            bytes.push_back(0);
            break;
        case Layout::time: {  // the high byte of the hours counts 255s
            const auto seconds = static_cast<std::uint64_t>(std::max(0.0, value));
            const std::uint64_t hours = seconds / 3600;
            appendNumber(bytes, static_cast<double>(hours % 255), 1);
            appendNumber(bytes, static_cast<double>(hours / 255), 1);
            appendNumber(bytes, static_cast<double>(seconds / 60 % 60), 1);
            appendNumber(bytes, static_cast<double>(seconds % 60), 1);
            break;
        }
    }
    if (isLong) {
        bytes[0] = static_cast<std::uint8_t>(bytes.size());
    } else {
        bytes.resize(width, 0);
    }
    return bytes;
}

std::optional<Profile> loadProfile(const std::filesystem::path& path, std::string& error) {
    try {
        return readProfile(path);
    } catch (const ProfileError& problem) {
        error = "profile " + path.string() + ": " + problem.text;
        return std::nullopt;
    }
}

}  // namespace bench
