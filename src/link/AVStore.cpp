#include "link/AVStore.h"

#include <cstddef>

namespace torv {
namespace {

constexpr std::uint8_t noAID = 255;

std::uint8_t* slotIn(AVHalfStore& store, std::uint8_t aid) {
    if (aid <= lastShortAID) return store.shortSlots.data() + shortSlotSize * aid;
    return store.longSlots.data() + longSlotSize * static_cast<std::size_t>(aid - lastShortAID - 1);
}

}  // namespace

AVHalfStore& receiveStore() {
    static AVHalfStore store;
    return store;
}

AVHalfStore& sendStore() {
    static AVHalfStore store;
    return store;
}

std::mutex& avStoreMutex() {
    static std::mutex mutex;
    return mutex;
}

}  // namespace torv

std::uint8_t* x2comReceiveSlot(std::uint8_t aid) {
    if (aid == torv::noAID) return x2comSendSlot(0);
    return torv::slotIn(torv::receiveStore(), aid);
}

std::uint8_t* x2comSendSlot(std::uint8_t aid) {
    if (aid == torv::noAID) return nullptr;
    return torv::slotIn(torv::sendStore(), aid);
}
