#pragma once

#include "framework/ogl/VertexBuffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Qor::Chart::Library {

inline std::string ModelFile(std::string const& p_name) {
    return std::string(QOR_TEST_DATA) + "/models/" + p_name;
}

/// Expects triangles that are counter-clockwise from outside, all with an area, with normals of length one on the side of
/// their faces. Gives the volume that they enclose.
inline double ExpectSolid(Ogl::VertexData const& p_data, std::vector<std::uint32_t> const& p_indices) {
    using Vector3 = Types::Vector3_Base<double>;
    double volume = 0;
    EXPECT_EQ(p_data.normals.size(), p_data.positions.size());
    for (std::size_t i = 0; i < p_indices.size(); i += 3) {
        auto const at = [&](std::size_t p_corner) { return Vector3(p_data.positions[p_indices[i + p_corner]]); };
        Vector3 const face = Types::Cross(at(1) - at(0), at(2) - at(0));
        EXPECT_GT(Types::Length(face), 0) << "triangle " << i / 3 << " has no area";
        volume += Types::Dot(at(0), face) / 6;
        for (std::size_t corner = 0; corner < 3; ++corner) {
            Vector3 const normal(p_data.normals[p_indices[i + corner]]);
            EXPECT_NEAR(Types::Length(normal), 1, 1e-5);
            // Between two neighbours of a rough circle a normal may lean by half a step.
            EXPECT_GT(Types::Dot(Types::Normalized(face), normal), 0.4) << "triangle " << i / 3;
        }
    }
    EXPECT_GT(volume, 0);
    return volume;
}

} // namespace Qor::Chart::Library
