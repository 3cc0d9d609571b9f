#pragma once

#include "settings/DeviceSettings.h"

namespace torv {

/// The drive train record of a vehicle: transmission, rear end ratio and tire size, which travel in one
/// setting. Main thread; a change blocks: see `DeviceSettings`.
class DriveTrainInfo final {
public:
    enum class Part { transmission, rearEndRatio };

    DriveTrainInfo(DeviceSettings& settings, TorvAttribute setting)
        : m_settings(settings), m_setting(std::move(setting)) {}

    [[nodiscard]] const TorvAttribute& setting() const { return m_setting; }
    [[nodiscard]] AVFormatterData formattedValue() const {
        return m_settings.formattedValueForSetting(m_setting);
    }
    /// The texts that have a code.
    [[nodiscard]] std::vector<std::string> choices(Part part) const;
    /// The text of the stored code; the code itself where the profile does not list it.
    [[nodiscard]] std::string choice(Part part) const { return choice(formattedValue(), part); }
    /// The same of any record.
    [[nodiscard]] std::string choice(const AVFormatterData& record, Part part) const;
    void pick(Part part, const std::string& text);

    /// Inches.
    [[nodiscard]] bool acceptsTireSize(const std::string& text) const;
    /// Corrects every speed that is shown from now on. The first size ever is taken for the one that the
    /// vehicle came with, and stored as such for good.
    void setTireSize(const std::string& text);

private:
    bool apply(const AVFormatterData& record);

    DeviceSettings& m_settings;
    const TorvAttribute m_setting;
};

}  // namespace torv
