#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "render/Export.h"
#include "render/context/PickPoint.h"
#include "render/core/Vis.h"

#include <cstdint>

namespace Qor::Chart::Render {

/// A rubber band: a rectangle, the part of the tree that it is drawn over, and what is to be done with what lies in it.
class QOR_VIS_API BoxSelection {
public:
    /// What becomes of the present selection.
    enum class Operation : std::uint32_t {
        Replace = 0,
        Add = 1,
    };

    /// @param p_scope      the node whose subtree is looked through, without the panes below it; empty, or gone by then,
    ///                     means the root
    /// @param p_rectangle  in pixels of the window; drawn in any direction
    /// @param p_flag       whether it was drawn downwards; handed on unchanged
    BoxSelection(Core::WeakPtr<Vis> p_scope, Types::Viewport<0> const& p_rectangle, bool p_flag, Operation p_operation);

    Core::WeakPtr<Vis> const& Scope() const noexcept { return _scope; }
    /// With a width and a height of 0 or more.
    Types::Viewport<0> const& Rectangle() const noexcept { return _rectangle; }
    bool Flag() const noexcept { return _flag; }
    Operation GetOperation() const noexcept { return _operation; }

    /// The pixel in the middle of the rectangle, one up and one to the right.
    Types::Pos Center() const noexcept;
    /// Half the width and half the height of the rectangle and a pixel.
    Types::Size Tolerance() const noexcept;
    /// The centre and tolerance of a normalised rectangle.
    static PickPoint PointOf(Types::Viewport<0> const& p_rectangle) noexcept;

private:
    Core::WeakPtr<Vis> _scope;
    Types::Viewport<0> _rectangle;
    bool _flag;
    Operation _operation;
};

} // namespace Qor::Chart::Render
