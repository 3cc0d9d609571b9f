#pragma once

#include "EngineModel.h"
#include "Profile.h"

namespace bench {

/// Joins the sensors of a profile to the engine model, by their names. One thread at a time.
///
/// A sensor that the model does not know moves slowly within its range. All but boost and exhaust temperature
/// stay on the calm side of their warning; these two pass it at full throttle, whatever the limit is.
class SensorMap final {
public:
    SensorMap() = default;
    explicit SensorMap(const Profile& profile);

    /// Value of each sensor and of the gear, lock and regeneration attributes at this time.
    [[nodiscard]] std::vector<Item> items(const Readings& readings, double seconds) const;

    /// AIDs in profile order, each once.
    [[nodiscard]] const std::vector<std::uint8_t>& aids() const { return m_aids; }

private:
    struct Channel {
        Attribute attribute;
        std::optional<Quantity> quantity;
        double scale = 1;
        double low = 0;
        double high = 0;
    };

    void add(Channel channel);
    [[nodiscard]] static Channel sensorChannel(const Attribute& sensor);

    std::vector<Channel> m_channels;
    std::vector<std::uint8_t> m_aids;
};

}  // namespace bench
