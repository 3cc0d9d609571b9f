#include "settings/DriveTrainInfo.h"

#include <algorithm>

#include "attributes/AVDriveTrainInfoData.h"
#include "attributes/AVVehicleSpeedFormatter.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

using Part = DriveTrainInfo::Part;

/// The record is stored by its own length, which is less than its slot's; kept as it is.
constexpr std::size_t storedSize = 6;

const std::optional<Value>& textsOf(const TorvAttribute& setting, Part part) {
    return part == Part::transmission ? setting.options : setting.options1;
}

/// Codes are texts and compared as such.
std::vector<std::string> codesOf(const TorvAttribute& setting, Part part) {
    return textsOfList(part == Part::transmission ? setting.optionValues : setting.optionValues1);
}

AVDriveTrainInfoData dataOf(const AVFormatterData& record) {
    const auto* data = std::any_cast<AVDriveTrainInfoData>(&record.additionalData);
    return data ? *data : AVDriveTrainInfoData{};
}

}  // namespace

std::vector<std::string> DriveTrainInfo::choices(Part part) const {
    auto texts = textsOfList(textsOf(m_setting, part));
    texts.resize(std::min(texts.size(), codesOf(m_setting, part).size()));
    return texts;
}

std::string DriveTrainInfo::choice(const AVFormatterData& record, Part part) const {
    const auto data = dataOf(record);
    const auto code = std::to_string(part == Part::transmission ? data.transmissionID : data.rearEndRatio);
    const auto codes = codesOf(m_setting, part);
    const auto index = static_cast<std::size_t>(std::find(codes.begin(), codes.end(), code) - codes.begin());
    const auto texts = choices(part);
    return index < texts.size() ? texts[index] : code;
}

void DriveTrainInfo::pick(Part part, const std::string& text) {
    const auto texts = choices(part);
    const auto found = std::find(texts.begin(), texts.end(), text);
    if (found == texts.end()) return;
    m_settings.load();
    const auto code =
        longLongValue(codesOf(m_setting, part)[static_cast<std::size_t>(found - texts.begin())]);
    auto record = formattedValue();
    auto data = dataOf(record);
    (part == Part::transmission ? data.transmissionID : data.rearEndRatio) = code;
    record.additionalData = data;
    apply(record);
}

bool DriveTrainInfo::acceptsTireSize(const std::string& text) const {
    // The whole text: it is stored as it is, and what is not a number would spoil every speed.
    const auto size = wholeTextFloatValue(trimmed(text));
    return size && static_cast<double>(*size) >= m_setting.minValue &&
           static_cast<double>(*size) <= m_setting.maxValue;
}

void DriveTrainInfo::setTireSize(const std::string& text) {
    const auto size = trimmed(text);
    m_settings.load();
    auto record = formattedValue();
    record.value = size;
    if (!apply(record)) return;
    AVVehicleSpeedFormatter::setCurrentTireSize(size);
    auto& defaults = Platform::current().userDefaults();
    if (!defaults.objectForKey(stockTireSizeKey).isNull()) return;
    AVVehicleSpeedFormatter::setStockTireSize(size);
    defaults.setObjectForKey(size, stockTireSizeKey);
    defaults.synchronize();
}

bool DriveTrainInfo::apply(const AVFormatterData& record) {
    return m_settings.apply(m_setting, record, storedSize);
}

}  // namespace torv
