#include "render/nodes/SimpleObject.h"

#include "render/nodes/LoadedSymbol.h"
#include "render/nodes/SymbolCache.h"
#include "render/context/DrawContext.h"
#include "render/context/EventDispatcher.h"
#include "render/context/SceneCapabilities.h"
#include "render/context/UpdateContext.h"
#include "framework/library/ModelFileError.h"
#include "framework/library/Pattern.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Bind.h"
#include "framework/ogl/PushAttribScope.h"
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

void BlendOver(Agl& p_agl) {
    p_agl->Enable(AGL_BLEND);
    p_agl->BlendFunc(AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA);
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
    UpdatePulse(p_context, *model);
    UpdatePicking(*model);
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
        RegisterCB(HandledHighlight);
        if (!_pulse)
            _pulse = std::make_unique<FloatAnimation>(TimedCompletionCriteria(PulseMilliseconds, PulseSteps));
        KeepPulsing(p_context.Dispatcher());
        return;
    }
    UnregisterCB(HandledHighlight);
    _pulse.reset();
    p_context.Dispatcher().RequestRedraw(0);
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
    bool const hasOwnColor = p_model.IsSet(Model::SimpleObject::ColorProperty) || !_symbol || !_symbol->HasColors();
    _transform = GenTransform(p_context, p_model);
    _color = hasOwnColor ? Types::Color4f(p_model.Color()) : Types::Color4f(1, 1, 1);
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
    Agl agl(p_context.Graphics());
    Ogl::Bind<Ogl::Shader> const shader(agl, _symbol->Shader(p_context, agl));
    DrawSymbol(agl, _color);
    if (_isVisibleBehindGeometry && agl->Features().Supported(Ogl::DeviceFeature::PolygonStipple))
        DrawBehindGeometry(agl);
    return DrawResultDescend;
}

void SimpleObject::DrawSymbol(Agl& p_agl, Types::Color4f const& p_color) const {
    bool const isOpaque = p_color.alpha >= 1.0F;
    Ogl::PushAttribScope const saved(p_agl, isOpaque ? AGL_CURRENT_BIT : AGL_CURRENT_BIT | AGL_COLOR_BUFFER_BIT);
    if (!isOpaque)
        BlendOver(p_agl);
    p_agl->Color(p_color);
    p_agl->Draw(_symbol->Buffer());
}

void SimpleObject::DrawBehindGeometry(Agl& p_agl) const {
    BehindGeometryLook const look = _isFront ? BehindGeometryLook{12, _color.alpha} : BehindGeometryLook{4, FaintAlpha};
    {
        Ogl::PushAttribScope const saved(
            p_agl, AGL_CURRENT_BIT | AGL_COLOR_BUFFER_BIT | AGL_ENABLE_BIT | AGL_POLYGON_STIPPLE_BIT);
        p_agl->Disable(AGL_DEPTH_TEST);
        BlendOver(p_agl);
        p_agl->Enable(AGL_POLYGON_STIPPLE);
        p_agl->PolygonStipple(Library::Pattern::PolygonStipplePattern(look.sixteenths).data());
        p_agl->Color(_color.red, _color.green, _color.blue, look.alpha);
        p_agl->Draw(_symbol->Buffer());
    }
    p_agl->Disable(AGL_POLYGON_STIPPLE);
    p_agl->Disable(AGL_BLEND);
    p_agl->Enable(AGL_DEPTH_TEST);
}

/// Draws over what the draw pass left, at the same depths.
DrawResult SimpleObject::DoHighlight(DrawContext const& p_context) {
    bool const isHalted = _pulse && !p_context.Capabilities().AnimationsOn();
    if (!_symbol || isHalted)
        return DrawResultDescend;
    float amount = 1.0F;
    if (_pulse) {
        KeepPulsing(p_context.Dispatcher());
        p_context.Dispatcher().RequestRedraw(PulseMilliseconds / PulseSteps);
        amount = _pulse->Value() / PulseTop;
    }
    Agl agl(p_context.Graphics());
    Ogl::Bind<Ogl::Shader> const shader(agl, _symbol->Shader(p_context, agl));
    Ogl::PushAttribScope const saved(agl, AGL_DEPTH_BUFFER_BIT);
    agl->DepthFunc(AGL_LEQUAL);
    DrawSymbol(agl, Types::Color4f(p_context.GetHighlighter().Blend(_color.ToQColor(), amount)));
    return DrawResultDescend;
}

/// The setup's transform holds for what is below the object too, so their box goes through it as well.
Types::BoundingBox_Base<double> SimpleObject::DoBoundingBox(Types::BoundingBox_Base<double> const& p_children) {
    Types::BoundingBox_Base<double> box = p_children;
    if (_symbol)
        box.Add(_symbol->Bounds());
    return _transform.IsIdentity() ? box : box.Transformed(*_transform);
}

} // namespace Qor::Chart::Render
