#pragma once

#include "render/Export.h"

#include <memory>
#include <string>

namespace Qor::Chart::Ogl {
class Text;
}

namespace Qor::Chart::Render {

class DrawContext;

/// The font that the schema names, in its size and for the pixel ratio of the window: made when it is first asked for,
/// and again when the schema names another family.
class QOR_VIS_API SchemaFont {
public:
    /// Follows the schema on top of the context.
    /// @return whether it is another font now: layouts that were made with the former one refer to what is gone
    bool Take(DrawContext const& p_context);

    /// False until a font was taken.
    explicit operator bool() const noexcept { return _text != nullptr; }
    Ogl::Text& operator*() const noexcept { return *_text; }
    Ogl::Text* operator->() const noexcept { return _text.get(); }

private:
    std::string _family;
    std::shared_ptr<Ogl::Text> _text;
};

} // namespace Qor::Chart::Render
