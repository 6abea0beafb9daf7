#pragma once

#include "framework/ogl/Highlight.h"
#include "framework/types/Color4f.h"
#include "framework/utility/Scoped.h"
#include "render/nodes/SymbolLook.h"

namespace Qor::Chart::Ogl {
class Agl;
}

namespace Qor::Chart::Render {

class DrawContext;
class LoadedSymbol;

/// Draws a symbol that the draw pass has left so that it stands out from whatever is around it: its surface moves towards
/// the highlight colour, or towards black or white where it has that colour already, and two rings are drawn around what
/// is seen of it, the inner one in the highlight colour and the outer one in what contrasts with it. Whatever is behind,
/// one of the two shows.
class SymbolHighlight {
public:
    /// @param p_look    colour and width of the rings
    /// @param p_object  how the symbol was drawn
    /// @param p_amount  0 leaves the symbol as it is, 1 is the whole highlight
    SymbolHighlight(Ogl::Highlight const& p_look, SymbolLook const& p_object, float p_amount);

    /// Draws with the present matrices and tests against the depths that are there. Outside panes these are those of the
    /// draw pass, so that what is in front covers the highlight. A pane clears its depths at the beginning of the highlight
    /// pass: in it a highlight shines through what is in front, and only other highlights cover it. The rings need one free
    /// bit of the stencil buffer, zero everywhere, and leave it so; without one all edges of the symbol are drawn.
    void Draw(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl, LoadedSymbol const& p_symbol) const;

private:
    void DrawSurface(
        DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl, LoadedSymbol const& p_symbol) const;
    void DrawRings(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl, LoadedSymbol const& p_symbol) const;

    SymbolLook _object;
    Types::Color4f _surface;
    Types::Color4f _innerRing;
    Types::Color4f _outerRing;
    float _ringWidth; ///< pixels
    float _amount;
};

} // namespace Qor::Chart::Render
