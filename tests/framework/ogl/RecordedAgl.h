#pragma once

#include "framework/ogl/Agl.h"
#include "framework/ogl/Bind.h"
#include "framework/ogl/RecorderBackend.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"
#include "framework/utility/Scoped.h"

#include <gmock/gmock.h>

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

/// Draws vertices one by one.
inline void DrawImmediate(Agl& p_agl, Token p_kind, std::vector<Agl::Vector3> const& p_vertices) {
    p_agl.Begin(p_kind);
    for (Agl::Vector3 const& vertex : p_vertices)
        p_agl.Vertex(vertex);
    p_agl.End();
}

} // namespace Qor::Chart::Ogl
