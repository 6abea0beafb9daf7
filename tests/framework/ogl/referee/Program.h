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
    /// One call a line.
    std::string Print() const;
};

/// A picture and what went wrong: sentences of `Agl`, or anything not empty for an error of OpenGL.
struct Played {
    QImage picture;
    std::string errors;
};

/// Plays programs on an `Agl` of its own for each, all with the same back end, in a context of the given profile.
class AglPlayer {
public:
    /// Throws `ContextError`.
    explicit AglPlayer(Context::Profile p_profile);
    ~AglPlayer();
    Played Play(Program const& p_program) const;
    void MakeCurrent() const { _context->MakeCurrent(); }
    /// Lets p_draw use an `Agl` and gives the picture, p_width by p_height pixels.
    static QImage Picture(Backend& p_backend, int p_width, int p_height, std::function<void(Agl&)> const& p_draw);
    Backend& GetBackend() const { return *_backend; }

private:
    std::unique_ptr<Context> _context;
    std::unique_ptr<OffscreenTarget> _target;
    std::unique_ptr<OpenGlBackend> _backend;
};

/// Plays a program on fixed-function OpenGL, in a compatibility context of its own. Throws `ContextError`.
Played PlayOnOpenGl(Program const& p_program);

} // namespace Qor::Chart::Ogl::Referee
