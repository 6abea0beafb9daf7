#include "render/context/DrawContext.h"

#include "render/context/EventDispatcher.h"
#include "render/context/SceneCapabilities.h"
#include "framework/assets/Resource.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/ShaderSource.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"
#include "framework/utility/Scoped.h"

#include <memory>
#include <string>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using Handle = Utility::Unscoped<Ogl::Agl>;
using Agl = Utility::Scoped<Ogl::Agl>;

/// An empty viewport is a normal state with nothing to show; one that is empty in one direction only is a defect.
void RestoreViewport(Handle p_agl, Types::Viewport<0> const& p_viewport) {
    if (p_viewport.width > 0 && p_viewport.height > 0) {
        Agl agl(p_agl);
        agl->Viewport(p_viewport);
        return;
    }
    if (p_viewport.width <= 0 && p_viewport.height <= 0)
        return;
    Utility::GetLogger().err("cerr")
        << "WARNING: \"(p_viewport.width <= 0 && p_viewport.height <= 0) && \"Invalid viewport defined which cannot be "
           "set in OpenGL state!\"\" - "
        << Utility::AtLine(__PRETTY_FUNCTION__, __LINE__);
}

DrawContext::ViewportStack::ApplyFunction ViewportRestorer(Handle p_agl) {
    return [p_agl](Types::Viewport<0> const& p_viewport) { RestoreViewport(p_agl, p_viewport); };
}

DrawContext::ModelViewStack::ApplyFunction ModelViewLoader(Handle p_agl) {
    return [p_agl](Types::Matrix4 const& p_matrix) {
        Agl agl(p_agl);
        agl->MatrixMode(Ogl::Tokens::AGL_MODELVIEW);
        agl->LoadMatrix(p_matrix);
    };
}

DrawContext::ProjectionStack::ApplyFunction ProjectionLoader(Handle p_agl) {
    return [p_agl](Types::Matrix4 const& p_matrix) {
        Agl agl(p_agl);
        agl->MatrixMode(Ogl::Tokens::AGL_PROJECTION);
        agl->LoadMatrix(p_matrix);
        agl->MatrixMode(Ogl::Tokens::AGL_MODELVIEW);
    };
}

DrawContext::GenericShaderEntry MakeShaderEntry(
    std::shared_ptr<Assets::ShaderText const> const& p_text, std::bitset<2> const& p_options) {
    auto const source =
        p_text ? Ogl::ShaderSource(p_text->name, p_text->vertex, p_text->fragment) : Ogl::ShaderSource::Generic();
    auto const factory = [source](Agl& p_agl, Ogl::GenericShader::State const& p_state) {
        return p_agl->GenGenericShader(source, p_state);
    };
    return {factory, Ogl::GenericShader::State(p_options)};
}

/// The entry that a root context starts with. The last few are kept, so that the contexts of successive frames share one
/// shader and nothing is compiled again.
DrawContext::GenericShaderEntry ShaderEntryFor(
    Handle p_agl, Assets::Resource const& p_resource, std::bitset<2> const& p_options) {
    struct Kept {
        std::uint64_t agl; ///< number of the graphics that it was made for
        std::shared_ptr<Assets::ShaderText const> text;
        std::bitset<2> options;
        DrawContext::GenericShaderEntry entry;
    };
    static constexpr std::size_t Limit = 16;
    static thread_local std::vector<Kept> kept;

    auto const text = p_resource.ShaderSource(Ogl::ShaderSource::Generic().Name());
    for (Kept const& candidate : kept) {
        if (candidate.agl == p_agl.Get()->Id() && candidate.text == text && candidate.options == p_options)
            return candidate.entry;
    }
    if (kept.size() == Limit)
        kept.erase(kept.begin());
    kept.push_back({p_agl.Get()->Id(), text, p_options, MakeShaderEntry(text, p_options)});
    return kept.back().entry;
}

} // namespace

