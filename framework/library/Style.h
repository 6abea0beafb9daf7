#pragma once

#include "framework/Export.h"
#include "framework/ogl/Agl.h"
#include "framework/types/Color4f.h"

#include <cstdint>
#include <optional>

namespace Qor::Chart::Library {

/// How lines are drawn. A plain value.
struct QOR_FRAMEWORK_API LineStyle {
    /// Patterns for lines, the lowest bit first.
    static constexpr std::uint16_t Solid = 0xFFFF;
    static constexpr std::uint16_t Dashed = 0x00FF;
    static constexpr std::uint16_t Dotted = 0x3333;
    static constexpr std::uint16_t DashDotted = 0x1C7F;

    float width = 1; ///< pixels
    std::uint16_t pattern = Solid; ///< which pixels along the line are drawn
    int patternFactor = 1; ///< how many pixels each bit of the pattern stands for

    constexpr bool operator==(LineStyle const&) const = default;
    void Apply(Ogl::Agl& p_agl) const;
};

/// How points are drawn. A plain value.
struct QOR_FRAMEWORK_API PointStyle {
    float size = 1; ///< diameter in pixels
    bool isRound = false; ///< square otherwise

    constexpr bool operator==(PointStyle const&) const = default;
    void Apply(Ogl::Agl& p_agl) const;
};

/// How areas are drawn. A plain value.
struct QOR_FRAMEWORK_API FillStyle {
    enum class Kind {
        Filled,
        Hatched, ///< by `Pattern::HatchPattern`
        Screened, ///< by `Pattern::PolygonStipplePattern` of the density
        Outlined, ///< the outline alone, as lines
        Corners, ///< the corners alone, as points
    };
    enum class Sides {
        Both,
        Front, ///< the back is left out
        Back, ///< the front is left out
    };

    Kind kind = Kind::Filled;
    Sides sides = Sides::Both;
    int density = 8; ///< pixels of every sixteen that a screen lets through

    constexpr bool operator==(FillStyle const&) const = default;
    void Apply(Ogl::Agl& p_agl) const;
};

/// A look for whatever is drawn: what is not set stays as it is. A plain value; nested ones override each other.
///
///     Library::Style style;
///     style.line = {.width = 2, .pattern = Library::LineStyle::Dashed};
///     Library::StyleScope const scope(agl, style);
struct QOR_FRAMEWORK_API Style {
    std::optional<Types::Color4f> color;
    std::optional<LineStyle> line;
    std::optional<PointStyle> point;
    std::optional<FillStyle> fill;
    std::optional<bool> isLit;
    std::optional<bool> isTransparent; ///< whether the alpha of colours and textures lets through what lies behind

    constexpr bool operator==(Style const&) const = default;
    /// Sets what is set, to be brought back by the caller.
    void Apply(Ogl::Agl& p_agl) const;
};

/// Applies a style and brings back at its end what was before, with everything else that was set meanwhile, matrices
/// excepted. The `Agl` must outlive it.
class QOR_FRAMEWORK_API StyleScope {
public:
    StyleScope(Ogl::Agl& p_agl, Style const& p_style);
    ~StyleScope();
    StyleScope(StyleScope const&) = delete;
    StyleScope& operator=(StyleScope const&) = delete;

private:
    Ogl::Agl& _agl;
};

} // namespace Qor::Chart::Library
