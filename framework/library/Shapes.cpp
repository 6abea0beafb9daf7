#include "framework/library/Shapes.h"

#include "framework/types/Vector3.h"
#include "framework/utility/Ensure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <numbers>
#include <span>
#include <utility>
#include <vector>

namespace Qor::Chart::Library {

namespace {

using Vector3 = Types::Vector3_Base<double>;

constexpr double Half = 0.5;
constexpr double ArrowShaftRadius = 0.2;
constexpr double CrossHalfWidth = 1.0 / 6;
constexpr double DiscHalfHeight = 0.05;
constexpr double TorusTubeRadius = 0.15;

/// A point of a profile that is turned around the z axis, with the normal in the same plane.
struct ProfilePoint {
    double radius;
    double z;
    double normalRadius;
    double normalZ;
};

/// A direction in the plane.
struct Direction {
    double x;
    double y;
};

/// The directions of a full circle, the last one the same as the first. Quarter turns are exact, so that what is built of
/// them closes without gaps and reaches its box.
std::vector<Direction> Circle(unsigned p_segments) {
    unsigned const quarter = p_segments / 4;
    std::vector<Direction> circle;
    circle.reserve(p_segments + 1);
    for (unsigned i = 0; i <= p_segments; ++i) {
        double const angle = std::numbers::pi / 2 * (i % quarter) / quarter;
        double const x = i % quarter == 0 ? 1 : std::cos(angle);
        double const y = i % quarter == 0 ? 0 : std::sin(angle);
        switch (i / quarter % 4) {
        case 0:
            circle.push_back({x, y});
            break;
        case 1:
            circle.push_back({-y, x});
            break;
        case 2:
            circle.push_back({-x, -y});
            break;
        default:
            circle.push_back({y, -x});
            break;
        }
    }
    return circle;
}

class Builder {
public:
    explicit Builder(unsigned p_segments) : _circle(Circle(p_segments)) {}

    Mesh Take() { return std::move(_mesh); }
    std::vector<Direction> const& FullCircle() const { return _circle; }

    /// Adds a flat convex face with the origin behind it, its corners in either order around it.
    void Face(std::initializer_list<Vector3> p_corners) {
        std::vector<Vector3> corners(p_corners);
        Vector3 normal = Types::Normalized(Types::Cross(corners[1] - corners[0], corners[2] - corners[0]));
        if (Types::Dot(normal, corners[0]) < 0) {
            std::reverse(corners.begin(), corners.end());
            normal = -normal;
        }
        static constexpr std::array<Direction, 3> TriangleMap{{{0, 0}, {1, 0}, {0.5, 1}}};
        static constexpr std::array<Direction, 4> QuadMap{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};
        std::span<Direction const> const map =
            corners.size() == 3 ? std::span<Direction const>(TriangleMap) : std::span<Direction const>(QuadMap);
        std::uint32_t const first = Count();
        for (std::size_t i = 0; i < corners.size(); ++i) {
            Vertex(corners[i], normal, map[i].x, map[i].y);
        }
        for (std::uint32_t i = 2; i < corners.size(); ++i) {
            Triangle(first, first + i - 1, first + i);
        }
    }

    /// Turns a profile around the z axis, counter-clockwise; its outer side is the right-hand one on the way from the first
    /// point to the last.
    void Turn(std::span<ProfilePoint const> p_profile) {
        std::uint32_t const first = Count();
        auto const columns = static_cast<std::uint32_t>(_circle.size());
        for (std::size_t row = 0; row < p_profile.size(); ++row) {
            ProfilePoint const& point = p_profile[row];
            double const t = static_cast<double>(row) / static_cast<double>(p_profile.size() - 1);
            for (std::uint32_t column = 0; column < columns; ++column) {
                Direction const& at = _circle[column];
                Vertex({at.x * point.radius, at.y * point.radius, point.z},
                    {at.x * point.normalRadius, at.y * point.normalRadius, point.normalZ},
                    static_cast<double>(column) / (columns - 1), t);
            }
        }
        for (std::uint32_t row = 0; row + 1 < p_profile.size(); ++row) {
            for (std::uint32_t column = 0; column + 1 < columns; ++column) {
                std::uint32_t const low = first + row * columns + column;
                std::uint32_t const high = low + columns;
                if (p_profile[row].radius != 0) {
                    Triangle(low, low + 1, high + 1);
                }
                if (p_profile[row + 1].radius != 0) {
                    Triangle(low, high + 1, high);
                }
            }
        }
    }

