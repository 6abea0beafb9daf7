#include "framework/ogl/PrimitiveBuffer.h"

#include "framework/ogl/PickVolume.h"
#include "framework/ogl/PrimitiveTree.h"
#include "framework/utility/Ensure.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Ogl {

namespace {

/// True when the indices of a kind are what the pipeline reads already.
bool IsOwnAssembly(Token p_kind, Pipeline p_pipeline) {
    return (p_kind == Tokens::AGL_POINTS && p_pipeline == Pipeline::Points) ||
        (p_kind == Tokens::AGL_LINES && p_pipeline == Pipeline::Lines) ||
        (p_kind == Tokens::AGL_TRIANGLES && p_pipeline == Pipeline::Triangles);
}

} // namespace

PrimitiveBuffer::PrimitiveBuffer(
    std::shared_ptr<IndexBuffer const> p_indices, std::shared_ptr<VertexBuffer const> p_vertices)
    : _indices(std::move(p_indices)), _vertices(std::move(p_vertices)) {
    std::vector<std::uint32_t> const& indices = _indices->Indices();
    std::size_t const highest = indices.empty() ? 0 : *std::max_element(indices.begin(), indices.end());
    bool const inRange = indices.empty() || highest < _vertices->Size();
    _valid = QOR_ENSURE_TEXT(inRange, "index < vertices.Size()") && !indices.empty();
}

PrimitiveBuffer::~PrimitiveBuffer() = default;

std::span<std::uint32_t const> PrimitiveBuffer::Assembled(Pipeline p_pipeline) const {
    std::vector<std::uint32_t> const& source = _indices->Indices();
    if (IsOwnAssembly(Kind(), p_pipeline)) {
        std::size_t const whole = source.size() - source.size() % IndicesPerPrimitive(p_pipeline);
        return std::span<std::uint32_t const>(source).first(whole);
    }
    auto& assembled = _assembled[static_cast<std::size_t>(p_pipeline)];
    if (!assembled) {
        assembled = std::make_unique<std::vector<std::uint32_t>>();
        AssemblePrimitives(Kind(), source, p_pipeline, *assembled);
        assembled->shrink_to_fit();
    }
    return *assembled;
}

double PrimitiveBuffer::Pick(PickVolume const& p_volume, double p_nearest) const {
    if (!_valid || !p_volume.MayTouch(_vertices->Bounds())) {
        return PickVolume::NoHit;
    }
    auto const& positions = _vertices->Data().positions;
    if (!_tree) {
        Pipeline const pipeline = FilledPipeline(Kind());
        _tree = std::make_unique<PrimitiveTree const>(
            PrimitiveTree::Shape{positions, Assembled(pipeline), IndicesPerPrimitive(pipeline)});
    }
    return _tree->Pick(positions, p_volume, p_nearest);
}

} // namespace Qor::Chart::Ogl
