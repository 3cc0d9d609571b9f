#pragma once

#include <memory>
#include <optional>

#include "attributes/TorvAttribute.h"
#include "screens/TableViewCell.h"
#include "session/iTorvFeeder.h"

namespace torv {

/// A row of the live list: a sensor's name, and its value from the store twice a second. Main thread.
///
/// Each `initWithAttribute` adds a timer of its own and none is stopped while the cell lives, so a cell that
/// is used again refreshes more often than need be; it shows the last attribute alone. The first value
/// comes half a second after the binding.
class CustomCell final : public torv::TableViewCell, public std::enable_shared_from_this<CustomCell> {
    Q_OBJECT

public:
    CustomCell(std::shared_ptr<iTorvFeeder> feeder, const QString& reuseIdentifier)
        : TableViewCell(Style::ValueBesideTitle, reuseIdentifier), m_feeder(std::move(feeder)) {}

    void initWithAttribute(const TorvAttribute& attribute);
    void UpdateList(Timer& timer);

private:
    std::shared_ptr<iTorvFeeder> m_feeder;
    std::optional<TorvAttribute> m_theattribute;
    std::string m_unit;
};

/// What the live list shows for a decoded value: times by the attribute's unit key, all else as value, a
/// blank and the unit text.
[[nodiscard]] std::string liveListText(const TorvAttribute& attribute, const AVFormatterData& data,
                                       const std::string& unit);

}  // namespace torv
