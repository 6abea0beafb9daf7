#pragma once

#include "framework/ogl/Texture.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace Qor::Chart::Ogl::Referee {

inline constexpr std::size_t TestTextureCount = 5;

/// The textures that programs bind by number: patterns of several sizes, some of them translucent, each sampled in a way of
/// its own.
std::vector<std::shared_ptr<Texture const>> TestTextures();

} // namespace Qor::Chart::Ogl::Referee
