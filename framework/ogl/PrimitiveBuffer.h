#pragma once

#include "framework/Export.h"
#include "framework/ogl/DeviceResource.h"
#include "framework/ogl/IndexBuffer.h"
#include "framework/ogl/PrimitiveAssembly.h"
#include "framework/ogl/VertexBuffer.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace Qor::Chart::Ogl {

class PickVolume;
class PrimitiveTree;

/// A shape that can be drawn: vertices joined with the indices that make primitives of them. Made by
/// `Agl::CreatePrimitiveBuffer`, shared by handle between all objects of that shape. Draws of the same handle that follow
/// each other reach the device as one, so share it wherever you can. The data stay in memory; the device's copy is made
/// on the first draw in a context and freed, in that context, after the last owner is gone.
class QOR_FRAMEWORK_API PrimitiveBuffer : public DeviceResource {
public:
    /// Both buffers must be set. Indices beyond the last vertex are reported, and then nothing is drawn.
    PrimitiveBuffer(std::shared_ptr<IndexBuffer const> p_indices, std::shared_ptr<VertexBuffer const> p_vertices);
    ~PrimitiveBuffer();

    bool IsValid() const { return _valid; }
    /// The primitive kind, `AGL_POINTS` to `AGL_POLYGON`.
    Token Kind() const { return _indices->Kind(); }
    std::shared_ptr<IndexBuffer const> const& Indices() const { return _indices; }
    std::shared_ptr<VertexBuffer const> const& Vertices() const { return _vertices; }
    AttributeInfo const& Info() const { return _vertices->Info(); }
    /// The indices in the order in which the pipeline reads them; see `AssemblePrimitives`. Computed on first use and
    /// kept; a list of triangles, lines or points is its own assembly and costs nothing.
    std::span<std::uint32_t const> Assembled(Pipeline p_pipeline) const;

    /// The nearest window depth below p_nearest of all primitives inside the volume, or PickVolume::NoHit; polygons are
    /// filled. The first pick that comes near the shape builds a hierarchy of bounding boxes, which is kept.
    double Pick(PickVolume const& p_volume, double p_nearest) const;

private:
    std::shared_ptr<IndexBuffer const> _indices;
    std::shared_ptr<VertexBuffer const> _vertices;
    bool _valid = false;
    mutable std::array<std::unique_ptr<std::vector<std::uint32_t>>, PipelineCount> _assembled;
    mutable std::unique_ptr<PrimitiveTree const> _tree;
};

} // namespace Qor::Chart::Ogl
