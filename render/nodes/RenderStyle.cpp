#include "render/nodes/RenderStyle.h"

#include "render/nodes/BlendOver.h"
#include "render/nodes/OverlayShapes.h"
#include "render/nodes/StyleTextures.h"
#include "render/context/EventDispatcher.h"
#include "render/context/SceneCapabilities.h"
#include "render/context/UpdateContext.h"
#include "framework/assets/ImageError.h"
#include "framework/library/Style.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/TextureSampling.h"
#include "framework/utility/Ensure.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;
using Agl = Utility::Scoped<Ogl::Agl>;
using Style = Model::RenderStyle;
using AlphaMode = Ogl::GenericShader::AlphaMode;

constexpr std::array Hooks{HandledUpdate, HandledSetup, HandledTeardown, HandledSetupOverlay};

/// The properties of one of the two textures.
struct UnitProperties {
    Model::Property<Style, std::string> const& texture;
    Model::Property<Style, Style::Environment> const& environment;
    Model::Property<Style, Model::TextureFilters> const& filters;
    Model::Property<Style, Model::TextureWraps> const& wraps;
    Model::Property<Style, Style::TextureVector> const& scale;
    Model::Property<Style, Style::TextureVector> const& offset;

    bool IsAnySet(Style const& p_model) const {
        return p_model.IsSet(texture) || p_model.IsSet(environment) || p_model.IsSet(filters) || p_model.IsSet(wraps) ||
            p_model.IsSet(scale) || p_model.IsSet(offset);
    }
};

UnitProperties const& PropertiesOf(std::size_t p_unit) {
    static UnitProperties const first{Style::TextureProperty, Style::TextureEnvironmentProperty,
        Style::TextureFiltersProperty, Style::TextureWrapsProperty, Style::TextureScaleProperty,
        Style::TextureOffsetProperty};
    static UnitProperties const second{Style::SecondTextureProperty, Style::SecondTextureEnvironmentProperty,
        Style::SecondTextureFiltersProperty, Style::SecondTextureWrapsProperty, Style::SecondTextureScaleProperty,
        Style::SecondTextureOffsetProperty};
    return p_unit == 0 ? first : second;
}

template <class T, class Target>
void Take(Style const& p_model, Model::Property<Style, T> const& p_property, Target& p_target) {
    if (p_model.IsSet(p_property))
        p_target = static_cast<Target>(p_property.Get(p_model));
}

/// Scale and offset stand in the matrix, so that each of them may come from another style.
Types::Matrix4 TextureMatrix(Types::Matrix4 const& p_outer, UnitProperties const& p_properties, Style const& p_model) {
    double const* const m = p_outer.Data();
    Style::TextureVector scale(m[0], m[5]);
    Style::TextureVector offset(m[12], m[13]);
    Take(p_model, p_properties.scale, scale);
    Take(p_model, p_properties.offset, offset);
    return Types::Matrix4::Translation({offset.x, offset.y, 0}) * Types::Matrix4::Scaling({scale.x, scale.y, 1});
}

bool ChangesSchema(Style const& p_model) {
    std::initializer_list<Model::PropertyInfo const*> const properties{&Style::ForegroundColorProperty,
        &Style::TextColorProperty, &Style::HighlightColorProperty, &Style::SelectionColorProperty,
        &Style::FontSizeProperty, &Style::LineWidthProperty, &Style::PointSizeProperty};
    return std::any_of(properties.begin(), properties.end(), [&](auto const* p) { return p_model.IsSet(*p); });
}

void WriteSchema(DrawContext& p_context, Style const& p_model) {
    Types::Schema schema = p_context.Schema().Top();
    Take(p_model, Style::ForegroundColorProperty, schema.foregroundColor);
    Take(p_model, Style::TextColorProperty, schema.textColor);
    Take(p_model, Style::HighlightColorProperty, schema.highlightColor);
    Take(p_model, Style::SelectionColorProperty, schema.selectionColor);
    if (p_model.IsSet(Style::FontSizeProperty))
        schema.fontSize = static_cast<int>(std::lround(p_model.FontSize()));
    Take(p_model, Style::LineWidthProperty, schema.lineWidth);
    Take(p_model, Style::PointSizeProperty, schema.pointSize);
    p_context.Schema().Set(std::move(schema));
}

