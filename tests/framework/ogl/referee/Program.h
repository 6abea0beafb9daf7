#pragma once

#include "framework/ogl/Agl.h"
#include "framework/ogl/Context.h"
#include "framework/ogl/OffscreenTarget.h"
#include "framework/ogl/OpenGlBackend.h"

#include <QImage>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Qor::Chart::Ogl::Referee {

/// One call of the fixed-function interface: its name without a prefix, and its arguments in order, constants as numbers.
/// `Scissor` takes x, y, width and height; `Draw` the number of a shape; `BindTexture` the number of a texture, or -1.
struct Call {
    std::string_view name;
    std::vector<double> arguments;
};

/// A shape for `Draw`.
struct ShapeData {
    Token kind = Tokens::AGL_TRIANGLES;
    VertexData vertices;
    std::vector<std::uint32_t> indices;
};

/// State and draw calls that can be played on `Agl` and on fixed-function OpenGL. It begins with everything at the
/// defaults of OpenGL and a black picture.
struct Program {
    static constexpr int Size = 96; ///< of the picture, in pixels

    std::vector<Call> calls;
    std::vector<ShapeData> shapes;

    void Add(std::string_view p_name, std::vector<double> p_arguments = {}) {
        calls.push_back({p_name, std::move(p_arguments)});
    }
    /// A primitive of these vertices in their order, as a shape or vertex by vertex.
    void AddPrimitive(Token p_kind, VertexData p_vertices, bool p_isBuffered);
};

inline constexpr std::size_t TestTextureCount = 5;

/// The textures that programs bind by number: patterns of several sizes, some of them translucent, each sampled in a way of
/// its own.
std::vector<std::shared_ptr<Texture const>> const& TestTextures();

/// Makes the calls on an `Agl`.
void Play(Program const& p_program, Agl& p_agl);
/// Makes the calls on fixed-function OpenGL in the current context. Gives whether it took more off a stack than was there.
bool PlayOnOpenGl(Program const& p_program, std::vector<unsigned> const& p_textures = {});

/// A picture and what went wrong: sentences of `Agl`, or anything not empty for an error of OpenGL.
struct Played {
    QImage picture;
    std::string errors;
};

/// Draws pictures, each on an `Agl` of its own, all with the same back end, in a context of the given profile.
class AglPlayer {
public:
    /// Throws `ContextError`.
    explicit AglPlayer(Context::Profile p_profile) : _context(p_profile) {}
    Played Draw(std::function<void(Agl&)> const& p_draw, int p_width = Program::Size, int p_height = Program::Size);
    Played Draw(Program const& p_program) {
        return Draw([&](Agl& p_agl) { Play(p_program, p_agl); });
    }

private:
    Context _context;
    OpenGlBackend _backend;
};

/// Draws the picture in a compatibility context of its own. Throws `ContextError`.
Played DrawOnOpenGl(Program const& p_program);

} // namespace Qor::Chart::Ogl::Referee
