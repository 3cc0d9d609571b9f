#pragma once

#include <memory>

#include "platform/WarningTone.h"
#include "platform/real/ThreadWorkQueue.h"

struct ca_context;

namespace torv {

/// By libcanberra, in the words of the sound naming specification of freedesktop.org, on a thread of its own:
/// a sound server may be slow to answer.
class CanberraTone final : public WarningTone {
public:
    void play() override;

private:
    struct Destroy {
        void operator()(ca_context* context) const;
    };
    void playNow();

    std::unique_ptr<ca_context, Destroy> m_context;  // made by the first tone, on that thread
    std::unique_ptr<ThreadWorkQueue> m_queue;        // likewise; ends before the context goes
};

}  // namespace torv
