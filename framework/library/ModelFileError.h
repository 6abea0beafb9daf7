#pragma once

#include "framework/Export.h"
#include "framework/utility/Exception.h"

namespace Qor::Chart::Library {

/// A model file cannot be used. The text is one sentence that names the file and says what to do.
class QOR_FRAMEWORK_API ModelFileError : public Utility::Exception {
public:
    using Exception::Exception;
    ~ModelFileError() override;
};

} // namespace Qor::Chart::Library
