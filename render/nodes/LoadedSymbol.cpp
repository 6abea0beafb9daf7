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

std::shared_ptr<Ogl::Shader const> LoadedSymbol::Variant::Get(DrawContext::GenericShaderEntry const& p_context,
    Ogl::GenericShader::State const& p_state, Utility::Scoped<Ogl::Agl>& p_agl) {
    if (context.Parameters() != p_context.Parameters()) {
        own = p_context.With(p_state);
        context = p_context;
    }
    return own(p_agl);
}

std::shared_ptr<Ogl::Shader const> LoadedSymbol::Shader(
    DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) const {
    using State = Ogl::GenericShader::State;
    DrawContext::GenericShaderEntry const& entry = p_context.Shader().Top();
    State const* const state = entry.Parameters();
    if (!HasColors() || !state || state->Options()[State::VertexColors])
        return entry(p_agl);
    std::bitset<2> options = state->Options();
    return _coloredShader.Get(entry, State(options.set(State::VertexColors)), p_agl);
}

std::shared_ptr<Ogl::Shader const> LoadedSymbol::FlatShader(
    DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) const {
    DrawContext::GenericShaderEntry const& entry = p_context.Shader().Top();
    if (!entry.Parameters())
        return entry(p_agl);
    return _flatShader.Get(entry, Ogl::GenericShader::State(std::bitset<2>()), p_agl);
}

} // namespace Qor::Chart::Render
