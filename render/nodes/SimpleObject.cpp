#include "render/nodes/SimpleObject.h"

#include "render/nodes/BlendOver.h"
#include "render/nodes/LoadedSymbol.h"
#include "render/nodes/SymbolCache.h"
#include "render/nodes/SymbolHighlight.h"
#include "render/events/EventInformation.h"
#include "render/events/EventSink.h"
#include "render/pick/HitRecord.h"
#include "render/pick/SelectRecord.h"
#include "render/context/DrawContext.h"
#include "render/context/EventDispatcher.h"
#include "render/context/PickPoint.h"
#include "render/context/SceneCapabilities.h"
#include "render/context/UpdateContext.h"
#include "framework/library/ModelFileError.h"
#include "framework/library/Pattern.h"
#include "framework/model/EventDelegate.h"
#include "framework/model/Events.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/AutoNameLoader.h"
#include "framework/ogl/Bind.h"
#include "framework/ogl/HitBuffer.h"
#include "framework/ogl/HitDetect.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/ogl/QuickPick.h"
#include "framework/utility/Ensure.h"

#include <array>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using namespace Ogl::Tokens;
using Agl = Utility::Scoped<Ogl::Agl>;

constexpr unsigned PulseMilliseconds = 2000;
constexpr unsigned PulseSteps = 40;
constexpr float PulseTop = 0.5F;

/// How much of sixteen pixels, and with which alpha, an object shows through what is in front of it.
struct BehindGeometryLook {
    int sixteenths;
    float alpha;
};
constexpr float FaintAlpha = 128.0F / 255.0F;

constexpr std::array<EventHandler::EventName, 3> PointerEvents{
    EventHandler::EventMouseOver, EventHandler::EventMouseOut, EventHandler::EventClick};

/// From the symbol's coordinates to the scene's. Whatever unit the enclosing domain measures in, it is taken for metres.
Model::SharedMatrix GenTransform(UpdateContext const& p_context, Model::SimpleObject const& p_model) {
    auto const& domain = p_context.SpatialDomain().Top();
    (void)QOR_ENSURE_TEXT(!domain || domain->GetQuantityUnit() == UpdateContext::CameraLengthUnit,
        "At the time of writing we did not fully provide length units in all cases "
        "so we assumed we were in meters, if this ever changes we need to fix this "
        "code");
    return p_model.Transform();
}

/// More than the one name that an object has.
constexpr std::size_t HitCapacity = 2;
/// How strongly the colour of the selection covers that of the object, of 255.
constexpr int SelectionAlpha = 128;

Ogl::Highlight SelectionLook(DrawContext const& p_context, Ogl::Highlight const& p_look) {
    QColor color = p_context.Schema().Top().selectionColor;
    color.setAlpha(SelectionAlpha);
    return Ogl::Highlight(color, p_look.LineWidth());
}

/// Whether something is seen through textures that are not opaque everywhere: a decal shows the object there.
bool LetsThrough(DrawContext const& p_context, std::bitset<2> const& p_translucent) {
    auto const letsThrough = [](Types::TextureUnit const& p_unit) {
        return p_unit.environment != Types::TextureUnit::Environment::Decal;
    };
    return (p_translucent[0] && letsThrough(p_context.FirstTexture().Top())) ||
        (p_translucent[1] && letsThrough(p_context.SecondTexture().Top()));
}

bool IsHit(EventInformation const& p_event) {
    return p_event.Hit() && !p_event.Hit()->result.records.empty();
}

SelectRecord RecordOf(SimpleObject& p_object, Core::Ptr<Model::SimpleObject> const& p_model, HitRecord const& p_hit) {
    return {Core::Ptr<Vis>(&p_object), Core::Ptr<Model::ModelNode>(p_model), p_hit.location, p_hit.screenPos,
        p_object.GetPath()};
}

} // namespace

SimpleObject::SimpleObject() : Vis(VisFlagSecond), _model(*this, "model") {
    RegisterCB(HandledUpdate);
    RegisterCB(HandledSetup);
    RegisterCB(HandledTeardown);
    RegisterCB(HandledDraw);
    RegisterCB(HandledHighlight);
    RegisterCB(HandledBoundingBox);
}

SimpleObject::~SimpleObject() = default;

/// What the model says of hooks and events is taken up at once: as long as the node has no parent that costs next to
/// nothing.
void SimpleObject::Attach(Core::Ptr<Model::ModelNode> const& p_model) {
    _model.Attach(p_model);
    _watchers.Clear();
    Model::SimpleObject const* const model = _model.Peek();
    if (!model)
        return;
    if (!model->Pulse())
        UnregisterCB(HandledHighlight);
    UpdatePicking(*model);
}

