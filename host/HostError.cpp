#include "host/HostError.h"

namespace Qor::Chart::Host {

HostError::~HostError() = default;

} // namespace Qor::Chart::Host
