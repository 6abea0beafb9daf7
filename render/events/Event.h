#pragma once

#include <cstdint>

/// What an event handler answers.
namespace Qor::Chart::Render::Event {

enum HandlerStatus : std::uint32_t {
    HandlerStatusHandled = 1,
    HandlerStatusNotHandled = 2,
};

/// Whether the event is offered to other receivers as well.
enum Propagation : std::uint32_t {
    PropagationContinue = 1,
    PropagationStop = 2,
};

/// The default lets the event go on; a node that consumes it answers `Consumed`.
struct Result {
    HandlerStatus status = HandlerStatusNotHandled;
    Propagation propagation = PropagationContinue;

    constexpr bool operator==(Result const&) const noexcept = default;
};

inline constexpr Result Consumed{HandlerStatusHandled, PropagationStop};
inline constexpr Result Ignored{HandlerStatusNotHandled, PropagationContinue};

} // namespace Qor::Chart::Render::Event
