#pragma once

#include "framework/core/Verbosity.h"
#include "render/Export.h"

#include <string>

namespace Qor::Chart::Render {

class EventDispatcher;
class Vis;

/// Hands what a node did wrong to the host. Nothing leaves these operations, whatever the node or the host throws.
namespace FailureReport {

/// Reports the exception that is being handled, whatever its type: the node, " caught exception in ", the stage, and what
/// the exception says.
/// @param p_verbosity  how much is said about the node itself; never what is below it
[[gnu::cold, gnu::noinline]] QOR_VIS_API void Caught(Vis const& p_node, EventDispatcher& p_dispatcher,
    Core::Verbosity p_verbosity, char const* p_stage, std::string const& p_location) noexcept;

/// Reports that a node stays out of the picture until it is changed.
[[gnu::cold, gnu::noinline]] QOR_VIS_API void Invalid(
    Vis const& p_node, EventDispatcher& p_dispatcher, std::string const& p_location) noexcept;

} // namespace FailureReport

} // namespace Qor::Chart::Render
