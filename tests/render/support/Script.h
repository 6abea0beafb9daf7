#pragma once

#include "tests/framework/utility/OnThread.h"
#include "tests/render/support/UpdateFixture.h"
#include "render/core/Vis.h"
#include "framework/core/Ref.h"
#include "framework/model/ModelNode.h"

#include <array>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// Nodes whose whole behaviour is data: a model node carries a script, its visual node plays it.
namespace Qor::Chart::Render::Fixtures {

using Utility::OnThread;
using Box = Types::BoundingBox_Base<double>;

enum Hook {
    HookUpdateModel,
    HookUpdate,
    HookRefresh,
    HookBox,
    HookPost,
    HookFactory,
    HookSetup,
    HookDraw,
    HookHighlight,
    HookTeardown,
    HookSetupOverlay,
    HookDrawOverlay,
    HookHighlightOverlay,
    HookTeardownOverlay,
    HookCount
};

enum class Answer { Ok, Invalid, Pending, Throw, ThrowInt };

inline Answer Perform(Answer p_answer) {
    if (p_answer == Answer::Throw)
        throw std::runtime_error("as scripted");
    if (p_answer == Answer::ThrowInt)
        throw 7;
    return p_answer;
}

constexpr std::uint16_t Bit(HandledCallbacks p_callback) {
    return HandledCallbackSet::MaskOf(p_callback);
}
constexpr bool Has(std::uint16_t p_handled, HandledCallbacks p_callback) {
    return (p_handled & Bit(p_callback)) != 0;
}
constexpr std::uint16_t AllHooks = 0xFFFF & ~(1U << 12U);

/// What the visual node of a model node is and does.
struct Script {
    int flags = 0;
    std::uint16_t handled = AllHooks;
    std::array<Answer, HookCount> answers{};
    Answer firstModel = Answer::Ok; ///< of the first of the two calls; `answers` has that of the second
    double low = 0, high = 1; ///< the node's own box along x; none unless low <= high
    int layer = 0;
    int parts = 0; ///< children that a self-managed node makes for itself
    int grown = 0; ///< children that the model hook gives the model node
};

/// Something that several model nodes refer to.
class SymbolModel : public Model::ModelNode {
public:
    int size = 0;
};

class ScriptVis;

class ScriptModel : public Model::ModelNode {
public:
    explicit ScriptModel(int p_number, Script const& p_script = {}) : number(p_number), script(p_script) {
        SetName("n" + std::to_string(p_number));
    }
    /// Reports that the script was changed.
    void Changed() { TouchThis(ModifiableTypeProperty, ChangeModified, RelationshipSelf, {}, "script", {}); }
    /// Makes as many children of its own as the script asks for.
    void Grow() {
        for (; grown < script.grown; ++grown) {
            Script leaf;
            leaf.low = leaf.high = 100 + grown;
            Add(Core::MakeNode<ScriptModel>(100 * (number + 1) + grown, leaf));
        }
    }

    int const number;
    Script script;
    int grown = 0;
    Core::Ref<SymbolModel> symbol{*this, "symbol"};
    std::vector<ScriptVis*> uses; ///< the visual nodes that mirror this one
};

/// A class for which no factory is registered.
class UnknownModel : public ScriptModel {
public:
    using ScriptModel::ScriptModel;
};

/// What all visual nodes of a test share.
struct World {
    std::array<unsigned, HookCount> calls{};
    std::vector<std::pair<int, Hook>> trace; ///< hooks in the order in which they ran; kept while onHook is set
    std::vector<std::string> complaints; ///< of nodes that found their context other than it should be
    std::function<void(ScriptModel const&, Hook)> onHook; ///< runs at the beginning of every hook

    void Enter(ScriptModel const& p_model, Hook p_hook) {
        ++calls[p_hook];
        if (!onHook)
            return;
        trace.emplace_back(p_model.number, p_hook);
        onHook(p_model, p_hook);
    }
};

/// A child that a self-managed node makes for itself.
class PartVis : public Vis {
public:
    PartVis(World& p_world, Core::WeakPtr<Model::ModelNode> p_model, int p_index)
        : index(p_index), _world(p_world), _model(std::move(p_model)) {
        RegisterCB(HandledBoundingBox);
        RegisterCB(HandledDraw);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return _model; }

