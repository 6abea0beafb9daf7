#include "framework/types/TextureUnit.h"

#include <ostream>

namespace Qor::Chart::Types {

namespace {

char const* NameOf(TextureUnit::Environment p_environment) {
    switch (p_environment) {
    case TextureUnit::Environment::Modulate:
        return "modulate";
    case TextureUnit::Environment::Decal:
        return "decal";
    case TextureUnit::Environment::Replace:
        return "replace";
    case TextureUnit::Environment::Blend:
        return "blend";
    case TextureUnit::Environment::Add:
        return "add";
    case TextureUnit::Environment::Combine:
        return "combine";
    }
    return "unknown";
}

char const* NameOf(TextureUnit::Filter p_filter) {
    switch (p_filter) {
    case TextureUnit::Filter::Nearest:
        return "nearest";
    case TextureUnit::Filter::Linear:
        return "linear";
    case TextureUnit::Filter::NearestMipmapNearest:
        return "nearest-mipmap-nearest";
    case TextureUnit::Filter::LinearMipmapNearest:
        return "linear-mipmap-nearest";
    case TextureUnit::Filter::NearestMipmapLinear:
        return "nearest-mipmap-linear";
    case TextureUnit::Filter::LinearMipmapLinear:
        return "linear-mipmap-linear";
    }
    return "unknown";
}

char const* NameOf(TextureUnit::Wrap p_wrap) {
    switch (p_wrap) {
    case TextureUnit::Wrap::Repeat:
        return "repeat";
    case TextureUnit::Wrap::MirroredRepeat:
        return "mirrored-repeat";
    case TextureUnit::Wrap::ClampToEdge:
        return "clamp-to-edge";
    case TextureUnit::Wrap::ClampToBorder:
        return "clamp-to-border";
    }
    return "unknown";
}

} // namespace

std::ostream& operator<<(std::ostream& p_stream, TextureUnit const& p_unit) {
    return p_stream << (p_unit.enabled ? "enabled" : "disabled") << ", texture " << p_unit.texture << ", "
                    << NameOf(p_unit.environment) << ", filters " << NameOf(p_unit.minification) << " and "
                    << NameOf(p_unit.magnification) << ", wraps " << NameOf(p_unit.wrapS) << " and "
                    << NameOf(p_unit.wrapT);
}

} // namespace Qor::Chart::Types
