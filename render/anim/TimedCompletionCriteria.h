#pragma once

#include "framework/qordebug/highrestimer.h"
#include "render/Export.h"

namespace Qor::Chart::Render {

/// Tells how far an animation of a fixed duration is, as a count of steps. The clock alone decides: the first step is
/// reached as soon as any time has passed, the last one when the whole duration has.
class QOR_VIS_API TimedCompletionCriteria {
public:
    /// Starts the clock.
    TimedCompletionCriteria(unsigned p_milliseconds, unsigned p_steps);

    /// The step reached now, from 0 to Of(); complete when it equals Of(). Without steps or duration complete at once.
    unsigned Step() const;
    unsigned Of() const noexcept { return static_cast<unsigned>(_steps); }

    /// Begins again from step 0.
    void Reset();
    /// Does nothing; where a criterion is counted up by its user, this one goes by the clock.
    void Inc() noexcept {}

private:
    qordebug::highrestimer<1> _timer;
    double _duration;
    double _steps;
};

} // namespace Qor::Chart::Render
