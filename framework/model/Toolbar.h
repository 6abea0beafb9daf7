#pragma once

#include "framework/Export.h"
#include "framework/model/Action.h"
#include "framework/model/ModelNode.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"

#include <vector>

namespace Qor::Chart::Model {

/// A bar of buttons in a pane, one for each of its actions, placed from an edge of the pane. The actions are the
/// children of the toolbar, in their order; children of other classes show nothing.
class QOR_FRAMEWORK_API Toolbar : public ModelNode {
public:
    static Property<Toolbar, Types::XPosition> const XPositionProperty;
    static Property<Toolbar, Types::YPosition> const YPositionProperty;
    static Property<Toolbar, bool> const VerticalProperty;
    static Property<Toolbar, bool> const MovableProperty;
    static PropertyList const& ClassProperties();

    Toolbar() = default;

    /// Where the bar lies inside its pane. A distance that is not finite is refused with a message to the logger.
    Types::XPosition const& GetXPosition() const noexcept { return _x; }
    bool SetXPosition(Types::XPosition const& p_position) { return XPositionProperty.Set(*this, p_position); }
    Types::YPosition const& GetYPosition() const noexcept { return _y; }
    bool SetYPosition(Types::YPosition const& p_position) { return YPositionProperty.Set(*this, p_position); }

    /// Whether the buttons stand one below the other.
    bool IsVertical() const noexcept { return _vertical; }
    void SetVertical(bool p_vertical) { VerticalProperty.Set(*this, p_vertical); }

    /// Whether the user may drag the bar.
    bool IsMovable() const noexcept { return _movable; }
    void SetMovable(bool p_movable) { MovableProperty.Set(*this, p_movable); }

    /// The actions among the children.
    std::vector<Core::Ptr<Action>> Actions() const;

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~Toolbar() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;

private:
    bool _vertical = false;
    bool _movable = true;
    Types::XPosition _x;
    Types::YPosition _y;
};

} // namespace Qor::Chart::Model
