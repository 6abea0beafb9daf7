#include "tests/framework/ogl/RecordedAgl.h"

#include <limits>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using Matrix = Types::Matrix4;
using Vector3 = Agl::Vector3;
using Vector4 = Agl::Vector4;

Vector3 Apply(Matrix const& p_matrix, Vector3 const& p_point) {
    Vector4 const result = p_matrix * Vector4(p_point, 1);
    return result.XYZ() / result.w;
}

TEST(AglMatrix, projectionsTakeOddInput) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    for (Agl::Box const& box : {Agl::Box(), Agl::Box({3, 3, 3}, {3, 3, 3})}) {
        for (Matrix const& camera :
            {Matrix(), Matrix::Scaling(1e-6), Matrix::Scaling(nan), Matrix::Translation({0, 0, 99})}) {
            for (Types::Viewport<0> const& rectangle : {Types::Viewport<0>(0, 0, 100, 100), Types::Viewport<0>()}) {
                RecordedAgl recorded;
                recorded.agl.Ortho(rectangle, box, camera);
                recorded.agl.Perspective(rectangle, box, camera);
                recorded.agl.Ortho2D(rectangle);
                EXPECT_TRUE(recorded.agl.Get(AGL_MODELVIEW_MATRIX).IsFinite());
            }
        }
    }
}

// A metre-sized scene at the other end of the country: floats alone would be off by half a metre.
TEST(AglMatrix, scenesFarFromTheOriginKeepTheirPrecision) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    Vector3 const far(4.5e6, 5.3e6, 120);
    Agl::Box const box(far, far + Vector3(1, 1, 1));
    agl.MatrixMode(AGL_PROJECTION);
    agl.Ortho({0, 0, 100, 100}, box, Matrix::Rotation(30, {1, 1, 1}));
    agl.MatrixMode(AGL_MODELVIEW);
    agl.Translate(far + Vector3(0.25, 0.5, 0.75));
    agl.Draw(MakeSquare(agl));
    agl.Begin(AGL_POINTS);
    agl.Vertex(0, 0, 0);
    agl.End();
    auto const commands = recorded.Take();
    State const& state = commands[0].state;
    Instance const& instance = commands[0].instances[0];
    Vector4 const eye(instance.rows[0][3], instance.rows[1][3], instance.rows[2][3], 1);
    Vector4 const sent = Matrix::FromColumnMajor(state.projection.matrix.data()) * eye;
    Vector3 const exact = Apply(agl.Get(AGL_PROJECTION_MATRIX), far + Vector3(0.25, 0.5, 0.75));
    EXPECT_LT(Length(sent.XYZ() - exact), 1e-5);
    EXPECT_LT(Length(Vector3(commands[1].vertices[0].position.XYZ()) - eye.XYZ()), 1e-5);
}

} // namespace
} // namespace Qor::Chart::Ogl
