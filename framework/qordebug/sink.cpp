#include "framework/qordebug/sink.h"

namespace qordebug {

sink::~sink() = default;

} // namespace qordebug
