#pragma once

#include "framework/assets/ImageCache.h"
#include "framework/assets/Resource.h"
#include "framework/core/Ptr.h"
#include "framework/core/Verbosity.h"
#include "framework/core/WeakPtr.h"
#include "framework/library/Geometry.h"
#include "framework/library/SymbolRegistry.h"
#include "framework/model/ModelNode.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Backend.h"
#include "framework/ogl/Highlight.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/NumberFormat.h"
#include "framework/types/Schema.h"
#include "host/EventDispatcher.h"
#include "host/Export.h"
#include "host/UnitConverter.h"
#include "render/context/DrawContext.h"
#include "render/context/SceneCapabilities.h"
#include "render/context/UpdateContext.h"
#include "render/core/Registrar.h"
#include "render/core/Vis.h"
#include "render/loops/Generator.h"
#include "render/units/UnitSystemConverter.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <vector>

namespace Qor::Chart::Model {
class Light;
}

namespace Qor::Chart::Host {

/// A model tree, the visual tree that mirrors it, and everything that both need to be updated and drawn: the graphics
/// handle, resources, the libraries of shapes and symbols, the converter of units, the dispatcher and one factory per
/// class of model node. It is what a program owns one of per window or picture; a `FrameDriver` runs its frames.
///
///     Host::Scene scene(std::make_unique<Ogl::OpenGlBackend>());
///     scene.Add(Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube)));
///
/// Use it on one thread. Destroy it while the OpenGL context of its back end is current, or after that context.
class QOR_HOST_API Scene {
public:
    /// A scene with an empty `Model::SceneGraph` as its root. The back end must be there.
    explicit Scene(std::unique_ptr<Ogl::Backend> p_backend);
    ~Scene();
    Scene(Scene const&) = delete;
    Scene& operator=(Scene const&) = delete;

    /// Puts another model tree in place of the present one and makes its visual tree.
    /// @throws HostError for an empty handle, for a root whose class has no factory, and for a tree that contains itself or
    ///         is too deep; the scene then stays as it was
    void SetModel(Core::Ptr<Model::ModelNode> p_root);
    Core::Ptr<Model::ModelNode> const& Model() const noexcept { return _model; }
    /// The root of the visual tree; never empty.
    Core::Ptr<Render::Vis> const& Visual() const noexcept { return _visual; }

    /// Appends a node to the root of the model; false for an empty handle and for a node that is there already.
    bool Add(Core::Ptr<Model::ModelNode> const& p_node) { return _model->Add(p_node); }

    /// The box of everything in the scene, as of the last update; undefined when there is nothing.
    Types::BoundingBox_Base<double> const& Bounds() const noexcept { return _visual->BoundingBox(); }

    /// The boxes of the parts of the scene, as of the last update: of its leaves, or of groups of them where there are more
    /// than some thousands. All of the scene lies in them.
    std::vector<Types::BoundingBox_Base<double>> Parts() const { return PartsOf(*_visual); }
    /// The same of a part of a visual tree, such as a pane.
    static std::vector<Types::BoundingBox_Base<double>> PartsOf(Render::Vis const& p_root);

    /// The lights of the model that shine: enabled, with everything above them enabled, in the order of the tree's making.
    std::vector<Core::Ptr<Model::Light>> Lights() const;

    /// \name What contexts are made of
    /// Changes are seen by the next frame.
    /// @{
    Ogl::Agl& Graphics() noexcept { return *_agl; }
    Assets::Resource& Resource() noexcept { return _resource; }
    Assets::ImageCache& Images() noexcept { return _images; }
    Library::Geometry const& Geometry() const noexcept { return _geometry; }
    Library::SymbolRegistry const& Symbols() const noexcept { return _symbols; }
    /// The factories of visual nodes; a program adds those of its own classes.
    Render::Generator& Factories() noexcept { return _generator; }
    Render::Registrar& Registrar() noexcept { return _registrar; }
    EventDispatcher& Dispatcher() noexcept { return _dispatcher; }
    Core::Ptr<Render::UnitSystemConverter> const& Units() const noexcept { return _units; }
    /// The converter that is registered with `Units` at first.
    boost::shared_ptr<UnitConverter> const& UnitDatabase() const noexcept { return _unitDatabase; }
    Render::SceneCapabilities& Capabilities() noexcept { return _capabilities; }
    Types::Schema& Schema() noexcept { return _schema; }
    Types::NiceIntervals::NumberFormat& NumberFormat() noexcept { return _numberFormat; }
    Ogl::Highlight& Highlight() noexcept { return *_highlight; }
    /// How much is said about nodes in messages.
    void SetVerbosity(Core::Verbosity p_verbosity) noexcept { _verbosity = p_verbosity; }
    /// @}

    /// A context for an update traversal; it refers to the scene.
    Render::UpdateContext MakeUpdateContext();
    /// A root context for a pass, with an empty viewport and identity matrices; it refers to the scene.
    Render::DrawContext MakeDrawContext(Render::DrawContext::DrawMode p_mode);

private:
    class LightVis;
    using LightList = std::vector<Core::WeakPtr<Render::Vis>>;

    Core::Ptr<Render::Vis> Generate(Core::Ptr<Model::ModelNode> const& p_root) const;

    std::unique_ptr<Ogl::Agl> _agl;
    Assets::Resource _resource;
    Assets::ImageCache _images;
    Library::Geometry _geometry;
    Library::SymbolRegistry _symbols;
    Render::Registrar _registrar;
    EventDispatcher _dispatcher;
    boost::shared_ptr<UnitConverter> _unitDatabase;
    Core::Ptr<Render::UnitSystemConverter> _units;
    Render::SceneCapabilities _capabilities;
    Types::Schema _schema;
    Types::NiceIntervals::NumberFormat _numberFormat;
    boost::shared_ptr<Ogl::Highlight> _highlight;
    Core::Verbosity _verbosity = Core::Verbosity::Quiet;
    std::shared_ptr<LightList> _lights;
    Render::Generator _generator;
    Core::Ptr<Model::ModelNode> _model;
    Core::Ptr<Render::Vis> _visual;
};

} // namespace Qor::Chart::Host
