#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "Faults.h"
#include "ProfileKeys.h"
#include "platform/URLLoader.h"
#include "support/Value.h"

namespace profiles {

/// Looks through one profile document and says what is wrong in it, with the place as a path such as
/// "parameters.sensors[3].formatter". The handset itself takes any document and makes the best of it; this
/// is for whoever publishes one.
class ProfileChecker final {
public:
    /// The loader is asked which addresses it takes, and fetches nothing.
    ProfileChecker(Faults& faults, const torv::URLLoader& loader, bool urlNeeded)
        : m_faults(faults), m_loader(loader), m_urlNeeded(urlNeeded) {}

    void check(const torv::Dictionary& profile);

private:
    using Dictionary = torv::Dictionary;
    using Value = torv::Value;
    using FirstPlaces = std::map<std::string, std::string, std::less<>>;

    void checkKeys(const Dictionary& members, Place place, const std::string& path);
    void checkValue(const Value& value, const Key& key, const std::string& path);
    void checkElements(const Value& list, Kind kind, const std::string& path);
    void checkHead(const Dictionary& profile);
    void checkList(const Value& list, Place place, const std::string& path);
    void checkGroup(const Dictionary& members, const std::string& path);
    void checkItemRanges(const Dictionary& members, const std::string& path);
    void checkAttribute(const Dictionary& members, Place place, const std::string& path);
    void checkAID(const Dictionary& members, Place place, const std::string& path);
    void checkFormatter(const Dictionary& members, Place place, const std::string& path);
    void checkWidth(const torv::Dictionary& members, Place place, const std::string& path);
    void checkWritable(const Dictionary& members, const std::string& path);
    void checkWarning(const Dictionary& members, const std::string& path);
    void checkOptions(const Dictionary& members, std::string_view texts, std::string_view values,
                      const std::string& path);
    void checkCategories(const Value& sensors, const std::string& path);
    void checkOrder(const Dictionary& members, std::string_view low, std::string_view high,
                    const std::string& path);
    /// A second one of the same is a fault; nothing is remembered of an empty text.
    void checkOnce(FirstPlaces& seen, const std::string& what, std::string_view kind,
                   const std::string& path);

    Faults& m_faults;
    const torv::URLLoader& m_loader;
    bool m_urlNeeded;
    FirstPlaces m_aids;
};

}  // namespace profiles