    int const index;

private:
    Box DoBoundingBox(Box const&) override {
        ++_world.calls[HookBox];
        return {{200.0 + index, 0, 0}, {200.0 + index, 1, 1}};
    }
    DrawResult DoDraw(DrawContext const&) override {
        ++_world.calls[HookDraw];
        return DrawResultDescend;
    }
    World& _world;
    Core::WeakPtr<Model::ModelNode> _model;
};

class ScriptVis : public Vis {
public:
    ScriptVis(World& p_world, Core::Ptr<ScriptModel> const& p_model) : Vis(p_model->script.flags), _world(p_world) {
        _model.Attach(p_model);
        p_model->uses.push_back(this);
        for (int callback = HandledUpdate; callback <= HandledRefreshUpdateContext; ++callback) {
            if ((p_model->script.handled >> callback & 1) != 0)
                Toggle(static_cast<HandledCallbacks>(callback));
        }
    }
    ~ScriptVis() override {
        if (ScriptModel* const model = _model.Peek())
            std::erase(model->uses, this);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return _model.Get(); }

    /// Takes a hook up, or gives it up.
    void Toggle(HandledCallbacks p_callback) {
        bool const isOn = IsHandled(p_callback);
        if (p_callback > HandledBoundingBox)
            isOn ? UnregisterUpdateHook(p_callback) : RegisterUpdateHook(p_callback);
        else
            isOn ? UnregisterCB(p_callback) : RegisterCB(p_callback);
    }
    ScriptModel& Model() const { return *_model.Peek(); }
    Vis* Parent() const {
        for (Core::Dependencies::Entry const& entry : Deps().Entries()) {
            if (entry.children > 0)
                return dynamic_cast<Vis*>(entry.dependent);
        }
        return nullptr;
    }

private:
    static NodeStatus Status(Answer p_answer) {
        return p_answer == Answer::Ok     ? NodeStatusOk
            : p_answer == Answer::Invalid ? NodeStatusInvalid
                                          : NodeStatusPending;
    }
    Answer Play(Hook p_hook) { return Play(p_hook, Model().script.answers[p_hook]); }
    Answer Play(Hook p_hook, Answer p_answer) {
        _world.Enter(Model(), p_hook);
        return Perform(p_answer);
    }

    bool SetsDomain() const {
        return IsHandled(HandledRefreshUpdateContext) && Model().script.answers[HookRefresh] == Answer::Ok;
    }
    /// The domain must be that of the nearest node that set one.
    void CheckDomain(UpdateContext const& p_context, Vis const* p_nearest) {
        auto const* vis = dynamic_cast<ScriptVis const*>(p_nearest);
        while (vis && !vis->SetsDomain())
            vis = dynamic_cast<ScriptVis const*>(vis->Parent());
        auto const& domain = p_context.SpatialDomain().Top();
        double const expected = vis ? 1 + vis->Model().number : 0;
        if ((domain ? domain->Scale() : 0) != expected)
            _world.complaints.push_back(Name() + " sees a wrong spatial domain");
    }

