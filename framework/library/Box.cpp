#include "framework/library/Box.h"

#include "framework/library/PlainState.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Scoped.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace Qor::Chart::Library {

using namespace Ogl::Tokens;
using Vector3 = Types::Vector3_Base<double>;

namespace {

/// A rectangle between whole pixels.
struct Bounds {
    double left;
    double bottom;
    double right;
    double top;

    Bounds Inset(double p_margin) const {
        return {left + p_margin, bottom + p_margin, right - p_margin, top - p_margin};
    }
    bool IsEmpty() const { return left >= right || bottom >= top; }
};

Bounds RoundOutwards(Types::Viewport<0> const& p_rectangle) {
    Types::Viewport<0> const rectangle = p_rectangle.Normalized();
    return {std::round(rectangle.x), std::round(rectangle.y), std::round(rectangle.Right()) + 1,
        std::round(rectangle.Top()) + 1};
}

void DrawArea(Ogl::Agl& p_agl, Bounds const& p_bounds, double p_depth) {
    p_agl.Begin(AGL_QUADS);
    p_agl.Vertex(p_bounds.left, p_bounds.bottom, p_depth);
    p_agl.Vertex(p_bounds.right, p_bounds.bottom, p_depth);
    p_agl.Vertex(p_bounds.right, p_bounds.top, p_depth);
    p_agl.Vertex(p_bounds.left, p_bounds.top, p_depth);
    p_agl.End();
}

void DrawFrame(Ogl::Agl& p_agl, Bounds const& p_outer, Bounds const& p_inner, double p_depth) {
    p_agl.Begin(AGL_QUAD_STRIP);
    for (int corner = 0; corner <= 4; ++corner) {
        bool const isRight = corner % 4 == 1 || corner % 4 == 2;
        bool const isTop = corner % 4 >= 2;
        for (Bounds const& bounds : {p_inner, p_outer}) {
            p_agl.Vertex(isRight ? bounds.right : bounds.left, isTop ? bounds.top : bounds.bottom, p_depth);
        }
    }
    p_agl.End();
}

// Corners of the unit box around the origin: bit 0 of their number tells the side along x, bit 1 along y, bit 2 along z.
constexpr std::array<std::uint32_t, 24> EdgeIndices{
    0, 1, 2, 3, 4, 5, 6, 7, 0, 2, 1, 3, 4, 6, 5, 7, 0, 4, 1, 5, 2, 6, 3, 7};
constexpr std::array<std::uint32_t, 24> SideIndices{
    0, 4, 6, 2, 1, 3, 7, 5, 0, 1, 5, 4, 2, 6, 7, 3, 0, 2, 3, 1, 4, 5, 7, 6};

Vector3 Corner(std::uint32_t p_number) {
    return {(p_number & 1U) != 0 ? 0.5 : -0.5, (p_number & 2U) != 0 ? 0.5 : -0.5, (p_number & 4U) != 0 ? 0.5 : -0.5};
}

/// What all boxes that are not flat are drawn with.
struct UnitBox {
    std::shared_ptr<Ogl::PrimitiveBuffer const> edges;
    std::shared_ptr<Ogl::PrimitiveBuffer const> sides;
};

UnitBox MakeUnitBox() {
    Ogl::VertexData data;
    for (std::uint32_t i = 0; i < 8; ++i) {
        data.positions.emplace_back(Corner(i));
    }
    auto const vertices = std::make_shared<Ogl::VertexBuffer const>(std::move(data));
    auto const join = [&](Ogl::Token p_kind, auto const& p_indices) {
        return std::make_shared<Ogl::PrimitiveBuffer const>(
            std::make_shared<Ogl::IndexBuffer const>(p_kind, std::vector(p_indices.begin(), p_indices.end())),
            vertices);
    };
    return {join(AGL_LINES, EdgeIndices), join(AGL_QUADS, SideIndices)};
}

UnitBox const& TheUnitBox() {
    static UnitBox const Unit = MakeUnitBox();
    return Unit;
}

/// Draws a piece of the unit box in the place of a box.
class Placed {
public:
    Placed(Ogl::Agl& p_agl, Types::BoundingBox_Base<double> const& p_box)
        : _agl(p_agl), _center(p_box.Center()), _extents(p_box.Extents()) {}

    bool IsFlat() const { return _extents.x == 0 || _extents.y == 0 || _extents.z == 0; }
    bool IsFinite() const {
        Vector3 const sum = _center + _extents;
        return std::isfinite(sum.x) && std::isfinite(sum.y) && std::isfinite(sum.z);
    }

    void Edges() const { Draw(TheUnitBox().edges, EdgeIndices); }
    void Sides() const { Draw(TheUnitBox().sides, SideIndices); }

private:
    // A flat box has no matrix that could be inverted, which picks need.
    void Draw(std::shared_ptr<Ogl::PrimitiveBuffer const> const& p_buffer,
        std::array<std::uint32_t, 24> const& p_indices) const {
        if (IsFlat()) {
            _agl.Begin(p_buffer->Kind());
            for (std::uint32_t const index : p_indices) {
                Vector3 const corner = Corner(index);
                _agl.Vertex(_center + Vector3(corner.x * _extents.x, corner.y * _extents.y, corner.z * _extents.z));
            }
            _agl.End();
            return;
        }
        _agl.PushMatrix();
        _agl.Translate(_center);
        _agl.Scale(_extents);
        _agl.Draw(p_buffer);
        _agl.PopMatrix();
    }

