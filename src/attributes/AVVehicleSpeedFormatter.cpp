#include "attributes/AVVehicleSpeedFormatter.h"

#include <mutex>
#include <utility>

#include "support/TextNumbers.h"

namespace torv {
namespace {

struct TireSizes {
    std::mutex mutex;
    std::string current = "1";
    std::string stock = "1";
};

TireSizes& tireSizes() {
    static TireSizes sizes;
    return sizes;
}

}  // namespace

void AVVehicleSpeedFormatter::setCurrentTireSize(std::string size) {
    const std::scoped_lock lock{tireSizes().mutex};
    tireSizes().current = std::move(size);
}

void AVVehicleSpeedFormatter::setStockTireSize(std::string size) {
    const std::scoped_lock lock{tireSizes().mutex};
    tireSizes().stock = std::move(size);
}

std::string AVVehicleSpeedFormatter::currentTireSize() {
    const std::scoped_lock lock{tireSizes().mutex};
    return tireSizes().current;
}

std::string AVVehicleSpeedFormatter::stockTireSize() {
    const std::scoped_lock lock{tireSizes().mutex};
    return tireSizes().stock;
}

std::optional<AVFormatterData> AVVehicleSpeedFormatter::dataFromAV(std::uint8_t* bytes) {
    auto data = AVNumberFormatter::dataFromAV(bytes);
    if (!data) return data;
    const auto number = [](const std::string& text) { return wholeTextFloatValue(text).value_or(0.0F); };
    const float speed = number(data->value);
    const float ratio = number(currentTireSize()) / number(stockTireSize());
    data->value = fixedText(static_cast<double>(ratio * speed), decimalDigits());
    return data;
}

}  // namespace torv