Core::WeakPtr<Model::ModelNode> SimpleObject::SourceModel() const {
    return _model.Get();
}

/// The watchers stay empty until all that changed is taken up, so that an update that ends halfway is made up for.
NodeStatus SimpleObject::DoUpdate(UpdateContext const& p_context) {
    Core::Ptr<Model::SimpleObject> const model = _model.Lock();
    if (!model)
        return NodeStatusInvalid;
    bool const isChanged = _watchers.Empty() || _watchers.Modified();
    if (isChanged)
        _watchers.Clear();
    if (!model->GetSymbol() || model->GetSymbol()->Source() == Model::Symbol::SourceKind::Unset) {
        _symbol.reset();
        if (isChanged) {
            WatchModel(*model);
            Warn(p_context, "The object has no symbol; give it one with a shape or a file.",
                Utility::AtLine(__PRETTY_FUNCTION__, __LINE__));
        }
        return NodeStatusInvalid;
    }
    UpdatePicking(*model);
    UpdatePulse(p_context, *model);
    if (isChanged) {
        LoadShapeSymbol(p_context, *model);
        WatchModel(*model);
    }
    UpdateLook(p_context, *model);
    return _symbol ? NodeStatusOk : NodeStatusInvalid;
}

void SimpleObject::WatchModel(Model::SimpleObject const& p_model) {
    _watchers.Add(_model.Get());
    if (p_model.GetSymbol())
        _watchers.Add(p_model.GetSymbol());
    OwnTracker().ClearWatcherEntries();
    OwnTracker().AddWatcherEntry(_watchers);
}

void SimpleObject::UpdatePulse(UpdateContext const& p_context, Model::SimpleObject const& p_model) {
    if (p_model.Pulse() && p_context.Capabilities().AnimationsOn()) {
        if (!_pulse)
            _pulse = std::make_unique<FloatAnimation>(TimedCompletionCriteria(PulseMilliseconds, PulseSteps));
        UpdateHighlighting();
        KeepPulsing(p_context.Dispatcher());
        return;
    }
    _pulse.reset();
    UpdateHighlighting();
    p_context.Dispatcher().RequestRedraw(0);
}

void SimpleObject::UpdateHighlighting() {
    if (IsHoverShown() || _selected || _pulse)
        RegisterCB(HandledHighlight);
    else
        UnregisterCB(HandledHighlight);
}

/// Turns the pulse around when it has arrived at either end.
void SimpleObject::KeepPulsing(EventDispatcher& p_dispatcher) {
    if (!_pulse->IsComplete())
        return;
    _pulse->SetTarget(_pulse->Value() >= PulseTop ? 0.0F : PulseTop);
    p_dispatcher.RequestRedraw(0);
}

void SimpleObject::UpdatePicking(Model::SimpleObject const& p_model) {
    bool const isPickable = p_model.IsPickable();
    if (isPickable)
        RegisterCB(HandledHit);
    else
        UnregisterCB(HandledHit);
    for (EventName const event : PointerEvents) {
        if (isPickable)
            Connect(*this, event);
        else
            Disconnect(*this, event);
    }
    SetLayer(static_cast<std::int16_t>(isPickable && p_model.IsFront() ? HighestLayer : 0));
}

void SimpleObject::LoadShapeSymbol(UpdateContext const& p_context, Model::SimpleObject const& p_model) {
    Model::Symbol const& source = *p_model.GetSymbol();
    if (_symbol && _symbol->IsUpToDate(source))
        return;
    auto const former = std::exchange(_symbol, nullptr); // until the end: a file that did not change is not read again
    std::string failure;
    try {
        _symbol = SymbolCache::Of(p_context.Registrar())->Load(p_context, source);
        failure = _symbol ? "" : "There is nothing in the symbol that can be drawn; give it another shape or file.";
    } catch (Library::ModelFileError const& error) {
        failure = error.what();
    }
    if (!failure.empty())
        Warn(p_context, failure, Utility::AtLine(__PRETTY_FUNCTION__, __LINE__));
}

void SimpleObject::UpdateLook(UpdateContext const& p_context, Model::SimpleObject const& p_model) {
    _transform = GenTransform(p_context, p_model);
    _namesColor = p_model.IsSet(Model::SimpleObject::ColorProperty);
    bool const showsVertexColors = !_namesColor && _symbol && _symbol->HasColors();
    _color = showsVertexColors ? Types::Color4f(1, 1, 1) : Types::Color4f(p_model.Color());
    _isFront = p_model.IsFront();
    _isVisibleBehindGeometry = p_model.IsVisibleBehindGeometry();
}

