#include "framework/ogl/Backend.h"

namespace Qor::Chart::Ogl {

Backend::~Backend() = default;

} // namespace Qor::Chart::Ogl
