#include "render/nodes/SchemaFont.h"

#include "render/nodes/OverlayShapes.h"
#include "render/context/DrawContext.h"
#include "framework/assets/Resource.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Text.h"
#include "framework/utility/Scoped.h"

#include <algorithm>

namespace Qor::Chart::Render {

bool SchemaFont::Take(DrawContext const& p_context) {
    Types::Schema const& schema = p_context.Schema().Top();
    auto const size = static_cast<float>(std::max(schema.fontSize, 1));
    float const ratio = OverlayShapes::PixelRatio(p_context);
    bool const isOther = !_text || _family != schema.fontFamily;
    if (isOther) {
        Utility::Scoped<Ogl::Agl> agl(p_context.Graphics());
        _text = agl->GenFont(p_context.Resource().FontSet(schema.fontFamily), size);
        _family = schema.fontFamily;
    }
    if (_text->Size() != size)
        _text->SetSize(size);
    if (_text->PixelRatio() != ratio)
        _text->SetPixelRatio(ratio);
    return isOther;
}

} // namespace Qor::Chart::Render
