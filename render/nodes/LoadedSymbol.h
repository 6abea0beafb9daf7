#pragma once

#include "framework/core/TimeStamp.h"
#include "framework/model/Symbol.h"
#include "framework/ogl/PrimitiveBuffer.h"
#include "framework/types/BoundingBox.h"
#include "render/context/DrawContext.h"

#include <memory>
#include <string>

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

    /// The shader of the context, with the colours of the vertices where the symbol has such.
    std::shared_ptr<Ogl::Shader const> Shader(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) const;
    /// The same kind of shader in the current colour alone, whatever the vertices have; unlit while lighting is off.
    std::shared_ptr<Ogl::Shader const> FlatShader(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) const;

private:
    /// A shader that differs from that of the context in its options.
    struct Variant {
        DrawContext::GenericShaderEntry context; ///< what it was made of
        DrawContext::GenericShaderEntry own;

        std::shared_ptr<Ogl::Shader const> Get(DrawContext::GenericShaderEntry const& p_context,
            Ogl::GenericShader::State const& p_state, Utility::Scoped<Ogl::Agl>& p_agl);
    };

    std::shared_ptr<SymbolCache> _cache;
    std::string _file; ///< empty for a shape
    Model::SymbolShape _shape;
    mutable Core::TimeStamp _confirmed = Core::TimeStamp::Now();
    std::shared_ptr<Ogl::PrimitiveBuffer const> _buffer;
    Box _bounds;
    mutable Variant _coloredShader;
    mutable Variant _flatShader;
};

} // namespace Qor::Chart::Render
