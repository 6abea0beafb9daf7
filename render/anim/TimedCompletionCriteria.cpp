#include "render/anim/TimedCompletionCriteria.h"

#include <cmath>

namespace Qor::Chart::Render {

TimedCompletionCriteria::TimedCompletionCriteria(unsigned p_milliseconds, unsigned p_steps)
    : _duration(p_milliseconds), _steps(p_steps) {}

unsigned TimedCompletionCriteria::Step() const {
    auto const elapsed = static_cast<double>(_timer.elapsed());
    if (_duration <= elapsed || _steps <= 0.0)
        return Of();
    return static_cast<unsigned>(std::ceil(elapsed / _duration * _steps));
}

void TimedCompletionCriteria::Reset() {
    _timer.restart();
}

} // namespace Qor::Chart::Render
