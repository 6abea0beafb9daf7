#pragma once

#include "render/anim/ColorBlender.h"
#include "render/anim/NumericIncrementer.h"
#include "render/anim/TimedCompletionCriteria.h"

#include <QColor>

#include <utility>

namespace Qor::Chart::Render {

/// A value that moves to its target step by step. It keeps no clock running: whoever wants to see it move asks for
/// frames until it is complete.
/// @tparam T             the value
/// @tparam Interpolator  gives the value at a step between two values
/// @tparam Criteria      tells the step, how many there are, and starts again on `Reset()`
template <class T, class Interpolator, class Criteria = TimedCompletionCriteria>
class Blender {
public:
    /// Stands at a value, complete.
    explicit Blender(Criteria p_criteria, T p_value = T(), Interpolator p_interpolator = Interpolator())
        : _start(p_value)
        , _target(std::move(p_value))
        , _criteria(std::move(p_criteria))
        , _interpolator(std::move(p_interpolator)) {}

    /// Moves to another target, from the present value on. The target that is being moved to already changes nothing.
    void SetTarget(T const& p_target) {
        if (p_target == _target)
            return;
        _start = Value();
        _target = p_target;
        _moving = true;
        _criteria.Reset();
    }
    /// Ends the movement at the target.
    void Jump() { _moving = false; }
    /// Stands at a value, complete.
    void Jump(T const& p_value) {
        _target = p_value;
        Jump();
    }
    /// Moves to a target when animations are on, else jumps there.
    void SetTarget(T const& p_target, bool p_animated) {
        SetTarget(p_target);
        if (!p_animated)
            Jump();
    }

    T Value() const {
        if (!_moving)
            return _target;
        unsigned const step = _criteria.Step();
        unsigned const of = _criteria.Of();
        return step == of ? _target : _interpolator(_start, _target, step, of);
    }
    T const& Target() const noexcept { return _target; }
    bool IsComplete() const { return !_moving || _criteria.Step() == _criteria.Of(); }

private:
    T _start;
    T _target;
    Criteria _criteria;
    [[no_unique_address]] Interpolator _interpolator;
    bool _moving = false;
};

using ColorAnimation = Blender<QColor, ColorBlender>;
using IntAnimation = Blender<int, NumericIncrementer<int>>;
using FloatAnimation = Blender<float, NumericIncrementer<float>>;

} // namespace Qor::Chart::Render