    NodeStatus DoUpdateModel(UpdateContext const& p_context) override {
        CheckDomain(p_context, Parent());
        Model().Grow();
        bool const isSecond = std::exchange(_isSecondCall, false);
        Script const& script = Model().script;
        Answer const answer = Play(HookUpdateModel, isSecond ? script.answers[HookUpdateModel] : script.firstModel);
        _isSecondCall = !isSecond;
        return Status(answer);
    }
    NodeStatus DoUpdate(UpdateContext const& p_context) override {
        CheckDomain(p_context, Parent());
        Script const& script = Model().script;
        OwnTracker().ClearWatcherEntries();
        if (Model().symbol)
            OwnTracker().AddWatcherEntry(Core::ModificationWatcher(Core::WeakPtr<Core::Node>(Model().symbol.Get())));
        if (Answer const answer = Play(HookUpdate); answer != Answer::Ok)
            return Status(answer);
        SetLayer(static_cast<std::int16_t>(script.layer));
        _own = script.low <= script.high ? OwnBox(Model().symbol ? Model().symbol->size : 0) : Box();
        while (IsFlagged(VisFlagSelfManaged) && static_cast<int>(Size()) < script.parts)
            Add(Core::MakeNode<PartVis>(_world, SourceModel(), static_cast<int>(Size())));
        while (IsFlagged(VisFlagSelfManaged) && static_cast<int>(Size()) > script.parts)
            Remove(Core::Ptr<Vis>(*std::next(begin(), static_cast<int>(Size()) - 1)));
        return NodeStatusOk;
    }
    void DoRefreshUpdateContext(UpdateContext& p_context) override {
        p_context.SpatialDomain().Set(Types::UniformSpatialDomain({}, 9999));
        Play(HookRefresh);
        p_context.SpatialDomain().Set(Types::UniformSpatialDomain({}, 1 + Model().number));
    }
    Box OwnBox(int p_more) const { return {{Model().script.low, 0, 0}, {Model().script.high + p_more, 1, 1}}; }
    Box DoBoundingBox(Box const& p_children) override {
        Play(HookBox);
        Box box = p_children;
        box.Add(IsHandled(HandledUpdate) || Model().script.low > Model().script.high ? _own : OwnBox(0));
        return box;
    }
    void DoPostUpdate(UpdateContext const& p_context) override {
        CheckDomain(p_context, this);
        Play(HookPost);
    }

    using Agl = Utility::Scoped<Ogl::Agl>;

    void Setup(DrawContext& p_context, Agl& p_agl, Hook p_hook) {
        p_context.ModelView().Set(p_context.ModelView().Top() * Types::Matrix4::Translation({1, 0, 0}));
        p_agl->LoadMatrix(p_context.ModelView().Top());
        p_context.LightCount().Set(p_context.LightCount().Top() + 1);
        p_agl->PushAttrib(Ogl::Tokens::AGL_ENABLE_BIT);
        Play(p_hook);
    }
    DrawResult Draw(DrawContext const& p_context, Hook p_hook) {
        Play(p_hook);
        Agl(p_context.Graphics())->Draw(p_context.Geometry().UnitCube());
        return DrawResultDescend;
    }
    void Teardown(Agl& p_agl, Hook p_hook) {
        Play(p_hook);
        p_agl->PopAttrib();
    }
    void DoSetup(DrawContext& p_context, Agl& p_agl) override { Setup(p_context, p_agl, HookSetup); }
    void DoSetupOverlay(DrawContext& p_context, Agl& p_agl) override { Setup(p_context, p_agl, HookSetupOverlay); }
    DrawResult DoDraw(DrawContext const& p_context) override { return Draw(p_context, HookDraw); }
    DrawResult DoHighlight(DrawContext const& p_context) override { return Draw(p_context, HookHighlight); }
    DrawResult DoDrawOverlay(DrawContext const& p_context) override { return Draw(p_context, HookDrawOverlay); }
    DrawResult DoHighlightOverlay(DrawContext const& p_context) override {
        return Draw(p_context, HookHighlightOverlay);
    }
    void DoTeardown(DrawContext const&, Agl& p_agl) override { Teardown(p_agl, HookTeardown); }
    void DoTeardownOverlay(DrawContext const&, Agl& p_agl) override { Teardown(p_agl, HookTeardownOverlay); }

    World& _world;
    Core::WeakRef<ScriptModel> _model{*this, "model"};
    Box _own;
    bool _isSecondCall = false;
};

/// A host for scripted nodes, on the recorder.
struct Stage : UpdateFixture {
    Stage() : UpdateFixture(Ogl::RecorderBackend::Keep::Counters) {
        generator.Register<ScriptModel>([this](Core::Ptr<ScriptModel> const& p_model) {
            world.Enter(*p_model, HookFactory);
            Perform(p_model->script.answers[HookFactory]);
            return Core::Ptr<Vis>(Core::MakeNode<ScriptVis>(world, p_model));
        });
    }

    World world;
};

#if defined(__SANITIZE_ADDRESS__) || !defined(NDEBUG)
inline constexpr std::size_t DefaultStack = std::size_t{128} << 20U; // frames are larger here
#else
inline constexpr std::size_t DefaultStack = std::size_t{8} << 20U;
#endif

} // namespace Qor::Chart::Render::Fixtures