    /// Turns a straight line from one radius and height to another.
    void Turn(double p_radius1, double p_z1, double p_radius2, double p_z2) {
        double const length = std::hypot(p_radius2 - p_radius1, p_z2 - p_z1);
        double const normalRadius = (p_z2 - p_z1) / length;
        double const normalZ = (p_radius1 - p_radius2) / length;
        Turn(std::array{ProfilePoint{p_radius1, p_z1, normalRadius, normalZ},
            ProfilePoint{p_radius2, p_z2, normalRadius, normalZ}});
    }

private:
    std::uint32_t Count() const { return static_cast<std::uint32_t>(_mesh.vertices.positions.size()); }
    void Vertex(Vector3 const& p_position, Vector3 const& p_normal, double p_s, double p_t) {
        _mesh.vertices.positions.emplace_back(p_position);
        _mesh.vertices.normals.emplace_back(p_normal);
        _mesh.vertices.texCoords[0].emplace_back(static_cast<float>(p_s), static_cast<float>(p_t), 0.0F, 1.0F);
    }
    void Triangle(std::uint32_t p_a, std::uint32_t p_b, std::uint32_t p_c) {
        _mesh.indices.insert(_mesh.indices.end(), {p_a, p_b, p_c});
    }

    std::vector<Direction> _circle;
    Mesh _mesh;
};

/// A point on a face of a box: the axis of the face's normal comes first, the others follow in cyclic order.
Vector3 OnAxis(int p_axis, double p_along, double p_next, double p_last) {
    switch (p_axis) {
    case 0:
        return {p_along, p_next, p_last};
    case 1:
        return {p_last, p_along, p_next};
    default:
        return {p_next, p_last, p_along};
    }
}

void BuildCube(Builder& p_builder) {
    for (int axis = 0; axis < 3; ++axis) {
        for (double const side : {-Half, Half}) {
            p_builder.Face({OnAxis(axis, side, -Half, -Half), OnAxis(axis, side, Half, -Half),
                OnAxis(axis, side, Half, Half), OnAxis(axis, side, -Half, Half)});
        }
    }
}

void BuildSphere(Builder& p_builder) {
    auto const& circle = p_builder.FullCircle();
    std::size_t const segments = circle.size() - 1;
    std::vector<ProfilePoint> profile;
    for (std::size_t i = segments * 3 / 4; i <= segments * 5 / 4; ++i) {
        Direction const& at = circle[i % segments];
        profile.push_back({Half * at.x, Half * at.y, at.x, at.y});
    }
    p_builder.Turn(profile);
}

void BuildCylinder(Builder& p_builder, double p_halfHeight) {
    p_builder.Turn(0, -p_halfHeight, Half, -p_halfHeight);
    p_builder.Turn(Half, -p_halfHeight, Half, p_halfHeight);
    p_builder.Turn(Half, p_halfHeight, 0, p_halfHeight);
}

void BuildCone(Builder& p_builder) {
    p_builder.Turn(0, -Half, Half, -Half);
    p_builder.Turn(Half, -Half, 0, Half);
}

void BuildArrow(Builder& p_builder) {
    p_builder.Turn(0, -Half, ArrowShaftRadius, -Half);
    p_builder.Turn(ArrowShaftRadius, -Half, ArrowShaftRadius, 0);
    p_builder.Turn(ArrowShaftRadius, 0, Half, 0);
    p_builder.Turn(Half, 0, 0, Half);
}

void BuildTetrahedron(Builder& p_builder) {
    static constexpr std::array<Vector3, 4> Corners{
        {{Half, Half, Half}, {Half, -Half, -Half}, {-Half, Half, -Half}, {-Half, -Half, Half}}};
    for (std::size_t opposite = 0; opposite < 4; ++opposite) {
        p_builder.Face({Corners[(opposite + 1) % 4], Corners[(opposite + 2) % 4], Corners[(opposite + 3) % 4]});
    }
}

void BuildOctahedron(Builder& p_builder) {
    for (double const x : {-Half, Half}) {
        for (double const y : {-Half, Half}) {
            for (double const z : {-Half, Half}) {
                p_builder.Face({{x, 0, 0}, {0, y, 0}, {0, 0, z}});
            }
        }
    }
}

void BuildCross(Builder& p_builder) {
    double const w = CrossHalfWidth;
    for (int axis = 0; axis < 3; ++axis) {
        for (double const end : {-Half, Half}) {
            double const base = end < 0 ? -w : w;
            p_builder.Face({OnAxis(axis, end, -w, -w), OnAxis(axis, end, w, -w), OnAxis(axis, end, w, w),
                OnAxis(axis, end, -w, w)});
            for (double const side : {-w, w}) {
                p_builder.Face({OnAxis(axis, base, side, -w), OnAxis(axis, end, side, -w), OnAxis(axis, end, side, w),
                    OnAxis(axis, base, side, w)});
                p_builder.Face({OnAxis(axis, base, -w, side), OnAxis(axis, end, -w, side), OnAxis(axis, end, w, side),
                    OnAxis(axis, base, w, side)});
            }
        }
    }
}

void BuildPyramid(Builder& p_builder) {
    static constexpr std::array<Vector3, 4> Base{
        {{-Half, -Half, -Half}, {Half, -Half, -Half}, {Half, Half, -Half}, {-Half, Half, -Half}}};
    p_builder.Face({Base[0], Base[1], Base[2], Base[3]});
    for (std::size_t i = 0; i < 4; ++i) {
        p_builder.Face({Base[i], Base[(i + 1) % 4], {0, 0, Half}});
    }
}

void BuildTorus(Builder& p_builder) {
    std::vector<ProfilePoint> profile;
    for (Direction const& at : p_builder.FullCircle()) {
        profile.push_back({Half - TorusTubeRadius + TorusTubeRadius * at.x, TorusTubeRadius * at.y, at.x, at.y});
    }
    p_builder.Turn(profile);
}

} // namespace

Mesh Shapes::Build(Shape p_shape, unsigned p_segments) {
    Builder builder((std::clamp(p_segments, 4U, 1024U) + 3) / 4 * 4);
    switch (p_shape) {
    case Shape::Cube:
        BuildCube(builder);
        break;
    case Shape::Sphere:
        BuildSphere(builder);
        break;
    case Shape::Cylinder:
        BuildCylinder(builder, Half);
        break;
    case Shape::Cone:
        BuildCone(builder);
        break;
    case Shape::Arrow:
        BuildArrow(builder);
        break;
    case Shape::Tetrahedron:
        BuildTetrahedron(builder);
        break;
    case Shape::Octahedron:
        BuildOctahedron(builder);
        break;
    case Shape::Cross:
        BuildCross(builder);
        break;
    case Shape::Pyramid:
        BuildPyramid(builder);
        break;
    case Shape::Disc:
        BuildCylinder(builder, DiscHalfHeight);
        break;
    case Shape::Torus:
        BuildTorus(builder);
        break;
    default:
        QOR_ENSURE_TEXT(false, "p_shape is a shape");
        BuildCube(builder);
    }
    return builder.Take();
}

} // namespace Qor::Chart::Library
