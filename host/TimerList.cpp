#include "host/TimerList.h"

#include "framework/qordebug/highrestimer.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Host {

void TimerList::Add(int p_milliseconds, Core::WeakPtr<Render::Vis> p_node, std::function<void()> p_call) {
    auto const delay = static_cast<std::uint64_t>(std::max(p_milliseconds, 0));
    _timers.emplace(qordebug::now() + delay * 1'000'000, Timer{std::move(p_node), std::move(p_call)});
}

std::vector<TimerList::Timer> TimerList::TakeDue() {
    std::vector<Timer> due;
    auto const end = _timers.upper_bound(qordebug::now());
    for (auto timer = _timers.begin(); timer != end; ++timer)
        due.push_back(std::move(timer->second));
    _timers.erase(_timers.begin(), end);
    return due;
}

std::optional<std::uint64_t> TimerList::NextDue() const {
    auto const next = std::find_if(
        _timers.begin(), _timers.end(), [](auto const& p_timer) { return !p_timer.second.node.Expired(); });
    return next != _timers.end() ? std::optional(next->first) : std::nullopt;
}

} // namespace Qor::Chart::Host
