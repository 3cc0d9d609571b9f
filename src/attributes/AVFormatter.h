#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>

#include "attributes/AVFormatterData.h"

namespace torv {

struct FreeBuffer {
    void operator()(std::uint8_t* buffer) const { std::free(buffer); }
};

/// A plain allocation, freed by `free`. It has as many bytes as the formatter writes, which is not always
/// the width of the AV, and zeros behind them up to the 13 of the widest slot.
using AVBuffer = std::unique_ptr<std::uint8_t[], FreeBuffer>;

/// The codec of one attribute between an AV's bytes, little-endian, and a record.
///
/// No formatter reports an error: what is no number reads as 0, and what no table names takes the table's
/// default. `dataFromAV` runs on the reading thread as well as on the main thread.
class AVFormatter {
public:
    AVFormatter() = default;
    AVFormatter(const AVFormatter&) = delete;
    AVFormatter& operator=(const AVFormatter&) = delete;
    virtual ~AVFormatter() = default;

    /// Null stands for an AV that nobody has stored; the formatters of settings accept it, and those that
    /// need bytes give nothing. Otherwise the 13 bytes of an `AV`, zeros behind a slot of 4: which formatter
    /// an AID gets is up to the profile, so each may look at all 13. Some formatters write into them.
    [[nodiscard]] virtual std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes);
    /// Null for a formatter with no way back.
    [[nodiscard]] virtual AVBuffer allocAVFromFormatterData(const AVFormatterData& data);

protected:
    /// Zeros; null when there is no memory.
    [[nodiscard]] static AVBuffer allocBuffer();
};

}  // namespace torv
