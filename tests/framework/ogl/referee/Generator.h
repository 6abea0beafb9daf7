#pragma once

#include "tests/framework/ogl/referee/Program.h"
#include "tests/framework/ogl/referee/Random.h"

namespace Qor::Chart::Ogl::Referee {

/// Which primitives a random program draws.
enum class Content { Polygons, LinesAndPoints, DashedLines };

/// A program of random state changes and draws, the same one for the same seed. With `Content::Polygons` all polygons are
/// filled, and there is nothing else; otherwise there are also points, lines, outlines and corners.
Program MakeRandomProgram(unsigned p_seed, Content p_content);

/// Points for a primitive, anywhere within 2 around the origin, except that quads and polygons are flat and convex.
std::vector<Agl::Vector3> MakeRandomPoints(Random& p_random, Token p_kind, int p_count);

} // namespace Qor::Chart::Ogl::Referee