void SimpleObject::Warn(
    UpdateContext const& p_context, std::string const& p_text, std::string const& p_location) const {
    p_context.Dispatcher().ReportWarning(*this, p_text, p_location, 1);
}

void SimpleObject::DoSetup(DrawContext& p_context, Agl& p_agl) {
    p_agl->MatrixMode(AGL_MODELVIEW);
    p_agl->PushMatrix();
    if (_transform.IsIdentity())
        return;
    p_agl->MultMatrix(*_transform);
    p_context.ModelView().Set(p_agl->Get(AGL_MODELVIEW_MATRIX));
}

void SimpleObject::DoTeardown(DrawContext const&, Agl& p_agl) {
    p_agl->PopMatrix();
}

DrawResult SimpleObject::DoDraw(DrawContext const& p_context) {
    if (!_symbol)
        return DrawResultDescend;
    SymbolLook const look = LookIn(p_context);
    if (look.color.alpha <= 0)
        return DrawResultDescend;
    Agl agl(p_context.Graphics());
    Ogl::Bind<Ogl::Shader> const shader(agl, _symbol->Shader(p_context, agl));
    DrawSymbol(agl, look);
    if (_isVisibleBehindGeometry && agl->Features().Supported(Ogl::DeviceFeature::PolygonStipple))
        DrawBehindGeometry(agl, look);
    return DrawResultDescend;
}

SymbolLook SimpleObject::LookIn(DrawContext const& p_context) const {
    using AlphaMode = Ogl::GenericShader::AlphaMode;
    Ogl::GenericShader::State const* const state = p_context.Shader().Top().Parameters();
    if (!state || state->IsPlain())
        return {_color, _color.alpha < 1};
    Ogl::GenericShader::Look const& style = state->GetLook();
    std::bitset<2> textures = style.textures;
    if (textures.any() && !_symbol->HasTexCoords()) {
        WarnOfTextures(p_context);
        textures.reset();
    }
    Types::Color4f color = ColorUnder(style, textures.any());
    bool const isBlended = style.alphaMode == AlphaMode::Automatic || style.alphaMode == AlphaMode::Blended;
    color.alpha = isBlended ? color.alpha * style.opacity : style.opacity;
    bool const letsThrough = isBlended &&
        (style.alphaMode == AlphaMode::Blended || LetsThrough(p_context, textures & style.translucentTextures));
    return {color, color.alpha < 1 || letsThrough, textures, isBlended ? style.opacity : 1.0F};
}

Types::Color4f SimpleObject::ColorUnder(Ogl::GenericShader::Look const& p_style, bool p_isTextured) const {
    bool const showsVertexColors = _symbol->HasColors() && !p_style.hidesVertexColors;
    if (_namesColor || showsVertexColors)
        return _color;
    if (p_isTextured)
        return {1, 1, 1, 1};
    return p_style.color.value_or(Types::Color4f(Model::SimpleObject::ColorProperty.Default()));
}

void SimpleObject::WarnOfTextures(DrawContext const& p_context) const {
    if (!_symbol->TakeTextureWarning())
        return;
    p_context.Dispatcher().ReportWarning(*this,
        "The symbol of \"" + Name() +
            "\" has no texture coordinates, so that it is drawn without the texture of its render style; give its file "
            "texture coordinates, or take it out of the style.",
        Utility::AtLine(__PRETTY_FUNCTION__, __LINE__), 1);
}

void SimpleObject::DrawSymbol(Agl& p_agl, SymbolLook const& p_look) const {
    if (!p_look.isTransparent && p_look.textures.none()) [[likely]] {
        Ogl::PushAttribScope const saved(p_agl, AGL_CURRENT_BIT);
        p_agl->Color(p_look.color);
        p_agl->Draw(_symbol->Buffer());
        return;
    }
    Ogl::Token const groups = AGL_CURRENT_BIT |
        (p_look.isTransparent ? AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT : 0) |
        (p_look.textures.any() ? AGL_TEXTURE_BIT : 0);
    Ogl::PushAttribScope const saved(p_agl, groups);
    if (p_look.isTransparent) {
        BlendOver(p_agl);
        p_agl->Enable(AGL_TRANSPARENCY);
        p_agl->DepthMask(false);
    }
    p_look.EnableTextures(*p_agl);
    p_agl->Color(p_look.color);
    p_agl->Draw(p_look.BufferOf(*_symbol, p_agl));
}

