#pragma once

#include "framework/Export.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/HitBuffer.h"
#include "framework/ogl/HitRecord.h"
#include "framework/ogl/PickVolume.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "framework/utility/Scoped.h"

#include <cstdint>
#include <vector>

namespace Qor::Chart::Ogl {

/// A scope in which an `Agl` tests what it is told to draw against a pick area instead of drawing it, with the meaning of
/// OpenGL's selection mode: primitives are clipped to the view volume, the pick area and the enabled clip planes, faces are
/// culled if that is on, and each name under which anything is left gets a record with the nearest window depth of what is
/// left. The width of lines and points does not count, nor do scissor box and tests per pixel.
///
/// Polygons count as a whole, whatever the polygon mode: OpenGL 2.1 says so in its section 5.2, and so does the hand that
/// clicks inside a face of a wire frame and means that face, not one of the lines around it, which are a pixel wide.
///
/// Nothing reaches the back end meanwhile, clears included. Matrices, viewport and other state may be changed and count
/// for what is drawn after; at its end the scope brings the stacks back to their depths and the projection, the viewport
/// and the matrix mode back to what they were. Scopes nest; the inner one gets what is drawn.
class QOR_FRAMEWORK_API HitDetect {
public:
    /// @param p_viewport   viewport from now on
    /// @param p_projection projection matrix from now on
    /// @param p_position   centre of the pick area in pixels, relative to the origin of the viewport
    /// @param p_tolerance  half the width and the height of the pick area in pixels, each at least 1
    HitDetect(Utility::Scoped<Agl> const& p_agl, Types::Viewport<0> const& p_viewport,
        Types::Matrix4 const& p_projection, Types::Pos const& p_position, Types::Size const& p_tolerance,
        HitBuffer& p_buffer);
    /// A scope that tests nothing: what is drawn and cleared goes nowhere, but to scopes inside this one. Opened around a
    /// whole pick; at its end all of the state but the texture matrices is what it was.
    explicit HitDetect(Utility::Scoped<Agl> const& p_agl);
    /// Writes the last record.
    ~HitDetect();
    HitDetect(HitDetect const&) = delete;
    HitDetect& operator=(HitDetect const&) = delete;

    /// What is drawn from now on has this name. Writes a record for the name before, if anything was hit under it.
    /// Without a name, hits are recorded as `HitRecord::NameInvalid`.
    void LoadName(std::uint64_t p_name);

    /// \name Called by Agl
    /// @{
    void Draw(PrimitiveBuffer const& p_buffer);
    void Begin(Token p_kind);
    void Vertex(Types::Vector4_Base<double> const& p_position) {
        if (_buffer) {
            _vertices.push_back(p_position);
        }
    }
    void End();
    /// @}

private:
    void PushMatrixOf(Token p_mode);
    /// The pick volume in the coordinates that the current model-view matrix takes.
    PickVolume Volume() const;
    void Hit(double p_depth);
    void WriteRecord();

    Agl& _agl;
    HitDetect* _outer = nullptr;
    StackDepths _depths;
    PickArea _area;
    HitBuffer* _buffer = nullptr; ///< null in a scope that tests nothing
    HitRecord _pending;
    bool _isHit = false;
    Token _kind = Tokens::AGL_POINTS;
    std::vector<Types::Vector4_Base<double>> _vertices;
    std::vector<std::uint32_t> _order;
    std::vector<std::uint32_t> _assembly;
};

} // namespace Qor::Chart::Ogl
