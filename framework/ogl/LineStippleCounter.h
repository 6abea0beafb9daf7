#pragma once

#include "framework/ogl/State.h"
#include "framework/types/Vector2.h"
#include "framework/types/Vector4.h"

namespace Qor::Chart::Ogl {

/// Counts the pixels of a chain of lines as they will be drawn, so that a stipple pattern goes on around its corners. Lines
/// of whole pixels count the columns (or rows, where they are steep) whose diamond they leave; smooth lines
/// count their lengths, rounded up. The shaders count in the same way within a line.
class LineStippleCounter {
public:
    explicit LineStippleCounter(State const& p_state);

    void Reset() { _pixels = 0; }
    /// Pixels since the beginning of the chain.
    float Pixels() const { return static_cast<float>(_pixels); }
    /// Goes on by a line between two points in the coordinates that the projection of the state takes.
    void Advance(Types::Vector4_Base<float> const& p_from, Types::Vector4_Base<float> const& p_to);

private:
    using Vector2 = Types::Vector2_Base<double>;
    using Vector4 = Types::Vector4_Base<double>;

    Vector4 Project(Types::Vector4_Base<float> const& p_point) const;
    Vector2 Window(Vector4 const& p_point) const;

    ProjectionState const& _projection;
    PixelRectangle const& _viewport;
    bool _isSmooth;
    double _pixels = 0;
};

} // namespace Qor::Chart::Ogl
