#pragma once

#include "framework/core/ModificationWatcher.h"
#include "framework/core/Reference.h"
#include "framework/model/SharedMatrix.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/GenericShader.h"
#include "framework/types/Color4f.h"
#include "render/Export.h"
#include "render/anim/Blender.h"
#include "render/core/Vis.h"
#include "render/events/EventHandler.h"
#include "render/nodes/SymbolLook.h"

#include <bitset>
#include <list>
#include <memory>
#include <string>

namespace Qor::Chart::Render {

class EventDispatcher;
class LoadedSymbol;

/// The visual node of a simple object: one symbol in the scene, a built-in shape or the content of a model file, placed by
/// the model's transform and drawn in the model's colour. There may be millions of them: what they have in common is
/// shared, and objects of one symbol that differ in transform and colour alone are drawn together. What is below an object
/// in the tree is placed relative to it.
///
/// The colour is multiplied with those of the symbol's vertices where it has such; an object whose colour was never set
/// shows these alone, or the textures of the render style above it, and else the foreground colour of that style.
/// Objects that are not opaque, by their colour or by the style, are drawn after all opaque ones of their pane, the
/// farthest first, wherever they stand in the tree; see docs/architecture.md.
///
/// An object that is to be seen behind geometry is drawn a second time through a stipple pattern, whatever is in front
/// of it: faintly, or densely when it is a front object. Devices without stipple leave that out.
///
/// A pickable object is hit by the pointer wherever its symbol is drawn. While the pointer is over it, or it is selected, or
/// its model pulses, it is drawn highlighted; a click on it is told to the model's listeners.
///
/// A symbol that is missing or cannot be loaded makes the node invalid and is reported, once per change of the model.
class QOR_VIS_API SimpleObject : public Vis, public EventHandler {
public:
    SimpleObject();
    ~SimpleObject() override;

    /// Mirrors a model node from now on. One that is no simple object is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

    Event::Result OnMouseOver(EventInformation& p_event) override;
    void OnMouseOut(EventInformation& p_event) override;
    /// Tells the model's listeners of a click with the primary button.
    Event::Result OnClick(EventInformation& p_event) override;

private:
    NodeStatus DoUpdate(UpdateContext const& p_context) override;
    void DoSetup(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;
    DrawResult DoDraw(DrawContext const& p_context) override;
    DrawResult DoHighlight(DrawContext const& p_context) override;
    bool DoHit(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) override;
    void DoTeardown(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;
    void DoSelect(SelectRecord const& p_record, Core::NodePath const& p_path, bool p_selected) override;
    void GetSelectRecords(HitRecord const& p_hit, std::list<SelectRecord>& p_records) override;
    Types::BoundingBox_Base<double> DoBoundingBox(Types::BoundingBox_Base<double> const& p_children) override;

    void WatchModel(Model::SimpleObject const& p_model);
    void UpdatePulse(UpdateContext const& p_context, Model::SimpleObject const& p_model);
    void KeepPulsing(EventDispatcher& p_dispatcher);
    /// Takes the highlight pass up or gives it up, as hover, selection and pulse ask for it.
    void UpdateHighlighting();
    /// An object that cannot be picked any more is not lit, though the pointer has still to leave it.
    bool IsHoverShown() const { return _hovered && IsHandled(HandledHit); }
    void UpdatePicking(Model::SimpleObject const& p_model);
    void LoadShapeSymbol(UpdateContext const& p_context, Model::SimpleObject const& p_model);
    void UpdateLook(UpdateContext const& p_context, Model::SimpleObject const& p_model);
    void Warn(UpdateContext const& p_context, std::string const& p_text, std::string const& p_location) const;

    /// How the object looks in its place in the tree.
    SymbolLook LookIn(DrawContext const& p_context) const;
    Types::Color4f ColorUnder(Ogl::GenericShader::Look const& p_style, bool p_isTextured) const;
    void WarnOfTextures(DrawContext const& p_context) const;
    void DrawSymbol(Utility::Scoped<Ogl::Agl>& p_agl, SymbolLook const& p_look) const;
    void DrawBehindGeometry(Utility::Scoped<Ogl::Agl>& p_agl, SymbolLook const& p_look) const;

    Core::WeakRef<Model::SimpleObject> _model;
    Core::ModificationWatcherList _watchers; ///< over the model and its symbol
    Model::SharedMatrix _transform;
    std::shared_ptr<LoadedSymbol const> _symbol; ///< empty while there is none that can be drawn
    Types::Color4f _color;
    bool _namesColor = false; ///< the model's colour was set
    std::unique_ptr<FloatAnimation> _pulse; ///< goes between 0 and 0.5; null while the object does not pulse
    bool _hovered = false; ///< the pointer is over the object, as far as the host was told
    bool _selected = false;
    bool _isFront = false;
    bool _isVisibleBehindGeometry = false;
};

} // namespace Qor::Chart::Render
