#include "framework/assets/ImageError.h"

namespace Qor::Chart::Assets {

ImageError::~ImageError() = default;

} // namespace Qor::Chart::Assets
