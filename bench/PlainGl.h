#pragma once

#include "framework/ogl/PrimitiveBuffer.h"
#include "framework/types/Color4f.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Pos.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace Bench {

using namespace Qor::Chart;

/// Something to draw that shares its shape with others.
struct Object {
    /// What is set for each object of a mixed scene.
    struct State {
        bool isBlended = false;
        bool isCulled = false;
        bool writesDepth = true;
    };

    Types::Matrix4 modelView;
    std::array<float, 16> floats{}; ///< the same matrix
    Types::Color4f color;
    std::size_t shape = 0;
    State state;
};

/// Draws objects as a program without any library would, in a compatibility context: what our figures are held against.
class PlainGl {
public:
    using Shapes = std::span<std::shared_ptr<Ogl::PrimitiveBuffer const> const>;

    /// The context must be current here and wherever this is used. Points, lines and triangles only.
    PlainGl(Shapes p_shapes, Types::Matrix4 const& p_projection);

    /// `glLoadMatrixf`, `glColor4f` and `glDrawElements` for each object, and its state if these are mixed.
    void DrawEach(std::span<Object const> p_objects, bool p_isMixed);
    /// Matrices and colours sent in one piece, and one draw of the first shape.
    void DrawInstanced(std::span<Object const> p_objects);

    struct Hit {
        std::size_t object = 0;
        double depth = 0; ///< window depth of what is nearest of it
    };
    /// A pass in selection mode with a name for each object.
    /// @param p_pixel      the middle of a square to be hit
    /// @param p_tolerance  half its width in pixels
    std::vector<Hit> Select(std::span<Object const> p_objects, Types::Pos const& p_pixel, int p_tolerance);

    /// So many times `glPushAttrib`, a change and `glPopAttrib`; the same for matrices.
    static void PushAndPopAttributes(std::size_t p_times);
    static void PushAndPopMatrices(std::size_t p_times);

private:
    struct Shape {
        std::uint32_t arrays = 0;
        std::uint32_t kind = 0;
        int count = 0;
    };
    struct Instance {
        std::array<float, 16> matrix;
        Types::Color4f color;
    };

    void BeginPicture() const;
    void MakeInstancing(Ogl::PrimitiveBuffer const& p_shape);

    std::array<float, 16> _projection{};
    std::vector<Shape> _shapes;
    std::uint32_t _program = 0;
    std::uint32_t _instanceArrays = 0;
    std::uint32_t _instanceBuffer = 0;
    std::vector<Instance> _instances;
    std::vector<std::uint32_t> _selection;
};

} // namespace Bench
