#pragma once

#include "framework/model/Symbol.h"
#include "render/core/Registrar.h"

#include <array>
#include <memory>
#include <string>
#include <unordered_map>

namespace Qor::Chart::Library {
struct Symbol;
}

namespace Qor::Chart::Render {

class LoadedSymbol;
class UpdateContext;

/// Knows the symbols that are in use, so that each shape and each file is loaded once. It keeps none alive; the symbols
/// keep it.
class SymbolCache : public std::enable_shared_from_this<SymbolCache> {
public:
    /// The one that all nodes of a registrar share.
    static std::shared_ptr<SymbolCache> Of(Registrar& p_registrar);

    explicit SymbolCache(Registrar::Handle p_registration);

    /// What the model's symbol asks for, a shape or a file. Empty when there is nothing in it that can be drawn. Throws
    /// `Library::ModelFileError` for a file that cannot be used.
    std::shared_ptr<LoadedSymbol const> Load(UpdateContext const& p_context, Model::Symbol const& p_source);

    /// Drops the entry of a file whose symbol is gone.
    void Forget(std::string const& p_file) noexcept;

private:
    using WeakSymbol = std::weak_ptr<LoadedSymbol const>;
    static constexpr std::size_t ShapeCount = static_cast<std::size_t>(Model::SymbolShape::Cross) + 1;

    std::shared_ptr<LoadedSymbol const> Find(Model::Symbol const& p_source) const;
    std::shared_ptr<LoadedSymbol const> Make(
        UpdateContext const& p_context, Model::Symbol const& p_source, Library::Symbol const& p_fetched);

    Registrar::Handle _registration;
    std::array<WeakSymbol, ShapeCount> _shapes;
    std::unordered_map<std::string, WeakSymbol> _files;
};

} // namespace Qor::Chart::Render
