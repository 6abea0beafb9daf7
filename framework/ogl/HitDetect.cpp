#include "framework/ogl/HitDetect.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <span>

namespace Qor::Chart::Ogl {

namespace {

PickArea AreaAround(
    Types::Viewport<0> const& p_viewport, Types::Pos const& p_position, Types::Size const& p_tolerance) {
    double const x = std::trunc(static_cast<double>(static_cast<float>(p_position.x) + p_viewport.x));
    double const y = std::trunc(static_cast<double>(static_cast<float>(p_position.y) + p_viewport.y));
    double const halfWidth = std::max(1, p_tolerance.width);
    double const halfHeight = std::max(1, p_tolerance.height);
    return {x - halfWidth, y - halfHeight, x + halfWidth, y + halfHeight};
}

} // namespace

HitDetect::HitDetect(Utility::Scoped<Agl> const& p_agl, Types::Viewport<0> const& p_viewport,
    Types::Matrix4 const& p_projection, Types::Pos const& p_position, Types::Size const& p_tolerance,
    HitBuffer& p_buffer)
    : _agl(*p_agl), _depths(_agl.Depths()), _area(AreaAround(p_viewport, p_position, p_tolerance)), _buffer(&p_buffer) {
    _agl.PushAttrib(Tokens::AGL_VIEWPORT_BIT | Tokens::AGL_TRANSFORM_BIT);
    _agl.Viewport(p_viewport);
    Token const matrixMode = _agl.Current().transform.matrixMode;
    PushMatrixOf(Tokens::AGL_PROJECTION);
    _agl.LoadMatrix(p_projection);
    _agl.MatrixMode(matrixMode);
    _outer = _agl.Exchange(this);
}

HitDetect::HitDetect(Utility::Scoped<Agl> const& p_agl) : _agl(*p_agl), _depths(_agl.Depths()) {
    _agl.PushAttrib(Tokens::AGL_ALL_ATTRIB_BITS);
    Token const matrixMode = _agl.Current().transform.matrixMode;
    PushMatrixOf(Tokens::AGL_PROJECTION);
    PushMatrixOf(Tokens::AGL_MODELVIEW);
    _agl.MatrixMode(matrixMode);
    _outer = _agl.Exchange(this);
}

HitDetect::~HitDetect() {
    WriteRecord();
    _agl.RestoreDepths(_depths);
    _agl.Exchange(_outer);
}

void HitDetect::PushMatrixOf(Token p_mode) {
    _agl.MatrixMode(p_mode);
    _agl.PushMatrix();
}

void HitDetect::LoadName(std::uint64_t p_name) {
    WriteRecord();
    _pending.name = p_name;
}

void HitDetect::WriteRecord() {
    if (_isHit) {
        _buffer->Add(_pending);
    }
    _isHit = false;
}

void HitDetect::Hit(double p_depth) {
    if (p_depth == PickVolume::NoHit) {
        return;
    }
    _pending.depth = _isHit ? std::min(_pending.depth, p_depth) : p_depth;
    _isHit = true;
}

PickVolume HitDetect::Volume() const {
    return PickVolume(
        _area, _agl.Get(Tokens::AGL_MODELVIEW_MATRIX), _agl.Get(Tokens::AGL_PROJECTION_MATRIX), _agl.Current());
}

void HitDetect::Draw(PrimitiveBuffer const& p_buffer) {
    if (!_buffer) {
        return;
    }
    Hit(p_buffer.Pick(Volume(), _isHit ? _pending.depth : PickVolume::NoHit));
}

void HitDetect::Begin(Token p_kind) {
    _kind = p_kind;
    _vertices.clear();
}

void HitDetect::End() {
    if (!_buffer) {
        return;
    }
    _order.resize(_vertices.size());
    std::iota(_order.begin(), _order.end(), 0U);
    Pipeline const pipeline = FilledPipeline(_kind);
    _assembly.clear();
    AssemblePrimitives(_kind, _order, pipeline, _assembly);
    PickVolume const volume = Volume();
    std::size_t const corners = IndicesPerPrimitive(pipeline);
    for (std::size_t i = 0; i + corners <= _assembly.size(); i += corners) {
        std::array<Types::Vector4_Base<double>, 3> positions;
        for (std::size_t corner = 0; corner < corners; ++corner) {
            positions[corner] = _vertices[_assembly[i + corner]];
        }
        Hit(volume.Depth(std::span(positions).first(corners)));
    }
    _vertices.clear();
}

} // namespace Qor::Chart::Ogl
