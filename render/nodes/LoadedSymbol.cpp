#include "render/nodes/LoadedSymbol.h"

#include "render/nodes/SymbolCache.h"

#include <bitset>
#include <utility>

namespace Qor::Chart::Render {

LoadedSymbol::LoadedSymbol(std::shared_ptr<SymbolCache> p_cache, Model::Symbol const& p_source,
    std::shared_ptr<Ogl::PrimitiveBuffer const> p_buffer, Box const& p_bounds)
    : _cache(std::move(p_cache))
    , _file(p_source.GetFile())
    , _shape(p_source.GetShape())
    , _buffer(std::move(p_buffer))
    , _bounds(p_bounds) {}

LoadedSymbol::~LoadedSymbol() {
    _cache->Forget(_file);
}

bool LoadedSymbol::IsUpToDate(Model::Symbol const& p_source) const {
    if (_file != p_source.GetFile())
        return false;
    return _file.empty() ? _shape == p_source.GetShape() : p_source.Time() < _confirmed;
}

std::shared_ptr<Ogl::Shader const> LoadedSymbol::Shader(
    DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) const {
    using State = Ogl::GenericShader::State;
    DrawContext::GenericShaderEntry const& entry = p_context.Shader().Top();
    State const* const state = entry.Parameters();
    if (!state)
        return entry(p_agl);
    bool const showsColors = HasColors() || state->Options()[State::VertexColors];
    if (state->IsPlain()) {
        if (showsColors == state->Options()[State::VertexColors])
            return entry(p_agl);
        return entry(p_agl, State(std::bitset<2>(state->Options()).set(State::VertexColors)));
    }
    Ogl::GenericShader::Look look = state->GetLook();
    if (!HasTexCoords())
        look.textures.reset();
    std::bitset<2> options = state->Options();
    options.set(State::VertexColors, showsColors && !look.hidesVertexColors);
    State const wanted(options, look);
    return wanted == *state ? entry(p_agl) : entry(p_agl, wanted);
}

std::shared_ptr<Ogl::Shader const> LoadedSymbol::FlatShader(
    DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) const {
    DrawContext::GenericShaderEntry const& entry = p_context.Shader().Top();
    if (!entry.Parameters())
        return entry(p_agl);
    return entry(p_agl, Ogl::GenericShader::State(std::bitset<2>()));
}

std::shared_ptr<Ogl::PrimitiveBuffer const> const& LoadedSymbol::TwiceTexturedBuffer(
    Utility::Scoped<Ogl::Agl>& p_agl) const {
    if (_buffer->Info().flags[Ogl::AttributeInfo::TexCoord1] || !HasTexCoords())
        return _buffer;
    if (!_twiceTextured) {
        Ogl::VertexData data = _buffer->Vertices()->Data();
        data.texCoords[1] = data.texCoords[0];
        _twiceTextured = p_agl->CreatePrimitiveBuffer(
            _buffer->Indices(), std::make_shared<Ogl::VertexBuffer const>(std::move(data)));
    }
    return _twiceTextured;
}

} // namespace Qor::Chart::Render
