#include "render/core/CallbackTypeBitSet.h"

#include <ostream>

namespace Qor::Chart::Render {

std::ostream& operator<<(std::ostream& p_stream, CallbackTypeBitSet p_set) {
    p_stream << '[';
    for (int type = CallbackHit; type <= CallbackHighlightOverlay; ++type)
        p_stream << (p_set.Has(type) ? '1' : '0');
    return p_stream << ']';
}

} // namespace Qor::Chart::Render
