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
    if (!HasColors() || !state || state->Options()[State::VertexColors])
        return entry(p_agl);
    if (_contextShader.Parameters() != state) {
        std::bitset<2> options = state->Options();
        _coloredShader = entry.With(State(options.set(State::VertexColors)));
        _contextShader = entry;
    }
    return _coloredShader(p_agl);
}

} // namespace Qor::Chart::Render
