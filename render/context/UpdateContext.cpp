#include "render/context/UpdateContext.h"

#include "render/units/UnitSystemConverter.h"

#include <utility>

namespace Qor::Chart::Render {

Types::QuantityUnit const UpdateContext::CameraLengthUnit(L"Length", L"m");

UpdateContext::UpdateContext(Utility::Unscoped<Ogl::Agl> p_agl, Assets::Resource const& p_resource,
    Assets::ImageCache& p_imageCache, Types::Schema const& p_schema,
    Types::NiceIntervals::NumberFormat const& p_numberFormat, Render::Registrar& p_registrar,
    Library::Geometry const& p_geometry, Library::SymbolRegistry const& p_symbolRegistry,
    Render::Generator const& p_generator, EventDispatcher& p_dispatcher, Core::Ptr<UnitSystemConverter> p_units,
    Core::Verbosity p_verbosity, SceneCapabilities const& p_capabilities)
    : _agl(p_agl)
    , _resource(p_resource)
    , _imageCache(p_imageCache)
    , _geometry(p_geometry)
    , _symbolRegistry(p_symbolRegistry)
    , _generator(p_generator)
    , _dispatcher(p_dispatcher)
    , _capabilities(p_capabilities)
    , _registrar(p_registrar)
    , _units(std::move(p_units))
    , _schema(p_schema)
    , _numberFormat(p_numberFormat)
    , _verbosity(p_verbosity)
    , _spatialDomain(*this, boost::none) {}

UpdateContext::UpdateContext(UpdateContext const& p_other)
    : CheckPointManager()
    , _agl(p_other._agl)
    , _resource(p_other._resource)
    , _imageCache(p_other._imageCache)
    , _geometry(p_other._geometry)
    , _symbolRegistry(p_other._symbolRegistry)
    , _generator(p_other._generator)
    , _dispatcher(p_other._dispatcher)
    , _capabilities(p_other._capabilities)
    , _registrar(p_other._registrar)
    , _units(p_other._units)
    , _schema(p_other._schema)
    , _numberFormat(p_other._numberFormat)
    , _verbosity(p_other._verbosity)
    , _spatialDomain(*this, p_other._spatialDomain.Top()) {}

UpdateContext::~UpdateContext() = default;

} // namespace Qor::Chart::Render
