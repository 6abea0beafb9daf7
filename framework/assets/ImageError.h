#pragma once

#include "framework/Export.h"
#include "framework/utility/Exception.h"

namespace Qor::Chart::Assets {

/// An image cannot be had. The text is one sentence that names the file and says what to do.
class QOR_FRAMEWORK_API ImageError : public Utility::Exception {
public:
    using Exception::Exception;
    ~ImageError() override;
};

} // namespace Qor::Chart::Assets