    Ogl::Agl& _agl;
    Vector3 _center;
    Vector3 _extents;
};

/// Opaque sides stand a little behind their edges, others hide nothing.
void DrawSides(Ogl::Agl& p_agl, Placed const& p_placed, bool p_isOpaque) {
    bool const isMirrored = p_agl.Get(AGL_MODELVIEW_MATRIX).Determinant() < 0;
    p_agl.FrontFace(isMirrored ? AGL_CW : AGL_CCW);
    p_agl.Enable(AGL_CULL_FACE);
    if (p_isOpaque) {
        p_agl.Enable(AGL_POLYGON_OFFSET_FILL);
        p_agl.PolygonOffset(1, 1);
    } else {
        p_agl.DepthMask(false);
    }
    if (!p_isOpaque && !p_placed.IsFlat()) {
        p_agl.CullFace(AGL_FRONT);
        p_placed.Sides();
    }
    p_agl.CullFace(AGL_BACK);
    p_placed.Sides();
}

} // namespace

Box::Box(QColor const& p_outline, QColor const& p_fill) : Box(p_outline, p_fill, nullptr) {}

Box::Box(QColor const& p_outline, QColor const& p_fill, Pattern::Stipple const* p_pattern)
    : _outline(p_outline.isValid() ? Types::Color4f(p_outline) : Types::Color4f(0, 0, 0, 0))
    , _fill(p_fill.isValid() ? Types::Color4f(p_fill) : Types::Color4f(0, 0, 0, 0))
    , _pattern(p_pattern) {}

void Box::SetLineWidth(float p_pixels) {
    if (QOR_ENSURE(p_pixels > 0 && std::isfinite(p_pixels))) {
        _lineWidth = p_pixels;
    }
}

void Box::operator()(
    Utility::Unscoped<Ogl::Agl> const& p_agl, Types::Viewport<0> const& p_rectangle, double p_depth) const {
    Utility::Scoped<Ogl::Agl> const scope(p_agl);
    Draw(*scope, p_rectangle, p_depth);
}

void Box::operator()(Utility::Unscoped<Ogl::Agl> const& p_agl, Types::BoundingBox_Base<double> const& p_box) const {
    Utility::Scoped<Ogl::Agl> const scope(p_agl);
    Draw(*scope, p_box);
}

void Box::Draw(Ogl::Agl& p_agl, Types::Viewport<0> const& p_rectangle, double p_depth) const {
    Bounds const outer = RoundOutwards(p_rectangle);
    if (!std::isfinite(outer.left + outer.right + outer.bottom + outer.top + p_depth)) {
        return;
    }
    bool const hasFrame = _outline.alpha > 0;
    double const width = std::max(1.0, std::round(static_cast<double>(_lineWidth)));
    Bounds const inner = outer.Inset(hasFrame ? width : 0);

    Ogl::PushAttribScope const saved(p_agl, AGL_ALL_ATTRIB_BITS);
    SetPlainState(p_agl);
    if (hasFrame) {
        p_agl.Color(_outline);
        inner.IsEmpty() ? DrawArea(p_agl, outer, p_depth) : DrawFrame(p_agl, outer, inner, p_depth);
    }
    if (_fill.alpha > 0 && !inner.IsEmpty()) {
        SetFillState(p_agl);
        DrawArea(p_agl, inner, p_depth);
    }
}

void Box::Draw(Ogl::Agl& p_agl, Types::BoundingBox_Base<double> const& p_box) const {
    if (!p_box.IsDefined()) {
        return;
    }
    Placed const placed(p_agl, p_box);
    if (!placed.IsFinite()) {
        return;
    }
    Ogl::PushAttribScope const saved(p_agl, AGL_ALL_ATTRIB_BITS);
    SetPlainState(p_agl);
    p_agl.MatrixMode(AGL_MODELVIEW);
    if (_fill.alpha > 0) {
        Ogl::PushAttribScope const savedByFill(p_agl, AGL_ALL_ATTRIB_BITS);
        SetFillState(p_agl);
        DrawSides(p_agl, placed, _fill.alpha >= 1 && _pattern == nullptr);
    }
    if (_outline.alpha > 0) {
        p_agl.LineWidth(_lineWidth);
        p_agl.Color(_outline);
        placed.Edges();
    }
}

void Box::SetFillState(Ogl::Agl& p_agl) const {
    p_agl.Color(_fill);
    if (_pattern != nullptr) {
        p_agl.Enable(AGL_POLYGON_STIPPLE);
        p_agl.PolygonStipple(_pattern->data());
    }
}

} // namespace Qor::Chart::Library
