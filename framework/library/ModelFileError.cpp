#include "framework/library/ModelFileError.h"

namespace Qor::Chart::Library {

ModelFileError::~ModelFileError() = default;

} // namespace Qor::Chart::Library
