#pragma once

#include "framework/core/Ptr.h"
#include "framework/core/Verbosity.h"
#include "framework/types/QuantityUnit.h"
#include "framework/types/UniformSpatialDomain.h"
#include "framework/utility/Unscoped.h"
#include "render/Export.h"
#include "render/context/CheckPointManager.h"
#include "render/context/CopyOnWriteStack.h"

#include <boost/optional.hpp>

namespace Qor::Chart::Ogl {
class Agl;
}

namespace Qor::Chart::Assets {
class Resource;
class ImageCache;
} // namespace Qor::Chart::Assets

namespace Qor::Chart::Library {
class Geometry;
class SymbolRegistry;
} // namespace Qor::Chart::Library

namespace Qor::Chart::Types {
struct Schema;
namespace NiceIntervals {
struct NumberFormat;
}
} // namespace Qor::Chart::Types

namespace Qor::Chart::Render {

class EventDispatcher;
class Generator;
class Registrar;
class UnitSystemConverter;
struct SceneCapabilities;

/// What the update traversal hands down the tree: everything that a node needs to build what it draws. A node may change
/// one thing for itself and its subtree, the spatial domain, in its `DoRefreshUpdateContext`; the rest stays fixed for the
/// whole traversal. The context refers to what it was given: the host keeps that alive.
///
/// A copy starts at the source's present spatial domain, without its history, and costs some tens of nanoseconds.
class QOR_VIS_API UpdateContext : public Utility::CheckPointManager<1> {
public:
    using SpatialDomainStack = Utility::CopyOnWriteStack<boost::optional<Types::UniformSpatialDomain>, 0, 1>;

    /// The unit in which distances of cameras are expressed: length in metres.
    static Types::QuantityUnit const CameraLengthUnit;

    UpdateContext(Utility::Unscoped<Ogl::Agl> p_agl, Assets::Resource const& p_resource,
        Assets::ImageCache& p_imageCache, Types::Schema const& p_schema,
        Types::NiceIntervals::NumberFormat const& p_numberFormat, Render::Registrar& p_registrar,
        Library::Geometry const& p_geometry, Library::SymbolRegistry const& p_symbolRegistry,
        Render::Generator const& p_generator, EventDispatcher& p_dispatcher, Core::Ptr<UnitSystemConverter> p_units,
        Core::Verbosity p_verbosity, SceneCapabilities const& p_capabilities);
    UpdateContext(UpdateContext const& p_other);
    UpdateContext& operator=(UpdateContext const&) = delete;
    ~UpdateContext();

    Utility::Unscoped<Ogl::Agl> Graphics() const noexcept { return _agl; }
    Assets::Resource const& Resource() const noexcept { return _resource; }
    /// Nodes load their images into it.
    Assets::ImageCache& ImageCache() const noexcept { return _imageCache; }
    Library::Geometry const& Geometry() const noexcept { return _geometry; }
    Library::SymbolRegistry const& SymbolRegistry() const noexcept { return _symbolRegistry; }
    /// Makes visual nodes of model nodes.
    Render::Generator const& Generator() const noexcept { return _generator; }
    EventDispatcher& Dispatcher() const noexcept { return _dispatcher; }
    SceneCapabilities const& Capabilities() const noexcept { return _capabilities; }
    /// Objects that nodes share.
    Render::Registrar& Registrar() const noexcept { return _registrar; }
    Core::Ptr<UnitSystemConverter> const& Units() const noexcept { return _units; }
    Types::Schema const& Schema() const noexcept { return _schema; }
    Types::NiceIntervals::NumberFormat const& NumberFormat() const noexcept { return _numberFormat; }
    Core::Verbosity Verbosity() const noexcept { return _verbosity; }

    /// The domain set by the nearest node that set one, the node itself included; empty when none did.
    SpatialDomainStack const& SpatialDomain() const noexcept { return _spatialDomain; }
    SpatialDomainStack& SpatialDomain() noexcept { return _spatialDomain; }

private:
    Utility::Unscoped<Ogl::Agl> _agl;
    Assets::Resource const& _resource;
    Assets::ImageCache& _imageCache;
    Library::Geometry const& _geometry;
    Library::SymbolRegistry const& _symbolRegistry;
    Render::Generator const& _generator;
    EventDispatcher& _dispatcher;
    SceneCapabilities const& _capabilities;
    Render::Registrar& _registrar;
    Core::Ptr<UnitSystemConverter> _units;
    Types::Schema const& _schema;
    Types::NiceIntervals::NumberFormat const& _numberFormat;
    Core::Verbosity _verbosity;
    SpatialDomainStack _spatialDomain;
};

} // namespace Qor::Chart::Render