void SimpleObject::DrawBehindGeometry(Agl& p_agl, SymbolLook const& p_look) const {
    Types::Color4f const& color = p_look.color;
    BehindGeometryLook const look =
        _isFront ? BehindGeometryLook{12, color.alpha} : BehindGeometryLook{4, FaintAlpha * p_look.opacity};
    Ogl::PushAttribScope const saved(
        p_agl, AGL_CURRENT_BIT | AGL_COLOR_BUFFER_BIT | AGL_ENABLE_BIT | AGL_POLYGON_STIPPLE_BIT | AGL_TEXTURE_BIT);
    p_agl->Disable(AGL_DEPTH_TEST);
    BlendOver(p_agl);
    p_agl->Enable(AGL_POLYGON_STIPPLE);
    p_agl->PolygonStipple(Library::Pattern::PolygonStipplePattern(look.sixteenths).data());
    p_look.EnableTextures(*p_agl);
    p_agl->Color(color.red, color.green, color.blue, look.alpha);
    p_agl->Draw(p_look.BufferOf(*_symbol, p_agl));
}

/// Hover goes before selection, and selection before the pulse.
DrawResult SimpleObject::DoHighlight(DrawContext const& p_context) {
    bool const isHovered = IsHoverShown();
    bool const pulses = _pulse && !isHovered && !_selected;
    if (!_symbol || (pulses && !p_context.Capabilities().AnimationsOn()))
        return DrawResultDescend;
    float amount = 1.0F;
    if (pulses) {
        KeepPulsing(p_context.Dispatcher());
        p_context.Dispatcher().RequestRedraw(PulseMilliseconds / PulseSteps);
        amount = _pulse->Value() / PulseTop;
    }
    Agl agl(p_context.Graphics());
    Ogl::Highlight look = p_context.GetHighlighter();
    if (_selected && !isHovered)
        look = SelectionLook(p_context, look);
    SymbolHighlight(look, LookIn(p_context), amount).Draw(p_context, agl, *_symbol);
    return DrawResultDescend;
}

bool SimpleObject::DoHit(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) {
    if (!_symbol)
        return true;
    Agl const agl(p_context.Graphics());
    Types::Viewport<0> const& viewport = p_context.Viewport().Top();
    Types::Matrix4 const& projection = p_context.Projection().Top();
    if (!Ogl::QuickPick::MayHit(viewport, projection, p_point.position, p_point.tolerance,
            agl->Get(AGL_MODELVIEW_MATRIX), _symbol->Bounds()))
        return true;
    Ogl::HitBuffer buffer(HitCapacity);
    {
        Ogl::HitDetect detect(agl, viewport, projection, p_point.position, p_point.tolerance, buffer);
        Ogl::AutoNameLoader names(detect, Ogl::HitRecord::NameFirst);
        names.Next();
        agl->Draw(_symbol->Buffer());
        names.Reset();
    }
    p_result.records = buffer.Records();
    return true;
}

Event::Result SimpleObject::OnMouseOver(EventInformation& p_event) {
    if (_hovered)
        return Event::Consumed;
    Core::Ptr<Model::SimpleObject> const model = _model.Lock();
    if (!model || !IsHit(p_event))
        return Event::Ignored;
    _hovered = true;
    p_event.Sink().Hover(RecordOf(*this, model, *p_event.Hit()));
    UpdateHighlighting();
    p_event.Sink().RequestRedraw();
    return Event::Consumed;
}

void SimpleObject::OnMouseOut(EventInformation& p_event) {
    if (!std::exchange(_hovered, false))
        return;
    p_event.Sink().EndHover(SourceModel());
    UpdateHighlighting();
    p_event.Sink().RequestRedraw();
}

Event::Result SimpleObject::OnClick(EventInformation& p_event) {
    Core::Ptr<Model::SimpleObject> const model = _model.Lock();
    if (!model || p_event.button != 0 || !IsHit(p_event))
        return Event::Ignored;
    HitRecord const& hit = *p_event.Hit();
    model->Delegate().Raise(
        Model::Events::PickedArgs(Core::WeakPtr<Model::ModelNode>(model), hit.global, hit.screenPos, GetPath()));
    return Event::Consumed;
}

void SimpleObject::DoSelect(SelectRecord const&, Core::NodePath const&, bool p_selected) {
    _selected = p_selected;
    UpdateHighlighting();
}

void SimpleObject::GetSelectRecords(HitRecord const& p_hit, std::list<SelectRecord>& p_records) {
    if (Core::Ptr<Model::SimpleObject> const model = _model.Lock())
        p_records.push_back(RecordOf(*this, model, p_hit));
}

/// The setup's transform holds for what is below the object too, so their box goes through it as well.
Types::BoundingBox_Base<double> SimpleObject::DoBoundingBox(Types::BoundingBox_Base<double> const& p_children) {
    Types::BoundingBox_Base<double> box = p_children;
    if (_symbol)
        box.Add(_symbol->Bounds());
    return _transform.IsIdentity() ? box : box.Transformed(*_transform);
}

} // namespace Qor::Chart::Render