DrawContext::DrawContext(Utility::Unscoped<Ogl::Agl> p_agl, Assets::Resource const& p_resource,
    Assets::ImageCache const& p_imageCache, EventDispatcher& p_dispatcher, Types::Schema const& p_schema,
    Types::NiceIntervals::NumberFormat const& p_numberFormat, Library::Geometry const& p_geometry, DrawMode p_mode,
    std::bitset<2> const& p_shaderOptions, Core::Verbosity p_verbosity, SceneCapabilities const& p_capabilities,
    boost::shared_ptr<Ogl::Highlight> const& p_highlighter)
    : _viewport(*this, Types::Viewport<0>(), ViewportRestorer(p_agl))
    , _modelView(*this, Types::Matrix4(), ModelViewLoader(p_agl))
    , _camera(*this, Types::Matrix4())
    , _projection(*this, Types::Matrix4(), ProjectionLoader(p_agl))
    , _schema(*this, p_schema)
    , _numberFormat(*this, p_numberFormat)
    , _projectionMode(*this, Render::ProjectionMode::Orthographic)
    , _lightCount(*this, 0)
    , _stencilBits(*this, Utility::BoundedCounter(0))
    , _clipPlanes(*this, Utility::BoundedCounter(0))
    , _textures(*this, Utility::BoundedCounter(0))
    , _lights(*this, LightList())
    , _nodeFilter(*this, NodeFilterDelegate())
    , _firstTexture(*this, Types::TextureUnit())
    , _secondTexture(*this, Types::TextureUnit())
    , _shader(*this, ShaderEntryFor(p_agl, p_resource, p_shaderOptions))
    , _agl(p_agl)
    , _dispatcher(&p_dispatcher)
    , _mode(p_mode)
    , _geometry(&p_geometry)
    , _resource(&p_resource)
    , _imageCache(&p_imageCache)
    , _highlighter(p_highlighter)
    , _capabilities(&p_capabilities)
    , _verbosity(p_verbosity) {
    Agl agl(_agl);
    _stencilBits.Set(Utility::BoundedCounter(agl->GetMaxStencilBits()));
    _clipPlanes.Set(Utility::BoundedCounter(agl->GetMaxClipPlanes()));
    _textures.Set(Utility::BoundedCounter(agl->GetMaxTextures()));
}

DrawContext::DrawContext(DrawContext const& p_other)
    : CheckPointManager()
    , _viewport(*this, p_other._viewport.Top(), ViewportRestorer(p_other._agl))
    , _modelView(*this, p_other._modelView.Top(), ModelViewLoader(p_other._agl))
    , _camera(*this, p_other._camera.Top())
    , _projection(*this, p_other._projection.Top(), ProjectionLoader(p_other._agl))
    , _schema(*this, p_other._schema.Top())
    , _numberFormat(*this, p_other._numberFormat.Top())
    , _projectionMode(*this, p_other._projectionMode.Top())
    , _lightCount(*this, p_other._lightCount.Top())
    , _stencilBits(*this, p_other._stencilBits.Top())
    , _clipPlanes(*this, p_other._clipPlanes.Top())
    , _textures(*this, p_other._textures.Top())
    , _lights(*this, p_other._lights.Top())
    , _nodeFilter(*this, p_other._nodeFilter.Top())
    , _firstTexture(*this, p_other._firstTexture.Top())
    , _secondTexture(*this, p_other._secondTexture.Top())
    , _shader(*this, p_other._shader.Top())
    , _agl(p_other._agl)
    , _dispatcher(p_other._dispatcher)
    , _mode(p_other._mode)
    , _geometry(p_other._geometry)
    , _resource(p_other._resource)
    , _imageCache(p_other._imageCache)
    , _frameNumber(p_other._frameNumber)
    , _lastFrame(p_other._lastFrame)
    , _perViewportOffset(p_other._perViewportOffset)
    , _highlighter(p_other._highlighter)
    , _flags(p_other._flags)
    , _capabilities(p_other._capabilities)
    , _showBounds(p_other._showBounds)
    , _verbosity(p_other._verbosity) {}

DrawContext::DrawContext(DrawContext const& p_other, EventDispatcher& p_dispatcher) : DrawContext(p_other) {
    _dispatcher = &p_dispatcher;
}

DrawContext::DrawContext(DrawContext const& p_other, DrawInfo const& p_info) : DrawContext(p_other) {
    _mode = p_info.mode;
    _flags = p_info.flags;
}

DrawContext::~DrawContext() = default;

Ogl::Highlight const& DrawContext::GetHighlighter() const {
    static Ogl::Highlight const fallback;
    return QOR_ENSURE(_highlighter) ? *_highlighter : fallback;
}

} // namespace Qor::Chart::Render
