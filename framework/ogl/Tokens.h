#pragma once

#include <cstdint>

namespace Qor::Chart::Ogl {

/// A constant of the fixed-function interface: a capability, a mode, a mask or a parameter name.
using Token = std::uint32_t;

/// The constants that `Agl` takes. Each has the value of the OpenGL constant of the same name (Khronos registry, gl.xml),
/// so that back ends pass them on without translation. Light, clip plane and texture unit constants are consecutive:
/// `AGL_LIGHT0 + i` names light i.
namespace Tokens {

inline constexpr Token AGL_FALSE = 0;
inline constexpr Token AGL_TRUE = 1;
inline constexpr Token AGL_NONE = 0;
inline constexpr Token AGL_NO_ERROR = 0;

/// Bits of `Agl::PushAttrib`; those of the three buffers are also the bits of `Agl::Clear`.
inline constexpr Token AGL_CURRENT_BIT = 0x00000001;
inline constexpr Token AGL_POINT_BIT = 0x00000002;
inline constexpr Token AGL_LINE_BIT = 0x00000004;
inline constexpr Token AGL_POLYGON_BIT = 0x00000008;
inline constexpr Token AGL_POLYGON_STIPPLE_BIT = 0x00000010;
inline constexpr Token AGL_LIGHTING_BIT = 0x00000040;
inline constexpr Token AGL_DEPTH_BUFFER_BIT = 0x00000100;
inline constexpr Token AGL_STENCIL_BUFFER_BIT = 0x00000400;
inline constexpr Token AGL_VIEWPORT_BIT = 0x00000800;
inline constexpr Token AGL_TRANSFORM_BIT = 0x00001000;
inline constexpr Token AGL_ENABLE_BIT = 0x00002000;
inline constexpr Token AGL_COLOR_BUFFER_BIT = 0x00004000;
inline constexpr Token AGL_TEXTURE_BIT = 0x00040000;
inline constexpr Token AGL_SCISSOR_BIT = 0x00080000;
inline constexpr Token AGL_ALL_ATTRIB_BITS = 0xFFFFFFFF;

/// Primitive kinds.
inline constexpr Token AGL_POINTS = 0x0000;
inline constexpr Token AGL_LINES = 0x0001;
inline constexpr Token AGL_LINE_LOOP = 0x0002;
inline constexpr Token AGL_LINE_STRIP = 0x0003;
inline constexpr Token AGL_TRIANGLES = 0x0004;
inline constexpr Token AGL_TRIANGLE_STRIP = 0x0005;
inline constexpr Token AGL_TRIANGLE_FAN = 0x0006;
inline constexpr Token AGL_QUADS = 0x0007;
inline constexpr Token AGL_QUAD_STRIP = 0x0008;
inline constexpr Token AGL_POLYGON = 0x0009;

/// Matrix modes and the matrices that `Agl::Get` reads.
inline constexpr Token AGL_MODELVIEW = 0x1700;
inline constexpr Token AGL_PROJECTION = 0x1701;
inline constexpr Token AGL_TEXTURE = 0x1702;
inline constexpr Token AGL_MODELVIEW_MATRIX = 0x0BA6;
inline constexpr Token AGL_PROJECTION_MATRIX = 0x0BA7;
inline constexpr Token AGL_TEXTURE_MATRIX = 0x0BA8;

/// Capabilities of `Agl::Enable`.
inline constexpr Token AGL_POINT_SMOOTH = 0x0B10;
inline constexpr Token AGL_LINE_SMOOTH = 0x0B20;
inline constexpr Token AGL_LINE_STIPPLE = 0x0B24;
inline constexpr Token AGL_POLYGON_STIPPLE = 0x0B42;
inline constexpr Token AGL_CULL_FACE = 0x0B44;
inline constexpr Token AGL_LIGHTING = 0x0B50;
inline constexpr Token AGL_COLOR_MATERIAL = 0x0B57;
inline constexpr Token AGL_DEPTH_TEST = 0x0B71;
inline constexpr Token AGL_STENCIL_TEST = 0x0B90;
inline constexpr Token AGL_NORMALIZE = 0x0BA1;
inline constexpr Token AGL_RESCALE_NORMAL = 0x803A;
inline constexpr Token AGL_BLEND = 0x0BE2;
/// Not of OpenGL: see `Agl::BeginTransparency`.
inline constexpr Token AGL_TRANSPARENCY = 0x10000;
inline constexpr Token AGL_SCISSOR_TEST = 0x0C11;
inline constexpr Token AGL_TEXTURE_2D = 0x0DE1;
inline constexpr Token AGL_POLYGON_OFFSET_POINT = 0x2A01;
inline constexpr Token AGL_POLYGON_OFFSET_LINE = 0x2A02;
inline constexpr Token AGL_POLYGON_OFFSET_FILL = 0x8037;
inline constexpr Token AGL_CLIP_PLANE0 = 0x3000;
inline constexpr Token AGL_LIGHT0 = 0x4000;

/// Faces and windings.
inline constexpr Token AGL_FRONT = 0x0404;
inline constexpr Token AGL_BACK = 0x0405;
inline constexpr Token AGL_FRONT_AND_BACK = 0x0408;
inline constexpr Token AGL_CW = 0x0900;
inline constexpr Token AGL_CCW = 0x0901;

/// Polygon modes and shade models.
inline constexpr Token AGL_POINT = 0x1B00;
inline constexpr Token AGL_LINE = 0x1B01;
inline constexpr Token AGL_FILL = 0x1B02;
inline constexpr Token AGL_FLAT = 0x1D00;
inline constexpr Token AGL_SMOOTH = 0x1D01;

/// Parameters of lights, materials and the light model.
inline constexpr Token AGL_AMBIENT = 0x1200;
inline constexpr Token AGL_DIFFUSE = 0x1201;
inline constexpr Token AGL_SPECULAR = 0x1202;
inline constexpr Token AGL_POSITION = 0x1203;
inline constexpr Token AGL_SPOT_DIRECTION = 0x1204;
inline constexpr Token AGL_SPOT_EXPONENT = 0x1205;
inline constexpr Token AGL_SPOT_CUTOFF = 0x1206;
inline constexpr Token AGL_CONSTANT_ATTENUATION = 0x1207;
inline constexpr Token AGL_LINEAR_ATTENUATION = 0x1208;
inline constexpr Token AGL_QUADRATIC_ATTENUATION = 0x1209;
inline constexpr Token AGL_EMISSION = 0x1600;
inline constexpr Token AGL_SHININESS = 0x1601;
inline constexpr Token AGL_AMBIENT_AND_DIFFUSE = 0x1602;
inline constexpr Token AGL_LIGHT_MODEL_LOCAL_VIEWER = 0x0B51;
inline constexpr Token AGL_LIGHT_MODEL_TWO_SIDE = 0x0B52;
inline constexpr Token AGL_LIGHT_MODEL_AMBIENT = 0x0B53;

/// Comparisons of depth and stencil tests.
inline constexpr Token AGL_NEVER = 0x0200;
inline constexpr Token AGL_LESS = 0x0201;
inline constexpr Token AGL_EQUAL = 0x0202;
inline constexpr Token AGL_LEQUAL = 0x0203;
inline constexpr Token AGL_GREATER = 0x0204;
inline constexpr Token AGL_NOTEQUAL = 0x0205;
inline constexpr Token AGL_GEQUAL = 0x0206;
inline constexpr Token AGL_ALWAYS = 0x0207;

/// Stencil operations.
inline constexpr Token AGL_ZERO = 0;
inline constexpr Token AGL_KEEP = 0x1E00;
inline constexpr Token AGL_REPLACE = 0x1E01;
inline constexpr Token AGL_INCR = 0x1E02;
inline constexpr Token AGL_DECR = 0x1E03;
inline constexpr Token AGL_INVERT = 0x150A;
inline constexpr Token AGL_INCR_WRAP = 0x8507;
inline constexpr Token AGL_DECR_WRAP = 0x8508;

/// Blend factors (with `AGL_ZERO`) and blend equations.
inline constexpr Token AGL_ONE = 1;
inline constexpr Token AGL_SRC_COLOR = 0x0300;
inline constexpr Token AGL_ONE_MINUS_SRC_COLOR = 0x0301;
inline constexpr Token AGL_SRC_ALPHA = 0x0302;
inline constexpr Token AGL_ONE_MINUS_SRC_ALPHA = 0x0303;
inline constexpr Token AGL_DST_ALPHA = 0x0304;
inline constexpr Token AGL_ONE_MINUS_DST_ALPHA = 0x0305;
inline constexpr Token AGL_DST_COLOR = 0x0306;
inline constexpr Token AGL_ONE_MINUS_DST_COLOR = 0x0307;
inline constexpr Token AGL_SRC_ALPHA_SATURATE = 0x0308;
inline constexpr Token AGL_FUNC_ADD = 0x8006;
inline constexpr Token AGL_MIN = 0x8007;
inline constexpr Token AGL_MAX = 0x8008;
inline constexpr Token AGL_FUNC_SUBTRACT = 0x800A;
inline constexpr Token AGL_FUNC_REVERSE_SUBTRACT = 0x800B;

/// Buffers of `Agl::Clear` besides depth and stencil have the same bit as their attribute group.

/// Texture units and texture environments (with `AGL_REPLACE` and `AGL_BLEND`).
inline constexpr Token AGL_TEXTURE0 = 0x84C0;
inline constexpr Token AGL_TEXTURE1 = 0x84C1;
inline constexpr Token AGL_TEXTURE2 = 0x84C2;
inline constexpr Token AGL_TEXTURE3 = 0x84C3;
inline constexpr Token AGL_TEXTURE_ENV_MODE = 0x2200;
inline constexpr Token AGL_TEXTURE_ENV_COLOR = 0x2201;
inline constexpr Token AGL_MODULATE = 0x2100;
inline constexpr Token AGL_DECAL = 0x2101;
inline constexpr Token AGL_ADD = 0x0104;
inline constexpr Token AGL_COMBINE = 0x8570;

/// The combine environment: its parameters for each part of the colour, its functions (with `AGL_REPLACE`,
/// `AGL_MODULATE` and `AGL_ADD`) and the sources of its arguments (with `AGL_TEXTURE`, the unit's own texture, and
/// `AGL_TEXTURE0 + i`, that of unit i). Parameters of argument n follow those of argument 0; operands are `AGL_SRC_COLOR`
/// to `AGL_ONE_MINUS_SRC_ALPHA`.
inline constexpr Token AGL_COMBINE_RGB = 0x8571;
inline constexpr Token AGL_COMBINE_ALPHA = 0x8572;
inline constexpr Token AGL_RGB_SCALE = 0x8573;
inline constexpr Token AGL_ALPHA_SCALE = 0x0D1C;
inline constexpr Token AGL_SOURCE0_RGB = 0x8580;
inline constexpr Token AGL_SOURCE1_RGB = 0x8581;
inline constexpr Token AGL_SOURCE2_RGB = 0x8582;
inline constexpr Token AGL_SOURCE0_ALPHA = 0x8588;
inline constexpr Token AGL_SOURCE1_ALPHA = 0x8589;
inline constexpr Token AGL_SOURCE2_ALPHA = 0x858A;
inline constexpr Token AGL_OPERAND0_RGB = 0x8590;
inline constexpr Token AGL_OPERAND1_RGB = 0x8591;
inline constexpr Token AGL_OPERAND2_RGB = 0x8592;
inline constexpr Token AGL_OPERAND0_ALPHA = 0x8598;
inline constexpr Token AGL_OPERAND1_ALPHA = 0x8599;
inline constexpr Token AGL_OPERAND2_ALPHA = 0x859A;
inline constexpr Token AGL_ADD_SIGNED = 0x8574;
inline constexpr Token AGL_INTERPOLATE = 0x8575;
inline constexpr Token AGL_SUBTRACT = 0x84E7;
inline constexpr Token AGL_DOT3_RGB = 0x86AE;
inline constexpr Token AGL_DOT3_RGBA = 0x86AF;
inline constexpr Token AGL_CONSTANT = 0x8576;
inline constexpr Token AGL_PRIMARY_COLOR = 0x8577;
inline constexpr Token AGL_PREVIOUS = 0x8578;

/// Texture filters and wraps.
inline constexpr Token AGL_NEAREST = 0x2600;
inline constexpr Token AGL_LINEAR = 0x2601;
inline constexpr Token AGL_NEAREST_MIPMAP_NEAREST = 0x2700;
inline constexpr Token AGL_LINEAR_MIPMAP_NEAREST = 0x2701;
inline constexpr Token AGL_NEAREST_MIPMAP_LINEAR = 0x2702;
inline constexpr Token AGL_LINEAR_MIPMAP_LINEAR = 0x2703;
inline constexpr Token AGL_REPEAT = 0x2901;
inline constexpr Token AGL_MIRRORED_REPEAT = 0x8370;
inline constexpr Token AGL_CLAMP_TO_EDGE = 0x812F;
inline constexpr Token AGL_CLAMP_TO_BORDER = 0x812D;

} // namespace Tokens
} // namespace Qor::Chart::Ogl
