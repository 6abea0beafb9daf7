#pragma once

#include "framework/ogl/Agl.h"
#include "framework/ogl/RecorderBackend.h"

#include <memory>
#include <utility>
#include <vector>

namespace Qor::Chart::Ogl {

/// An Agl over a recorder that the test can look into.
struct RecordedAgl {
    RecorderBackend* recorder;
    Agl agl;

    RecordedAgl() : RecordedAgl(std::make_unique<RecorderBackend>()) {}

    /// What was recorded since the last call.
    std::vector<RecordedCommand> Take() {
        agl.Flush();
        std::vector<RecordedCommand> commands = recorder->Commands();
        recorder->Forget();
        return commands;
    }

private:
    explicit RecordedAgl(std::unique_ptr<RecorderBackend> p_recorder)
        : recorder(p_recorder.get()), agl(std::move(p_recorder)) {}
};

inline std::shared_ptr<PrimitiveBuffer const> MakeShape(
    Agl& p_agl, Token p_kind, VertexData p_data, std::vector<std::uint32_t> p_indices) {
    return p_agl.CreatePrimitiveBuffer(
        std::make_shared<IndexBuffer>(p_kind, std::move(p_indices)), std::make_shared<VertexBuffer>(std::move(p_data)));
}

/// A square around the origin in the plane z = 0, of side 1, its front towards positive z.
inline std::shared_ptr<PrimitiveBuffer const> MakeSquare(Agl& p_agl) {
    VertexData data;
    data.positions = {{-0.5F, -0.5F, 0}, {0.5F, -0.5F, 0}, {0.5F, 0.5F, 0}, {-0.5F, 0.5F, 0}};
    data.normals.assign(4, {0, 0, 1});
    return MakeShape(p_agl, Tokens::AGL_QUADS, std::move(data), {0, 1, 2, 3});
}

/// The unit cube around the origin as quads, its fronts outwards.
inline std::shared_ptr<PrimitiveBuffer const> MakeCube(Agl& p_agl) {
    VertexData data;
    std::vector<std::uint32_t> indices;
    for (int face = 0; face < 6; ++face) {
        float const side = face % 2 == 0 ? 0.5F : -0.5F;
        for (int corner = 0; corner < 4; ++corner) {
            float const u = (corner == 1 || corner == 2 ? 0.5F : -0.5F) * (side > 0 ? 1.0F : -1.0F);
            float const v = corner >= 2 ? 0.5F : -0.5F;
            float const rotated[5] = {side, u, v, side, u};
            int const axis = face / 2;
            int const x = (3 - axis) % 3;
            data.positions.emplace_back(rotated[x], rotated[x + 1], rotated[x + 2]);
            float const normal[3] = {axis == 0 ? 2 * side : 0, axis == 1 ? 2 * side : 0, axis == 2 ? 2 * side : 0};
            data.normals.emplace_back(normal[0], normal[1], normal[2]);
            indices.push_back(static_cast<std::uint32_t>(indices.size()));
        }
    }
    return MakeShape(p_agl, Tokens::AGL_QUADS, std::move(data), std::move(indices));
}

} // namespace Qor::Chart::Ogl
