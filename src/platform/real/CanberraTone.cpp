#include "platform/real/CanberraTone.h"

#include <canberra.h>

#include <string>

#include "platform/Log.h"

namespace torv {

void CanberraTone::Destroy::operator()(ca_context* context) const {
    ca_context_destroy(context);
}

void CanberraTone::play() {
    if (!m_queue) m_queue = std::make_unique<ThreadWorkQueue>("warning tone");
    m_queue->post([this] { playNow(); });
}

void CanberraTone::playNow() {
    if (!m_context) {
        ca_context* made = nullptr;
        if (ca_context_create(&made) != CA_SUCCESS) return;
        m_context.reset(made);
        ca_context_change_props(made, CA_PROP_APPLICATION_NAME, "iTorv", CA_PROP_APPLICATION_ID, "itorv",
                                nullptr);
    }
    const int result = ca_context_play(m_context.get(), 0, CA_PROP_EVENT_ID, "dialog-warning",
                                       CA_PROP_EVENT_DESCRIPTION, "A sensor is beyond its limit", nullptr);
    if (result != CA_SUCCESS) logLine(std::string{"no warning tone: "} + ca_strerror(result));
}

}  // namespace torv