void Switch(Ogl::Agl& p_agl, Ogl::Token p_capability, bool p_on) {
    p_on ? p_agl.Enable(p_capability) : p_agl.Disable(p_capability);
}

std::uint16_t BitsOf(Style::LinePattern p_pattern) {
    switch (p_pattern) {
    case Style::LinePattern::Dashed:
        return Library::LineStyle::Dashed;
    case Style::LinePattern::Dotted:
        return Library::LineStyle::Dotted;
    case Style::LinePattern::DashDotted:
        return Library::LineStyle::DashDotted;
    case Style::LinePattern::Solid:
        break;
    }
    return Library::LineStyle::Solid;
}

Ogl::Token ModeOf(Style::PolygonMode p_mode) {
    if (p_mode == Style::PolygonMode::Filled)
        return AGL_FILL;
    return p_mode == Style::PolygonMode::Outlines ? AGL_LINE : AGL_POINT;
}

/// Rims are soft through their alpha.
void Smooth(Agl& p_agl, Ogl::Token p_capability, bool p_on) {
    Switch(*p_agl, p_capability, p_on);
    if (p_on)
        BlendOver(p_agl);
}

void SetUpLines(Agl& p_agl, Style const& p_model, float p_pixelRatio) {
    if (p_model.IsSet(Style::LineWidthProperty))
        p_agl->LineWidth(p_pixelRatio * static_cast<float>(p_model.LineWidth()));
    if (p_model.IsSet(Style::LinePatternProperty)) {
        std::uint16_t const pattern = BitsOf(p_model.GetLinePattern());
        Switch(*p_agl, AGL_LINE_STIPPLE, pattern != Library::LineStyle::Solid);
        p_agl->LineStipple(std::max(1, static_cast<int>(std::lround(p_pixelRatio))), pattern);
    }
    if (p_model.IsSet(Style::SmoothLinesProperty))
        Smooth(p_agl, AGL_LINE_SMOOTH, p_model.HasSmoothLines());
    if (p_model.IsSet(Style::PointSizeProperty))
        p_agl->PointSize(p_pixelRatio * static_cast<float>(p_model.PointSize()));
    if (p_model.IsSet(Style::RoundPointsProperty))
        Smooth(p_agl, AGL_POINT_SMOOTH, p_model.HasRoundPoints());
}

void SetUpPolygons(Agl& p_agl, Style const& p_model) {
    if (p_model.IsSet(Style::PolygonModeProperty))
        p_agl->PolygonMode(AGL_FRONT_AND_BACK, ModeOf(p_model.GetPolygonMode()));
    if (!p_model.IsSet(Style::CullingProperty))
        return;
    Style::Culling const culling = p_model.GetCulling();
    Switch(*p_agl, AGL_CULL_FACE, culling != Style::Culling::None);
    if (culling != Style::Culling::None)
        p_agl->CullFace(culling == Style::Culling::Back ? AGL_BACK : AGL_FRONT);
}

AlphaMode AlphaModeOf(Style::AlphaMode p_mode) {
    return static_cast<AlphaMode>(p_mode);
}
static_assert(static_cast<int>(AlphaMode::Blended) == static_cast<int>(Style::AlphaMode::Blended));
static_assert(static_cast<int>(AlphaMode::Cutout) == static_cast<int>(Style::AlphaMode::Cutout));

} // namespace

RenderStyle::RenderStyle() : _model(*this, "model") {
    for (HandledCallbacks const hook : Hooks)
        RegisterCB(hook);
}

RenderStyle::~RenderStyle() = default;

void RenderStyle::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _model.Attach(p_model);
    _watchers.Clear();
}

Core::WeakPtr<Model::ModelNode> RenderStyle::SourceModel() const {
    return _model.Get();
}

