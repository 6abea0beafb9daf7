#include "framework/library/ColorMap.h"

#include "framework/library/ColorMapTables.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"

#include <QColor>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>
#include <ostream>
#include <sstream>
#include <utility>

namespace Qor::Chart::Library {

using Types::Color4f;

namespace {

constexpr std::size_t SmoothTexels = 1024;
constexpr std::size_t MaxSteps = 1024;
constexpr double Outside = 1e3;
constexpr double Margin = 1e-3;

/// The name as it is compared.
std::string Plain(std::string_view p_name) {
    std::string plain;
    for (char const letter : p_name) {
        if (letter != ' ' && letter != '-' && letter != '_') {
            plain += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
        }
    }
    return plain == "gray" ? "grey" : plain;
}

float Channel(std::uint32_t p_color, int p_shift) {
    return static_cast<float>((p_color >> p_shift) & 0xFF) / 255;
}

std::vector<ColorMap::Stop> StopsOf(ColorMapTable const& p_table) {
    std::vector<ColorMap::Stop> stops;
    stops.reserve(p_table.colors.size());
    for (std::uint32_t const color : p_table.colors) {
        stops.push_back({static_cast<double>(stops.size()) / static_cast<double>(p_table.colors.size() - 1),
            Color4f(Channel(color, 16), Channel(color, 8), Channel(color, 0))});
    }
    return stops;
}

Color4f Mix(Color4f const& p_a, Color4f const& p_b, double p_part) {
    auto const part = static_cast<float>(p_part);
    return Color4f(std::lerp(p_a.red, p_b.red, part), std::lerp(p_a.green, p_b.green, part),
        std::lerp(p_a.blue, p_b.blue, part), std::lerp(p_a.alpha, p_b.alpha, part));
}

} // namespace

ColorMap::ColorMap() : ColorMap(std::string(ColorMapTables()[0].name), StopsOf(ColorMapTables()[0])) {}

ColorMap::ColorMap(std::string p_name, std::vector<Stop> p_stops)
    : _name(std::move(p_name)), _stops(std::move(p_stops)) {
    auto const dropped = std::erase_if(_stops, [](Stop const& p_stop) { return !std::isfinite(p_stop.position); });
    (void)QOR_ENSURE_TEXT(dropped == 0, "all stops of a colour map have a finite position");
    if (!QOR_ENSURE_TEXT(!_stops.empty(), "a colour map has a stop")) {
        _stops = {{0, Color4f(0, 0, 0)}, {1, Color4f(1, 1, 1)}};
    }
    std::ranges::stable_sort(_stops, {}, &Stop::position);
}

std::vector<std::string> const& ColorMap::Names() {
    static std::vector<std::string> const NamesOfTables = [] {
        std::vector<std::string> names;
        for (ColorMapTable const& table : ColorMapTables()) {
            names.emplace_back(table.name);
        }
        return names;
    }();
    return NamesOfTables;
}

std::optional<ColorMap> ColorMap::Named(std::string_view p_name) {
    std::string const name = Plain(p_name);
    for (ColorMapTable const& table : ColorMapTables()) {
        if (Plain(table.name) == name) {
            return ColorMap(std::string(table.name), StopsOf(table));
        }
    }
    return std::nullopt;
}

ColorMap& ColorMap::SetRange(double p_first, double p_last, Scale p_scale) {
    if (!QOR_ENSURE(std::isfinite(p_first) && std::isfinite(p_last))) {
        return *this;
    }
    _first = p_first;
    _last = p_last;
    _scale = p_scale;
    if (_scale == Scale::Logarithmic && !(_first > 0 && _last > 0)) {
        _scale = Scale::Linear;
        std::ostringstream warning;
        warning << "The colours " << *this
                << " cannot be spread by magnitude and are spread evenly; give a range in which"
                << " both ends are greater than 0.";
        Utility::GetLogger().warning(warning.str());
    }
    return *this;
}

ColorMap& ColorMap::SetSteps(std::size_t p_steps) {
    _steps = std::min(p_steps, MaxSteps);
    return *this;
}

ColorMap& ColorMap::Reverse() {
    std::ranges::reverse(_stops);
    for (Stop& stop : _stops) {
        stop.position = 1 - stop.position;
    }
    return *this;
}

ColorMap& ColorMap::SetBelowColor(std::optional<Color4f> const& p_color) {
    _below = p_color;
    return *this;
}

ColorMap& ColorMap::SetAboveColor(std::optional<Color4f> const& p_color) {
    _above = p_color;
    return *this;
}

ColorMap& ColorMap::SetUndefinedColor(Color4f const& p_color) {
    _undefined = p_color;
    return *this;
}

Color4f ColorMap::At(double p_value) const {
    return AtPosition(Position(p_value));
}

Color4f ColorMap::AtPosition(double p_position) const {
    if (std::isnan(p_position)) {
        return _undefined;
    }
    if (p_position < 0 && _below) {
        return *_below;
    }
    if (p_position > 1 && _above) {
        return *_above;
    }
    double const position = std::clamp(p_position, 0.0, 1.0);
    if (_steps == 0) {
        return Interpolate(position);
    }
    auto const steps = static_cast<double>(_steps);
    double const step = std::min(std::floor(position * steps), steps - 1);
    return Interpolate(_steps == 1 ? 0.5 : step / (steps - 1));
}

double ColorMap::Position(double p_value) const {
    if (std::isnan(p_value)) {
        return p_value;
    }
    if (_first == _last) {
        return p_value == _first ? 0.5 : std::copysign(std::numeric_limits<double>::infinity(), p_value - _first);
    }
    if (_scale == Scale::Logarithmic) {
        double const first = std::log(_first);
        return (std::log(std::max(p_value, 0.0)) - first) / (std::log(_last) - first);
    }
    // Halves, so that the widest range of all still has a width.
    return (p_value / 2 - _first / 2) / (_last / 2 - _first / 2);
}

double ColorMap::Value(double p_position) const {
    return _scale == Scale::Logarithmic ? std::exp(std::lerp(std::log(_first), std::log(_last), p_position))
                                        : std::lerp(_first, _last, p_position);
}

QImage ColorMap::Bar(int p_width, int p_height) const {
    if (p_width <= 0 || p_height <= 0) {
        return {};
    }
    QImage bar(p_width, p_height, QImage::Format_RGBA8888);
    int const length = std::max(p_width, p_height);
    for (int i = 0; i < length; ++i) {
        QColor const color = AtPosition((i + 0.5) / length).ToQColor();
        for (int k = 0; k < std::min(p_width, p_height); ++k) {
            bar.setPixelColor(p_width >= p_height ? i : k, p_width >= p_height ? k : p_height - 1 - i, color);
        }
    }
    return bar;
}

QImage ColorMap::TextureImage() const {
    auto const texels = static_cast<int>(Texels());
    QImage image(texels + 2, 2, QImage::Format_RGBA8888);
    image.fill(_undefined.ToQColor());
    for (int i = -1; i <= texels; ++i) {
        double const inside = texels == 1 ? 0.5 : i / (texels - 1.0);
        image.setPixelColor(i + 1, 1, AtPosition(i < 0 ? -Outside : i == texels ? Outside : inside).ToQColor());
    }
    return image;
}

Ogl::TextureSampling ColorMap::Sampling() const {
    Ogl::Token const filter = _steps == 0 ? Ogl::Tokens::AGL_LINEAR : Ogl::Tokens::AGL_NEAREST;
    return {filter, filter};
}

Types::Vector2_Base<double> ColorMap::TextureCoordinate(double p_value) const {
    static constexpr double LowerRow = 0.25;
    static constexpr double UpperRow = 0.75;
    double const position = Position(p_value);
    if (std::isnan(position)) {
        return {0, UpperRow};
    }
    auto const texels = static_cast<double>(Texels());
    double texel = 1 + std::clamp(position, -Outside, Outside) * texels;
    if (_steps == 0) {
        // Both ends of the range lie in the middle of their texels.
        texel = 1.5 + std::clamp(position, -Outside, Outside) * (texels - 1);
    } else if (position >= 0 && position <= 1) {
        texel = std::clamp(texel, 1 + Margin, 1 + texels - Margin);
    }
    return {texel / (texels + 2), LowerRow};
}

Color4f ColorMap::Interpolate(double p_position) const {
    auto const above = std::ranges::upper_bound(_stops, p_position, {}, &Stop::position);
    if (above == _stops.begin()) {
        return above->color;
    }
    Stop const& below = *std::prev(above);
    if (above == _stops.end() || below.position == p_position) {
        return below.color;
    }
    return Mix(below.color, above->color, (p_position - below.position) / (above->position - below.position));
}

std::size_t ColorMap::Texels() const {
    return _steps == 0 ? SmoothTexels : _steps;
}

std::ostream& operator<<(std::ostream& p_stream, ColorMap const& p_map) {
    return p_stream << p_map.Name() << " from " << p_map.First() << " to " << p_map.Last();
}

} // namespace Qor::Chart::Library
