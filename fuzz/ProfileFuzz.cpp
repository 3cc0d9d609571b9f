// Arbitrary text as a profile: every attribute that it describes decodes and encodes.

#include "FuzzPlatform.h"
#include "JSON/SBJsonParser.h"
#include "vehicles/VehicleArchive.h"

namespace {

void use(const torv::TorvAttribute& attribute) {
    using Bytes = std::array<std::uint8_t, torv::longSlotSize>;
    static constexpr std::array<Bytes, 4> raw{
        {{}, {1, 2, 3, 4}, {3, 0x2C, 1, 0, 0xFF, 7}, {255, 255, 255, 255}}};
    static_cast<void>(torv::textsOfList(attribute.options));
    static_cast<void>(attribute.isInWarning(attribute.maxValue));
    if (!attribute.formatter) return;
    static_cast<void>(attribute.formatter->dataFromAV(nullptr));
    for (const auto& bytes : raw) {
        torv::AV value{bytes, bytes.size()};
        auto data = attribute.dataFromAV(value).value();
        static_cast<void>(attribute.formatter->allocAVFromFormatterData(data));
        data.value = attribute.name.value_or("-1e30");
        static_cast<void>(attribute.formatter->allocAVFromFormatterData(data));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static FuzzPlatform platform;
    platform.entries.clear();
    const std::string_view text{reinterpret_cast<const char*>(bytes), size};
    auto document = torv::SBJsonParser{}.objectWithString(text);
    if (!document || !document->dictionary()) return 0;
    auto vehicle = torv::Vehicle::vehicleFromDictionary(*document->dictionary());
    vehicle.setInfo(torv::ProfileInfo{*document->dictionary()});
    for (const auto& list : {vehicle.sensors(), vehicle.settings(), vehicle.tuningItems()}) {
        for (const auto& attribute : list)
            use(attribute);
    }
    for (const auto& attribute :
         {vehicle.powerLevelAttribute(), vehicle.currentGearAttribute(), vehicle.torqueLockAttribute(),
          vehicle.sootAttribute(), vehicle.soxAttribute()})
        use(attribute);
    for (const auto& sensor : vehicle.sensors()) {
        vehicle.updateSensor(sensor);
        static_cast<void>(vehicle.updatableSensors());
        if (vehicle.sensors().size() > 50) break;
    }
    std::string error;
    const auto back = torv::vehiclesFromArchive(torv::archivedVehicles({&vehicle, 1}), error);
    if (!back || back->size() != 1 || back->front().info().document() != *document->dictionary())
        std::abort();
    // The archive has a form of its own; damaged ones come from the same bytes.
    static_cast<void>(torv::vehiclesFromArchive("iTorv vehicles 1\n" + std::string{text}, error));
    return 0;
}
