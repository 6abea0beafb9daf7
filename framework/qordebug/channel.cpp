#include "framework/qordebug/channel.h"

#include <utility>

namespace qordebug {

channel::channel(std::string p_name) : _name(std::move(p_name)) {}

} // namespace qordebug
