#pragma once

#include "framework/core/TimeStamp.h"
#include "framework/model/Symbol.h"
#include "framework/ogl/PrimitiveBuffer.h"
#include "framework/types/BoundingBox.h"
#include "render/context/DrawContext.h"

#include <memory>
#include <string>
#include <utility>

namespace Qor::Chart::Render {

class SymbolCache;

/// A symbol ready to be drawn, shared by all objects that show the same shape or file and gone with the last of them.
class LoadedSymbol {
public:
    using Box = Types::BoundingBox_Base<double>;

    /// @param p_cache   is told when the symbol goes
    /// @param p_source  names the shape or file that was loaded
    LoadedSymbol(std::shared_ptr<SymbolCache> p_cache, Model::Symbol const& p_source,
        std::shared_ptr<Ogl::PrimitiveBuffer const> p_buffer, Box const& p_bounds);
    ~LoadedSymbol();
    LoadedSymbol(LoadedSymbol const&) = delete;
    LoadedSymbol& operator=(LoadedSymbol const&) = delete;

    /// Whether this is what the model's symbol asks for. False for the right file when the model's symbol was touched
    /// since it was read: the file may be another one by now.
    bool IsUpToDate(Model::Symbol const& p_source) const;
    /// Takes note that the file was looked at and is still the one that was read.
    void Confirm() const noexcept { _confirmed.Touch(); }

    std::shared_ptr<Ogl::PrimitiveBuffer const> const& Buffer() const noexcept { return _buffer; }
    /// Around the symbol, in its own coordinates.
    Box const& Bounds() const noexcept { return _bounds; }
    /// Whether the vertices have colours of their own.
    bool HasColors() const noexcept { return _buffer->Info().flags[Ogl::AttributeInfo::Color]; }

    /// Whether the vertices say where on a texture they lie.
    bool HasTexCoords() const noexcept { return _buffer->Info().flags[Ogl::AttributeInfo::TexCoord0]; }

    /// The shader of the context, with the colours of the vertices where the symbol has such and shows them, and with
    /// the textures in force where it says where they lie.
    std::shared_ptr<Ogl::Shader const> Shader(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) const;
    /// The same kind of shader in the current colour alone, whatever the vertices have; unlit while lighting is off.
    std::shared_ptr<Ogl::Shader const> FlatShader(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) const;

    /// What to draw with two textures: vertices without coordinates for the second one use those for the first.
    std::shared_ptr<Ogl::PrimitiveBuffer const> const& TwiceTexturedBuffer(Utility::Scoped<Ogl::Agl>& p_agl) const;

    /// True the first time: it is worth saying once that a symbol cannot show textures.
    bool TakeTextureWarning() const noexcept { return !std::exchange(_isWarned, true); }

private:
    std::shared_ptr<SymbolCache> _cache;
    std::string _file; ///< empty for a shape
    Model::SymbolShape _shape;
    mutable Core::TimeStamp _confirmed = Core::TimeStamp::Now();
    std::shared_ptr<Ogl::PrimitiveBuffer const> _buffer;
    Box _bounds;
    mutable std::shared_ptr<Ogl::PrimitiveBuffer const> _twiceTextured; ///< empty until it is needed
    mutable bool _isWarned = false;
};

} // namespace Qor::Chart::Render
