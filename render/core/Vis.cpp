#include "render/core/Vis.h"

#include "framework/model/ModelNode.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"

#include <array>
#include <iomanip>
#include <ostream>

namespace Qor::Chart::Render {

namespace {

constexpr HandledCallbacks LastPlainCallback = HandledBoundingBox;

/// The kind of change that taking up or giving up a hook is reported as.
constexpr std::array<int, LastPlainCallback + 1> TouchTypes = [] {
    std::array<int, LastPlainCallback + 1> types{};
    types.fill(Core::IModifiable::ModifiableTypeGeneric);
    types[HandledDraw] = CallbackDraw;
    types[HandledHighlight] = CallbackHighlight;
    types[HandledHit] = CallbackHit;
    types[HandledDrawOverlay] = CallbackDrawOverlay;
    types[HandledHighlightOverlay] = CallbackDrawOverlay;
    types[HandledHitOverlay] = CallbackDrawOverlay;
    return types;
}();

bool IsUpdateHook(HandledCallbacks p_callback) noexcept {
    return p_callback == HandledPostUpdate || p_callback == HandledUpdateModel ||
        p_callback == HandledRefreshUpdateContext;
}

/// A hook was called that its node registered but did not override.
[[gnu::cold]] void ReportMissingOverride(char const* p_signature, int p_line) {
    Utility::GetLogger().sentry(Utility::AtLine(p_signature, p_line));
}

} // namespace

Vis::Vis() : Vis(0) {}

Vis::Vis(int p_flags)
    : _flags(
          static_cast<std::uint8_t>((p_flags & (VisFlagContextRoot | VisFlagSecond | VisFlagSelfManaged)) | FlagValid))
    , _tracker(*this) {
    _tracker.Touch();
}

Vis::~Vis() = default;

void Vis::TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
    Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) {
    if (!IsValid()) {
        Write(FlagValid, true);
        _tracker.Touch();
    }
    if (IsPending()) {
        Write(FlagPending, false);
        Write(FlagPendingUpdateAttempt, true);
        _tracker.Touch();
    }
    if (p_type == ModifiableTypeNode && p_change == ChangeAdd)
        _hasNewPaths = true;
    bool const passesUnchanged = IsEnabled() ||
        (p_type == ModifiableTypeProperty && p_relationship == RelationshipDirect &&
            p_name == Model::ModelNode::EnabledPropertyName);
    Node::TouchThis(p_type, p_change, passesUnchanged ? p_relationship : RelationshipFurther, p_node, p_name, p_data);
    _tracker.Insert(p_type, p_change, p_relationship, p_name, p_data);
}

bool Vis::IsEnabled() const {
    if (IsDisabled())
        return false;
    Core::WeakPtr<Model::ModelNode> const source = SourceModel();
    Model::ModelNode const* const model = source.Peek();
    return model ? model->IsEnabled() : IsFlagged(VisFlagSelfManaged);
}

Vis const* Vis::Parent() const noexcept {
    for (Core::Dependencies::Entry const& entry : Deps().Entries()) {
        auto const* const parent = entry.children > 0 ? dynamic_cast<Vis const*>(entry.dependent) : nullptr;
        if (parent)
            return parent;
    }
    return nullptr;
}

bool Vis::TakesPartIn(Vis const& p_root) const {
    constexpr int maxDepth = 1 << 16; // deeper ones are not drawn, and a broken tree may lead back to itself
    Vis const* node = this;
    for (int depth = 0; node && depth < maxDepth; ++depth, node = node->Parent()) {
        if (!node->IsActive() || !node->IsEnabled())
            return false;
        if (node == &p_root)
            return true;
    }
    return false;
}

void Vis::RegisterCB(HandledCallbacks p_callback) {
    if (IsHandled(p_callback))
        return;
    if (QOR_ENSURE(p_callback <= LastPlainCallback))
        WriteHandled(p_callback, true, TouchTypes[p_callback]);
}

void Vis::UnregisterCB(HandledCallbacks p_callback) {
    if (!IsHandled(p_callback))
        return;
    if (QOR_ENSURE(p_callback <= LastPlainCallback))
        WriteHandled(p_callback, false, TouchTypes[p_callback]);
}

void Vis::RegisterUpdateHook(HandledCallbacks p_callback) {
    if (QOR_ENSURE(IsUpdateHook(p_callback)) && !IsHandled(p_callback))
        WriteHandled(p_callback, true, ModifiableTypeUpdateHook);
}

void Vis::UnregisterUpdateHook(HandledCallbacks p_callback) {
    if (QOR_ENSURE(IsUpdateHook(p_callback)) && IsHandled(p_callback))
        WriteHandled(p_callback, false, ModifiableTypeUpdateHook);
}

void Vis::WriteHandled(HandledCallbacks p_callback, bool p_on, int p_type) {
    static std::string const name = "callback";
    _handled.Set(p_callback, p_on);
    TouchThis(static_cast<ModifiableType>(p_type), p_on ? ChangeModified : ChangeClear, RelationshipSelf, {}, name, {});
}

void Vis::Dump(std::ostream& p_stream, Core::Verbosity p_verbosity, std::uint64_t p_depth) const {
    if (p_verbosity == Core::Verbosity::Quiet) {
        p_stream << *this;
        return;
    }
    p_stream << std::setw(static_cast<int>(p_depth) * 2) << "" << *this << " path " << _path << " layer " << _layer
             << " flags " << static_cast<int>(_flags) << (IsActive() ? " active" : "") << (IsValid() ? "" : " invalid")
             << (IsPending() ? " pending" : "") << " box " << _boundingBox << " optimal paths " << _optimalPaths
             << '\n';
    Core::Detail::DumpChildren(*this, p_stream, p_verbosity, p_depth);
}

void Vis::DoRefreshUpdateContext(UpdateContext&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
}

NodeStatus Vis::DoUpdateModel(UpdateContext const&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
    return NodeStatusInvalid;
}

NodeStatus Vis::DoUpdate(UpdateContext const&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
    return NodeStatusInvalid;
}

void Vis::DoPostUpdate(UpdateContext const&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
}

void Vis::DoSetup(DrawContext&, Utility::Scoped<Ogl::Agl>&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
}

DrawResult Vis::DoDraw(DrawContext const&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
    return DrawResultDescend;
}

DrawResult Vis::DoHighlight(DrawContext const&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
    return DrawResultDescend;
}

bool Vis::DoHit(DrawContext const&, PickPoint const&, HitResult&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
    return true;
}

void Vis::DoTeardown(DrawContext const&, Utility::Scoped<Ogl::Agl>&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
}

void Vis::DoSetupOverlay(DrawContext&, Utility::Scoped<Ogl::Agl>&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
}

DrawResult Vis::DoDrawOverlay(DrawContext const&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
    return DrawResultDescend;
}

DrawResult Vis::DoHighlightOverlay(DrawContext const&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
    return DrawResultDescend;
}

bool Vis::DoHitOverlay(DrawContext const&, PickPoint const&, HitResult&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
    return true;
}

void Vis::DoTeardownOverlay(DrawContext const&, Utility::Scoped<Ogl::Agl>&) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
}

Types::BoundingBox_Base<double> Vis::DoBoundingBox(Types::BoundingBox_Base<double> const& p_children) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
    return p_children;
}

void Vis::DoSelect(SelectRecord const&, Core::NodePath const&, bool) {
    ReportMissingOverride(__PRETTY_FUNCTION__, __LINE__);
}

void Vis::GetSelectRecords(HitRecord const&, std::list<SelectRecord>&) {}

} // namespace Qor::Chart::Render
