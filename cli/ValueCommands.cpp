#include <cstdio>

#include "Commands.h"
#include "JSON/SBJsonWriter.h"

namespace itorvctl {

using namespace torv;

namespace {

/// An AID that the profile does not tell of still has bytes to show.
TorvAttribute attributeOrRaw(const Handset& handset, AID aid) {
    if (auto known = handset.attribute(aid)) return *known;
    TorvAttribute raw;
    raw.aid = aid;
    raw.name = "AID " + std::to_string(aid);
    return raw;
}

}  // namespace

void printObject(const Dictionary& object) {
    std::puts(SBJsonWriter{}.stringWithObject(object).value_or("{}").c_str());
}

void complain(const std::string& why) {
    std::fprintf(stderr, "itorvctl: %s\n", why.c_str());
}

int notConnected(const Handset& handset) {
    complain(handset.whyNotConnected());
    return noConnection;
}

int get(Handset& handset, const Arguments& arguments) {
    const auto attribute = attributeOrRaw(handset, arguments.aid);
    if (!handset.connect()) return notConnected(handset);
    handset.limitTime();
    if (!handset.feeder().requestValueForAID(arguments.aid)) {
        complain("the module did not respond to the request for AID " + std::to_string(arguments.aid));
        return noAnswer;
    }
    const auto reading = readingOf(attribute, handset.feeder().valueForAID(arguments.aid), handset.elapsed());
    std::puts(arguments.json          ? jsonLine(reading).c_str()
              : reading.value.empty() ? (reading.name + ": " + reading.raw).c_str()
                                      : plainText(reading).c_str());
    return success;
}

}  // namespace itorvctl
