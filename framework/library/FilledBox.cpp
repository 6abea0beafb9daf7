#include "framework/library/FilledBox.h"

#include "framework/utility/Ensure.h"

namespace Qor::Chart::Library {

namespace {

Pattern::Stipple const* PatternOf(FilledBox::Mode p_mode) {
    bool const isHatched = p_mode == FilledBox::Mode::Hatched;
    (void)QOR_ENSURE(isHatched || p_mode == FilledBox::Mode::Solid);
    return isHatched ? &Pattern::HatchPattern() : nullptr;
}

} // namespace

FilledBox::FilledBox(QColor const& p_outline, QColor const& p_fill, Mode p_mode)
    : Box(p_outline, p_fill, PatternOf(p_mode)) {}

} // namespace Qor::Chart::Library
