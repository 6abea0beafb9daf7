#include "framework/library/ColorMap.h"

#include <QColor>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace Qor::Chart::Library {
namespace {

double const NaN = std::numeric_limits<double>::quiet_NaN();
double const Infinite = std::numeric_limits<double>::infinity();
Types::Color4f const Pink(1, 0, 1);
Types::Color4f const Lime(0, 1, 0);

QRgb Of(Types::Color4f const& p_color) {
    return p_color.ToQColor().rgba();
}

/// What a texture unit would read, by the letter of OpenGL: linear or nearest, clamped to the edge.
QColor Sample(ColorMap const& p_map, double p_value) {
    QImage const image = p_map.TextureImage();
    auto const at = p_map.TextureCoordinate(p_value);
    int const row = at.y < 0.5 ? 1 : 0;
    double const s = std::clamp(at.x, -10.0, 10.0) * image.width();
    auto const texel = [&](double p_index) {
        return image.pixelColor(std::clamp(static_cast<int>(p_index), 0, image.width() - 1), row);
    };
    if (p_map.Sampling().magnification == Ogl::Tokens::AGL_NEAREST)
        return texel(std::floor(s));
    double const left = std::floor(s - 0.5);
    double const part = s - 0.5 - left;
    QColor const a = texel(left);
    QColor const b = texel(left + 1);
    auto const mix = [&](int p_a, int p_b) { return static_cast<int>(std::lround(p_a + part * (p_b - p_a))); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()), mix(a.alpha(), b.alpha())};
}

TEST(ColorMap, handWorkedColors) {
    auto const map = [](char const* p_name) { return ColorMap::Named(p_name).value_or(ColorMap()); };
    using Scale = ColorMap::Scale;
    struct Case {
        char const* what;
        ColorMap map;
        double value;
        QRgb color;
    };
    Case const cases[] = {
        {"middle", map("gray").SetRange(-5, 5), 0, 0xFF808080},
        {"below, without a colour", map("Grey").SetRange(1, 2), -Infinite, 0xFF000000},
        {"below", map("Grey").SetRange(1, 2).SetBelowColor(Pink), 0.999, 0xFFFF00FF},
        {"above", map("Grey").SetRange(1, 2).SetAboveColor(Lime), Infinite, 0xFF00FF00},
        {"no number", map("Grey").SetUndefinedColor(Pink), NaN, 0xFFFF00FF},
        {"falling range", map("Grey").SetRange(2, 1), 1, 0xFFFFFFFF},
        {"beyond the end of a falling range", map("Grey").SetRange(2, 1).SetAboveColor(Lime), 0, 0xFF00FF00},
        {"no extent", map("Grey").SetRange(3, 3), 3, 0xFF808080},
        {"widest range", map("Grey").SetRange(-1.7e308, 1.7e308), 0, 0xFF808080},
        {"decades", map("Grey").SetRange(1, 10000, Scale::Logarithmic), 100, 0xFF808080},
        {"zero has no magnitude", map("Grey").SetRange(1, 10, Scale::Logarithmic).SetBelowColor(Pink), 0, 0xFFFF00FF},
        {"two steps", map("Grey").SetRange(0, 4).SetSteps(2), 1.999, 0xFF000000},
        {"turned around", map("Rainbow").Reverse(), 0, 0xFFFF0000},
        {"hot", map("hot"), 0.75, 0xFFFFFF00},
        {"middle of cool-warm", map("cool-warm"), 0.5, 0xFFDDDDDD},
        {"edge, from its right", ColorMap("", {{0.5, Pink}, {0.5, Lime}, {1, Lime}}), 0.5, 0xFF00FF00},
        {"edge, from its left", ColorMap("", {{1, Lime}, {0.5, Pink}}), 0.2, 0xFFFF00FF},
    };
    for (Case const& test : cases)
        EXPECT_EQ(Of(test.map.At(test.value)), test.color) << test.what;
    EXPECT_EQ(ColorMap::Named("nosuchmap"), std::nullopt);
}

TEST(ColorMap, aTextureShowsTheSameColorsAsALookUp) {
    for (std::string const& name : ColorMap::Names()) {
        for (std::size_t const steps : {0, 1, 7}) {
            ColorMap map = *ColorMap::Named(name);
            map.SetRange(10, 20).SetSteps(steps).SetBelowColor(Pink).SetAboveColor(Lime).SetUndefinedColor(Pink);
            for (double const value : {-Infinite, -3.0, 9.5, 10.0, 10.02, 12.5, 13.3, 17.77, 19.99, 20.0, 23.0, NaN}) {
                Types::Color4f const expected = map.At(value);
                Types::Color4f const actual(Sample(map, value));
                float const distance = std::max({std::abs(expected.red - actual.red),
                    std::abs(expected.green - actual.green), std::abs(expected.blue - actual.blue)});
                EXPECT_LE(distance, 1.1 / 255) << name << " in " << steps << " steps at " << value;
            }
        }
    }
}

} // namespace
} // namespace Qor::Chart::Library
