#pragma once

#include "framework/Export.h"
#include "framework/ogl/Texture.h"
#include "framework/types/Color4f.h"
#include "framework/types/Vector2.h"

#include <QImage>

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Qor::Chart::Library {

/// Colours for values: a sequence of colours, a range of values that is spread over it, linearly or by magnitude, smooth or
/// in steps, and colours for what lies outside or is no number. A plain value.
///
///     auto map = Library::ColorMap::Named("Viridis").value_or(Library::ColorMap());
///     map.SetRange(0, 250).SetUndefinedColor(Types::Color4f(1, 0, 1));
///     agl->Color(map.At(temperature));
class QOR_FRAMEWORK_API ColorMap {
public:
    /// A colour at a place of the sequence, which runs from 0 to 1. Between two stops the channels are interpolated; two at
    /// one place make an edge.
    struct Stop {
        double position = 0;
        Types::Color4f color;

        constexpr bool operator==(Stop const&) const = default;
    };
    enum class Scale {
        Linear,
        Logarithmic, ///< equal ratios get equal distances; both ends of the range are greater than 0
    };

    /// Viridis over 0 to 1.
    ColorMap();
    /// Stops in any order, those without a finite place left out, with a report; none at all make it grey.
    ColorMap(std::string p_name, std::vector<Stop> p_stops);

    /// The names of the maps that the library has, in the order in which a menu would show them.
    static std::vector<std::string> const& Names();
    /// The map of that name over 0 to 1; case, blanks, hyphens and underscores don't matter. Nothing for a name of none.
    static std::optional<ColorMap> Named(std::string_view p_name);

    std::string const& Name() const { return _name; }
    std::vector<Stop> const& Stops() const { return _stops; }

    /// The values of the first and the last colour; the first may be the greater. Ends that are not finite are reported and
    /// change nothing; a logarithmic scale with an end that is not greater than 0 is reported and made linear. In a range
    /// without extent its one value gets the middle colour.
    ColorMap& SetRange(double p_first, double p_last, Scale p_scale = Scale::Linear);
    double First() const { return _first; }
    double Last() const { return _last; }
    Scale GetScale() const { return _scale; }
    /// Into how many even colours the range is divided; 0, as at first, for smooth transitions.
    ColorMap& SetSteps(std::size_t p_steps);
    std::size_t Steps() const { return _steps; }
    /// Turns the sequence of colours around.
    ColorMap& Reverse();
    /// For values before the first and after the last; without one they get the colour of that end.
    ColorMap& SetBelowColor(std::optional<Types::Color4f> const& p_color);
    ColorMap& SetAboveColor(std::optional<Types::Color4f> const& p_color);
    /// For NaN; fully transparent at first.
    ColorMap& SetUndefinedColor(Types::Color4f const& p_color);

    /// The colour of a value.
    Types::Color4f At(double p_value) const;
    /// The colour at a place of the sequence, steps included; places outside 0 to 1 are outside the range.
    Types::Color4f AtPosition(double p_position) const;
    /// Where a value lies: 0 at the first end of the range, 1 at the last, beyond them outside; NaN for NaN.
    double Position(double p_value) const;
    /// The value that lies at a place of the sequence: labels of a legend.
    double Value(double p_position) const;

    /// A picture of the sequence without what lies outside, from left to right, or from bottom to top when it is higher than
    /// wide: the bar of a legend. Null for a size that is not positive.
    QImage Bar(int p_width, int p_height) const;

    /// The map as a texture, so that values may differ over a triangle: give each vertex `TextureCoordinate` of its value.
    /// One texel at each side holds the colours of what lies outside, a second row that of NaN.
    QImage TextureImage() const;
    /// How to sample it.
    Ogl::TextureSampling Sampling() const;
    Types::Vector2_Base<double> TextureCoordinate(double p_value) const;

    bool operator==(ColorMap const&) const = default;

private:
    Types::Color4f Interpolate(double p_position) const;
    std::size_t Texels() const;

    std::string _name;
    std::vector<Stop> _stops;
    double _first = 0;
    double _last = 1;
    Scale _scale = Scale::Linear;
    std::size_t _steps = 0;
    std::optional<Types::Color4f> _below;
    std::optional<Types::Color4f> _above;
    Types::Color4f _undefined{0, 0, 0, 0};
};

/// Writes "Viridis from 0 to 1".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, ColorMap const& p_map);

} // namespace Qor::Chart::Library
