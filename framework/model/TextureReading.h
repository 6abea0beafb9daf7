#pragma once

#include "framework/Export.h"
#include "framework/model/ValueText.h"
#include "framework/types/TextureUnit.h"

#include <optional>
#include <string>
#include <string_view>

namespace Qor::Chart::Model {

/// How a texture is read between its pixels: where it is drawn smaller than it is, and where it is drawn larger.
struct TextureFilters {
    using Filter = Types::TextureUnit::Filter;

    Filter minification = Filter::LinearMipmapLinear;
    Filter magnification = Filter::Linear; ///< Nearest or Linear

    constexpr bool operator==(TextureFilters const&) const = default;
};

/// What lies beyond the left and right (s) and the lower and upper (t) edge of a texture.
struct TextureWraps {
    using Wrap = Types::TextureUnit::Wrap;

    Wrap s = Wrap::Repeat;
    Wrap t = Wrap::Repeat;

    constexpr bool operator==(TextureWraps const&) const = default;
};

template <>
struct QOR_FRAMEWORK_API ValueText<Types::TextureUnit::Environment> {
    static std::string Write(Types::TextureUnit::Environment p_value);
    static std::optional<Types::TextureUnit::Environment> Read(std::string_view p_text);
    static std::string Form();
};
/// Two names, or one that stands for both; for one filter with mipmaps the magnification is the same without them.
template <>
struct QOR_FRAMEWORK_API ValueText<TextureFilters> {
    static std::string Write(TextureFilters const& p_value);
    static std::optional<TextureFilters> Read(std::string_view p_text);
    static std::string Form();
};
/// Two names, or one that stands for both.
template <>
struct QOR_FRAMEWORK_API ValueText<TextureWraps> {
    static std::string Write(TextureWraps const& p_value);
    static std::optional<TextureWraps> Read(std::string_view p_text);
    static std::string Form();
};

} // namespace Qor::Chart::Model
