#pragma once

#include <memory>

#include "platform/WarningTone.h"

struct ca_context;

namespace torv {

/// By libcanberra, in the words of the sound naming specification of freedesktop.org.
class CanberraTone final : public WarningTone {
public:
    void play() override;

private:
    struct Destroy {
        void operator()(ca_context* context) const;
    };
    std::unique_ptr<ca_context, Destroy> m_context;  // made by the first tone
};

}  // namespace torv
