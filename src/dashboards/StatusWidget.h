#pragma once

#include <QtQmlIntegration/qqmlintegration.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "dashboards/Reader.h"
#include "dashboards/View.h"
#include "session/AgingReadOut.h"
#include "session/iTorvReader.h"

namespace torv {

/// A small read-out of one attribute in the control strip. Main thread, except for `readAid`, which decodes
/// on the reading thread and hands a number on.
class StatusWidget : public torv::View,
                     public iTorvReader,
                     public AgingReadOut,
                     public std::enable_shared_from_this<StatusWidget> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(bool old READ isOld NOTIFY oldChanged)

public:
    using View::View;

    /// Any thread: a delivery may be under way while the vehicle changes.
    [[nodiscard]] std::shared_ptr<const TorvAttribute> attribute() const {
        const std::scoped_lock lock{m_mutex};
        return m_attribute;
    }
    void setAttribute(std::shared_ptr<const TorvAttribute> attribute) {
        const std::scoped_lock lock{m_mutex};
        m_attribute.swap(attribute);
    }
    [[nodiscard]] std::int32_t priority() const override { return m_priority; }
    void setPriority(std::int32_t priority) override { m_priority = priority; }

    void readAid(std::span<std::uint8_t> bytes, AID aid) override {
        const auto data = decoded(attribute(), bytes, aid);
        updateOnMainThread(shared_from_this(), data ? std::optional{number(*data)} : std::nullopt);
    }
    void updateValue(std::optional<std::int32_t> number) {
        showsValue();
        show(number.value_or(0));
    }

    [[nodiscard]] AID shownAID() const override {
        const auto& shown = attribute();
        return shown ? shown->aid : 0;
    }

signals:
    void oldChanged();

protected:
    /// The part of the record that the widget shows. Reading thread.
    [[nodiscard]] virtual std::int32_t number(const AVFormatterData& data) const = 0;
    virtual void show(std::int32_t number) = 0;

private:
    void tellOld() override { emit oldChanged(); }

    mutable std::mutex m_mutex;
    std::shared_ptr<const TorvAttribute> m_attribute;
    std::atomic<std::int32_t> m_priority{0};
};

}  // namespace torv
