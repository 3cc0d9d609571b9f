// What the readers among the views share: the way of a value from the reading thread to the main thread, and
// the end of a reader.
#pragma once

#include <QThread>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "attributes/TorvAttribute.h"
#include "platform/Platform.h"

namespace torv {

/// A reader's last owner may be the reading thread, when it lets go of a list of readers; an object of the
/// screen ends on the main thread all the same.
template <class T, class... Arguments>
[[nodiscard]] std::shared_ptr<T> makeReader(Arguments&&... arguments) {
    return {std::make_unique<T>(std::forward<Arguments>(arguments)...).release(), [](T* reader) {
                if (reader->thread() != QThread::currentThread()) return reader->deleteLater();
                const std::unique_ptr<T> last{reader};
            }};
}

/// Nothing without an attribute or a formatter. Any thread.
[[nodiscard]] inline std::optional<AVFormatterData> decoded(
    const std::shared_ptr<const TorvAttribute>& attribute, std::span<const std::uint8_t> bytes, AID aid) {
    if (!attribute) return std::nullopt;
    auto value = AV::forAID(aid, bytes);  // a copy, for some formatters write into it
    return attribute->dataFromAV(value);
}

/// Hands a number to the reader's `updateValue` on the main thread, and does not wait. A reader that has gone
/// meanwhile gets none.
template <class Reader, class Number>
void updateOnMainThread(const std::shared_ptr<Reader>& reader, std::optional<Number> number) {
    Platform::current().runLoop().performOnMainThread([weak = std::weak_ptr{reader}, number] {
        if (const auto alive = weak.lock()) alive->updateValue(number);
    });
}

}  // namespace torv
