// Arbitrary bytes as a capture: whatever they are, it ends, and no packet is larger than the file.

#include <cstdlib>
#include <sstream>

#include "connection/CaptureReader.h"
#include "connection/FrameText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    torv::CaptureReader reader{
        std::make_unique<std::istringstream>(std::string{reinterpret_cast<const char*>(bytes), size})};
    torv::AttributeNames names{{10, "Ten"}};
    std::string error;
    std::size_t packets = 0;
    while (const auto packet = reader.next(error)) {
        if (packet->bytes.size() > size || ++packets > size || !error.empty()) std::abort();
        if (packet->time.time_since_epoch().count() < 0) std::abort();
        if (packet->kind == torv::CapturedKind::names)
            names = torv::namesFromText(
                {reinterpret_cast<const char*>(packet->bytes.data()), packet->bytes.size()});
        if (torv::namesFromText(torv::textOfNames(names)).size() != names.size()) std::abort();
        static_cast<void>(torv::beginsWithFrame(packet->bytes));
        static_cast<void>(torv::frameText(packet->bytes, names));
    }
    return 0;
}
