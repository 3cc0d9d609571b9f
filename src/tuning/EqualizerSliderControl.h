#pragma once

namespace torv {

/// The slider of one band of an equalizer: a value on a rail that stands upright. Lengths are points, y grows
/// downward, and the top of the bounds is 0. One thread at a time.
///
/// minDisplayValue ≤ minSliderValue ≤ lowWarningValue, and highWarningValue ≤ maxSliderValue ≤
/// maxDisplayValue: whatever is set wins and pushes the others aside. So a band whose range reaches beyond
/// the common scale widens its own.
class EqualizerSliderControl final {
public:
    struct Layer {
        double top = 0;
        double height = 0;
    };

    static constexpr double touchMargin = 30;  ///< around the handle
    static constexpr double railWidth = 2;

    [[nodiscard]] double minDisplayValue() const { return m_minDisplayValue; }
    [[nodiscard]] double maxDisplayValue() const { return m_maxDisplayValue; }
    [[nodiscard]] double minSliderValue() const { return m_minSliderValue; }
    [[nodiscard]] double maxSliderValue() const { return m_maxSliderValue; }
    [[nodiscard]] double lowWarningValue() const { return m_lowWarningValue; }
    [[nodiscard]] double highWarningValue() const { return m_highWarningValue; }
    [[nodiscard]] double selectedValue() const { return m_selectedValue; }

    void setMinDisplayValue(double value);
    void setMaxDisplayValue(double value);
    void setMinSliderValue(double value);
    void setMaxSliderValue(double value);
    void setLowWarningValue(double value);
    void setHighWarningValue(double value);
    /// Limited to what can be selected: first to the highest value, then to the lowest.
    void setSelectedValue(double value);

    void setSize(double width, double height, double handleWidth, double handleHeight);
    /// The y of the handle's centre; at the bottom of a rail without a range.
    [[nodiscard]] double handleCenter() const;
    /// The value for a touch at this height, before it is clamped. The bounds must be higher than the handle.
    [[nodiscard]] double valueAt(double y) const;
    /// Whether a touch may take the handle.
    [[nodiscard]] bool canGrab(double x, double y) const;

    // The three parts of the rail. The red ones follow the bounds' height and not the handle's travel, so
    // the colour changes close to the warning value and not quite at it; kept as it is.
    [[nodiscard]] Layer sliderMaxOutOfRangeLine() const;
    [[nodiscard]] Layer sliderMinOutOfRangeLine() const;
    [[nodiscard]] Layer sliderRangeLine() const;

private:
    [[nodiscard]] double redHeight(double values) const;

    double m_minDisplayValue = 0;
    double m_maxDisplayValue = 100;
    double m_minSliderValue = 0;
    double m_maxSliderValue = 100;
    double m_lowWarningValue = 0;
    double m_highWarningValue = 100;
    double m_selectedValue = 0;
    double m_width = 0;
    double m_height = 0;
    double m_handleWidth = 0;
    double m_handleHeight = 0;
};

}  // namespace torv