/// The watcher stays empty until all that changed is taken up, so that an update that ends halfway is made up for.
NodeStatus RenderStyle::DoUpdate(UpdateContext const& p_context) {
    Core::Ptr<Model::RenderStyle> const model = _model.Lock();
    if (!model)
        return NodeStatusInvalid;
    if (!_watchers.Empty() && !_watchers.Modified())
        return NodeStatusOk;
    _watchers.Clear();
    _outerShader = {};
    _shader = {};
    LoadTexture(p_context, 0, model->Texture());
    LoadTexture(p_context, 1, model->SecondTexture());
    _watchers.Add(_model.Get());
    return NodeStatusOk;
}

void RenderStyle::LoadTexture(UpdateContext const& p_context, std::size_t p_unit, std::string const& p_name) {
    auto const former = std::exchange(_textures[p_unit], nullptr); // until the end, so that it is found again
    if (p_name.empty())
        return;
    if (!_loader)
        _loader = StyleTextures::Of(p_context.Registrar());
    try {
        _textures[p_unit] = _loader->Load(p_context, p_name);
    } catch (Assets::ImageError const& error) {
        if (_loader->TakeFailure(p_name))
            p_context.Dispatcher().ReportWarning(
                *this, error.what(), Utility::AtLine(__PRETTY_FUNCTION__, __LINE__), 1);
    }
}

void RenderStyle::DoSetup(DrawContext& p_context, Agl& p_agl) {
    _hasPushedMatrix = {};
    _hasPushedAttributes = false;
    Model::RenderStyle const* const model = _model.Peek();
    if (!model)
        return;
    WriteContext(p_context, *model);
    p_agl->PushAttrib(
        AGL_LINE_BIT | AGL_POINT_BIT | AGL_POLYGON_BIT | AGL_ENABLE_BIT | AGL_COLOR_BUFFER_BIT | AGL_TEXTURE_BIT);
    _hasPushedAttributes = true;
    SetUpLines(p_agl, *model, OverlayShapes::PixelRatio(p_context));
    SetUpPolygons(p_agl, *model);
    if (model->IsSet(Style::LightingProperty))
        Switch(*p_agl, AGL_LIGHTING, model->HasLighting() && p_context.LightCount().Top() != 0);
    if (PropertiesOf(0).IsAnySet(*model))
        SetUpUnit(*p_agl, 0, p_context.FirstTexture().Top());
    if (PropertiesOf(1).IsAnySet(*model))
        SetUpUnit(*p_agl, 1, p_context.SecondTexture().Top());
}

void RenderStyle::DoTeardown(DrawContext const&, Agl& p_agl) {
    for (std::size_t unit = 0; unit < Units; ++unit) {
        if (!_hasPushedMatrix[unit])
            continue;
        p_agl->ActiveTexture(AGL_TEXTURE0 + static_cast<Ogl::Token>(unit));
        p_agl->MatrixMode(AGL_TEXTURE);
        p_agl->PopMatrix();
        p_agl->MatrixMode(AGL_MODELVIEW);
    }
    if (_hasPushedAttributes)
        p_agl->PopAttrib();
}

void RenderStyle::DoSetupOverlay(DrawContext& p_context, Agl&) {
    if (Model::RenderStyle const* const model = _model.Peek())
        WriteContext(p_context, *model);
}

void RenderStyle::WriteContext(DrawContext& p_context, Model::RenderStyle const& p_model) {
    if (ChangesSchema(p_model))
        WriteSchema(p_context, p_model);
    if (PropertiesOf(0).IsAnySet(p_model)) {
        Types::TextureUnit unit = p_context.FirstTexture().Top();
        ChangeUnit(unit, 0, p_model);
        p_context.FirstTexture().Set(unit);
    }
    if (PropertiesOf(1).IsAnySet(p_model)) {
        Types::TextureUnit unit = p_context.SecondTexture().Top();
        ChangeUnit(unit, 1, p_model);
        p_context.SecondTexture().Set(unit);
    }
    WriteShader(p_context, p_model);
}

/// The entry is made once and again when the model or what is around the style changes.
void RenderStyle::WriteShader(DrawContext& p_context, Model::RenderStyle const& p_model) {
    DrawContext::GenericShaderEntry const& outer = p_context.Shader().Top();
    if (!outer.Parameters())
        return;
    if (_outerShader.Parameters() != outer.Parameters()) {
        Ogl::GenericShader::State const state = StateUnder(*outer.Parameters(), p_context, p_model);
        _outerShader = outer;
        _shader = state == *outer.Parameters() ? outer : outer.With(state);
    }
    if (_shader.Parameters() != outer.Parameters())
        p_context.Shader().Set(_shader);
}

