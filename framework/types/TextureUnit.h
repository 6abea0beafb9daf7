#pragma once

#include "framework/Export.h"
#include "framework/types/Color4f.h"
#include "framework/types/Matrix4.h"

#include <array>
#include <cstdint>
#include <iosfwd>

namespace Qor::Chart::Types {

/// The state of one texture unit of the fixed-function pipeline: which texture, how it is sampled, how it meets the
/// colour underneath. A plain value without any graphics call. The enumerators have the values of the OpenGL constants
/// of the same name, so that a cast is all that the graphics need; defaults are those of OpenGL.
struct QOR_FRAMEWORK_API TextureUnit {
    enum class Target : std::uint32_t {
        Texture1D = 0x0DE0,
        Texture2D = 0x0DE1,
    };
    enum class Environment : std::uint32_t {
        Modulate = 0x2100,
        Decal = 0x2101,
        Replace = 0x1E01,
        Blend = 0x0BE2,
        Add = 0x0104,
        Combine = 0x8570,
    };
    enum class Filter : std::uint32_t {
        Nearest = 0x2600,
        Linear = 0x2601,
        NearestMipmapNearest = 0x2700,
        LinearMipmapNearest = 0x2701,
        NearestMipmapLinear = 0x2702,
        LinearMipmapLinear = 0x2703,
    };
    enum class Wrap : std::uint32_t {
        Repeat = 0x2901,
        MirroredRepeat = 0x8370,
        ClampToEdge = 0x812F,
        ClampToBorder = 0x812D,
    };
    enum class CombineFunction : std::uint32_t {
        Replace = 0x1E01,
        Modulate = 0x2100,
        Add = 0x0104,
        AddSigned = 0x8574,
        Interpolate = 0x8575,
        Subtract = 0x84E7,
        Dot3Rgb = 0x86AE,
        Dot3Rgba = 0x86AF,
    };
    enum class Source : std::uint32_t {
        Texture = 0x1702,
        Constant = 0x8576,
        PrimaryColor = 0x8577,
        Previous = 0x8578,
    };
    enum class Operand : std::uint32_t {
        SourceColor = 0x0300,
        OneMinusSourceColor = 0x0301,
        SourceAlpha = 0x0302,
        OneMinusSourceAlpha = 0x0303,
    };

    /// How the combine environment computes one part of the colour out of up to three arguments.
    struct Combiner {
        CombineFunction function = CombineFunction::Modulate;
        std::array<Source, 3> sources{Source::Texture, Source::Previous, Source::Constant};
        std::array<Operand, 3> operands{Operand::SourceColor, Operand::SourceColor, Operand::SourceAlpha};
        float scale = 1.0F; ///< 1, 2 or 4

        constexpr bool operator==(Combiner const&) const = default;
    };

    bool enabled = false;
    Target target = Target::Texture2D;
    std::uint32_t texture = 0; ///< the name that the graphics gave the texture; 0 is none

    Environment environment = Environment::Modulate;
    Color4f environmentColor{0, 0, 0, 0};
    Combiner combineRgb;
    Combiner combineAlpha{CombineFunction::Modulate, {Source::Texture, Source::Previous, Source::Constant},
        {Operand::SourceAlpha, Operand::SourceAlpha, Operand::SourceAlpha}, 1.0F};

    Filter minification = Filter::NearestMipmapLinear;
    Filter magnification = Filter::Linear;
    Wrap wrapS = Wrap::Repeat;
    Wrap wrapT = Wrap::Repeat;
    Color4f borderColor{0, 0, 0, 0};
    float lodBias = 0.0F;
    float maxAnisotropy = 1.0F;

    Matrix4 matrix; ///< applied to texture coordinates

    bool operator==(TextureUnit const&) const = default;

    /// True when sampling needs the smaller images of the texture.
    constexpr bool NeedsMipmaps() const { return minification != Filter::Nearest && minification != Filter::Linear; }
};

/// Writes the fields that tell units apart: enabled, texture, environment, filters and wraps.
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, TextureUnit const& p_unit);

} // namespace Qor::Chart::Types
