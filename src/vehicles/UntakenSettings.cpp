#include "vehicles/UntakenSettings.h"

#include "platform/Platform.h"
#include "platform/StoredKeys.h"

namespace torv {
namespace {

std::string keyFor(const Vehicle& vehicle) {
    return std::string{untakenKeyPrefix} + vehicle.name().value_or("(null)");
}

}  // namespace

bool UntakenSettings::contains(const Vehicle& vehicle, AID aid) {
    return defaults().objectForKey(keyFor(vehicle))[std::to_string(aid)].boolValue();
}

void UntakenSettings::note(const Vehicle& vehicle, AID aid, bool acknowledged) {
    if (contains(vehicle, aid) != acknowledged) return;  // it is known already
    const auto key = keyFor(vehicle);
    auto stored = defaults().objectForKey(key);
    Dictionary aids = stored.dictionary() ? std::move(*stored.dictionary()) : Dictionary{};
    aids.set(std::to_string(aid), !acknowledged);
    defaults().setObjectForKey(std::move(aids), key);
}

void UntakenSettings::forget(const Vehicle& vehicle) {
    defaults().removeObjectForKey(keyFor(vehicle));
}

}  // namespace torv
