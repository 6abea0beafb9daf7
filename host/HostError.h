#pragma once

#include "framework/utility/Exception.h"
#include "host/Export.h"

namespace Qor::Chart::Host {

/// Something that the user asked for cannot be done. The text is one sentence that names the thing and says what to do.
class QOR_HOST_API HostError : public Utility::Exception {
public:
    using Exception::Exception;
    ~HostError() override;
};

} // namespace Qor::Chart::Host
