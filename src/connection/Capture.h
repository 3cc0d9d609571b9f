// What went over the link, as a file: pcapng (draft-ietf-opsawg-pcapng), one interface of the link type 147,
// which is free for everyone's own use. Each packet begins with a byte that says what follows.
#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

namespace torv {

enum class CapturedKind : std::uint8_t {
    fromModule = 0,  ///< one read of the handset: 1 to 16 bytes
    toModule = 1,    ///< one frame
    note = 2,        ///< UTF-8: what happened to the connection
    names = 3,       ///< UTF-8: a line for each AID that the vehicle names, "AID<tab>name"
};

struct CapturedPacket {
    CapturedKind kind = CapturedKind::note;
    std::chrono::sys_time<std::chrono::microseconds> time{};
    std::vector<std::uint8_t> bytes{};  ///< without the one that tells the kind
};

namespace pcapng {

inline constexpr std::uint32_t sectionHeader = 0x0A0D0D0A;
inline constexpr std::uint32_t interfaceDescription = 1;
inline constexpr std::uint32_t enhancedPacket = 6;
inline constexpr std::uint32_t byteOrderMark = 0x1A2B3C4D;
inline constexpr std::uint16_t ownLinkType = 147;  // LINKTYPE_USER0
inline constexpr std::uint16_t optionEnd = 0;
inline constexpr std::uint16_t optionInterfaceName = 2;
inline constexpr std::uint16_t optionTimeResolution = 9;
inline constexpr std::uint16_t optionPacketFlags = 2;  // inbound 1, outbound 2
inline constexpr std::uint16_t optionApplication = 4;

}  // namespace pcapng

}  // namespace torv
