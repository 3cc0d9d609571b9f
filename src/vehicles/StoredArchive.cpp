#include "vehicles/StoredArchive.h"

#include "platform/Log.h"
#include "platform/Platform.h"

namespace torv {

void setAsideUnreadable(std::string_view key, const Value& value, const std::string& why) {
    auto& defaults = Platform::current().userDefaults();
    std::string aside;
    int number = 0;
    do {
        aside = keyOfUnreadable(key, ++number);
    } while (!defaults.objectForKey(aside).isNull());
    logLine("the stored entry \"" + std::string{key} + "\" can't be read and is kept as \"" + aside +
            "\": " + why);
    defaults.setObjectForKey(value, aside);
    defaults.removeObjectForKey(key);
    defaults.synchronize();
}

}  // namespace torv
