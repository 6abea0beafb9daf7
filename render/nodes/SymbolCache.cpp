#include "render/nodes/SymbolCache.h"

#include "render/core/SharedUnique.h"
#include "render/nodes/LoadedSymbol.h"
#include "render/context/UpdateContext.h"
#include "framework/library/SymbolRegistry.h"
#include "framework/ogl/Agl.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Scoped.h"

#include <utility>

namespace Qor::Chart::Render {

namespace {

constexpr Library::Shape ToLibraryShape(Model::SymbolShape p_shape) {
    return static_cast<Library::Shape>(static_cast<int>(p_shape) - 1);
}
static_assert(ToLibraryShape(Model::SymbolShape::Cube) == Library::Shape::Cube);
static_assert(ToLibraryShape(Model::SymbolShape::Sphere) == Library::Shape::Sphere);
static_assert(ToLibraryShape(Model::SymbolShape::Cylinder) == Library::Shape::Cylinder);
static_assert(ToLibraryShape(Model::SymbolShape::Cone) == Library::Shape::Cone);
static_assert(ToLibraryShape(Model::SymbolShape::Arrow) == Library::Shape::Arrow);
static_assert(ToLibraryShape(Model::SymbolShape::Tetrahedron) == Library::Shape::Tetrahedron);
static_assert(ToLibraryShape(Model::SymbolShape::Octahedron) == Library::Shape::Octahedron);
static_assert(ToLibraryShape(Model::SymbolShape::Cross) == Library::Shape::Cross);

Library::Symbol Fetch(Library::SymbolRegistry const& p_registry, Model::Symbol const& p_source) {
    if (p_source.Source() == Model::Symbol::SourceKind::File)
        return p_registry.LoadModel(p_source.GetFile());
    return p_registry.Get(ToLibraryShape(p_source.GetShape()));
}

} // namespace

std::shared_ptr<SymbolCache> SymbolCache::Of(Registrar& p_registrar) {
    return SharedUnique<SymbolCache>::Get(p_registrar);
}

SymbolCache::SymbolCache(Registrar::Handle p_registration) : _registration(std::move(p_registration)) {}

std::shared_ptr<LoadedSymbol const> SymbolCache::Load(UpdateContext const& p_context, Model::Symbol const& p_source) {
    std::shared_ptr<LoadedSymbol const> former = Find(p_source);
    if (former && former->IsUpToDate(p_source))
        return former;
    Library::Symbol const fetched = Fetch(p_context.SymbolRegistry(), p_source);
    if (former && former->Buffer()->Indices() == fetched.indices && former->Buffer()->Vertices() == fetched.vertices) {
        former->Confirm();
        return former;
    }
    return Make(p_context, p_source, fetched);
}

std::shared_ptr<LoadedSymbol const> SymbolCache::Make(
    UpdateContext const& p_context, Model::Symbol const& p_source, Library::Symbol const& p_fetched) {
    constexpr std::size_t posIdx = Ogl::AttributeInfo::Position;
    if (!p_fetched)
        return {};
    Ogl::AttributeInfo const& attrInfo = p_fetched.vertices->Info();
    if (!QOR_ENSURE(attrInfo.flags[posIdx] && "No Position attributes in symbol!"))
        return {};
    Utility::Scoped<Ogl::Agl> agl(p_context.Graphics());
    auto buffer = agl->CreatePrimitiveBuffer(p_fetched.indices, p_fetched.vertices);
    if (!buffer || !buffer->IsValid())
        return {};
    auto symbol =
        std::make_shared<LoadedSymbol const>(shared_from_this(), p_source, std::move(buffer), p_fetched.bounds);
    if (p_source.Source() == Model::Symbol::SourceKind::File)
        _files.insert_or_assign(p_source.GetFile(), symbol);
    else
        _shapes.at(static_cast<std::size_t>(p_source.GetShape())) = symbol;
    return symbol;
}

std::shared_ptr<LoadedSymbol const> SymbolCache::Find(Model::Symbol const& p_source) const {
    if (p_source.Source() != Model::Symbol::SourceKind::File)
        return _shapes.at(static_cast<std::size_t>(p_source.GetShape())).lock();
    auto const found = _files.find(p_source.GetFile());
    return found == _files.end() ? nullptr : found->second.lock();
}

void SymbolCache::Forget(std::string const& p_file) noexcept {
    auto const found = _files.find(p_file);
    if (found != _files.end() && found->second.expired())
        _files.erase(found);
}

} // namespace Qor::Chart::Render