Ogl::GenericShader::State RenderStyle::StateUnder(
    Ogl::GenericShader::State const& p_outer, DrawContext const& p_context, Model::RenderStyle const& p_model) const {
    using State = Ogl::GenericShader::State;
    std::bitset<2> options = p_outer.Options();
    if (p_model.IsSet(Style::LightingProperty))
        options.set(State::Headlight, p_model.HasLighting());
    Ogl::GenericShader::Look look = p_outer.GetLook();
    Take(p_model, Style::OpacityProperty, look.opacity);
    if (p_model.IsSet(Style::AlphaModeProperty))
        look.alphaMode = AlphaModeOf(p_model.GetAlphaMode());
    Take(p_model, Style::AlphaCutoffProperty, look.alphaCutoff);
    if (p_model.IsSet(Style::VertexColorsProperty))
        look.hidesVertexColors = !p_model.HasVertexColors();
    if (p_model.IsSet(Style::ForegroundColorProperty))
        look.color = Types::Color4f(p_model.ForegroundColor());
    std::array<Types::TextureUnit const*, Units> const units{
        &p_context.FirstTexture().Top(), &p_context.SecondTexture().Top()};
    for (std::size_t i = 0; i < Units; ++i) {
        look.textures[i] = units[i]->enabled;
        if (p_model.IsSet(PropertiesOf(i).texture))
            look.translucentTextures[i] = _textures[i] && _textures[i]->isTranslucent;
    }
    return State(options, look);
}

void RenderStyle::ChangeUnit(
    Types::TextureUnit& p_unit, std::size_t p_number, Model::RenderStyle const& p_model) const {
    UnitProperties const& properties = PropertiesOf(p_number);
    if (p_model.IsSet(properties.texture)) {
        std::shared_ptr<StyleTexture const> const& texture = _textures[p_number];
        if (!p_unit.enabled) { // what a style says of a texture it has none of
            Model::TextureFilters const filters;
            p_unit.minification = filters.minification;
            p_unit.magnification = filters.magnification;
        }
        p_unit.enabled = texture && texture->texture.IsValid();
        p_unit.texture = p_unit.enabled ? static_cast<std::uint32_t>(texture->texture.Handle()->Id()) : 0;
    }
    Take(p_model, properties.environment, p_unit.environment);
    if (p_model.IsSet(properties.filters)) {
        Model::TextureFilters const& filters = properties.filters.Get(p_model);
        p_unit.minification = filters.minification;
        p_unit.magnification = filters.magnification;
    }
    if (p_model.IsSet(properties.wraps)) {
        Model::TextureWraps const& wraps = properties.wraps.Get(p_model);
        p_unit.wrapS = wraps.s;
        p_unit.wrapT = wraps.t;
    }
    p_unit.matrix = TextureMatrix(p_unit.matrix, properties, p_model);
}

void RenderStyle::SetUpUnit(Ogl::Agl& p_agl, std::size_t p_number, Types::TextureUnit const& p_unit) {
    p_agl.ActiveTexture(AGL_TEXTURE0 + static_cast<Ogl::Token>(p_number));
    if (_model.Peek()->IsSet(PropertiesOf(p_number).texture)) {
        std::shared_ptr<StyleTexture const> const& texture = _textures[p_number];
        p_agl.BindTexture(texture ? texture->texture.Handle() : nullptr);
    }
    p_agl.TexEnv(AGL_TEXTURE_ENV_MODE, static_cast<Ogl::Token>(p_unit.environment));
    p_agl.TexSampling(Ogl::TextureSampling::Of(p_unit));
    p_agl.MatrixMode(AGL_TEXTURE);
    p_agl.PushMatrix();
    _hasPushedMatrix[p_number] = true;
    p_agl.LoadMatrix(p_unit.matrix);
    p_agl.MatrixMode(AGL_MODELVIEW);
}

} // namespace Qor::Chart::Render
