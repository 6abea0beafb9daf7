#pragma once

#include "framework/Export.h"
#include "framework/core/WeakPtr.h"
#include "framework/model/ModelNode.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"

#include <QColor>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace Qor::Chart::Model {

/// A panel in a pane with which the user picks a colour. The colour follows what the user does at once; when the user
/// has settled for one, `Events::ColorPickedArgs` is raised and the colour goes to the front of the recent ones. A
/// program listens, or has the colour of a node follow:
///
///     picker->SetTarget(object, Model::SimpleObject::ColorProperty);
class QOR_FRAMEWORK_API ColorPicker : public ModelNode {
public:
    static Property<ColorPicker, QColor> const ColorProperty;
    static Property<ColorPicker, bool> const AlphaShownProperty;
    static Property<ColorPicker, std::vector<QColor>> const RecentColorsProperty;
    static Property<ColorPicker, Types::XPosition> const XPositionProperty;
    static Property<ColorPicker, Types::YPosition> const YPositionProperty;
    static PropertyList const& ClassProperties();

    /// How many recent colours are kept.
    static constexpr std::size_t MostRecentColors = 10;

    ColorPicker() = default;

    QColor const& Color() const noexcept { return _color; }
    /// The colour of the target follows. An invalid one is refused with a message to the logger.
    bool SetColor(QColor const& p_color);

    /// Whether the user may change the alpha; without it the alpha stays as it is.
    bool IsAlphaShown() const noexcept { return _alphaShown; }
    void SetAlphaShown(bool p_shown) { AlphaShownProperty.Set(*this, p_shown); }

    /// Most recent first. A list that is too long or has an invalid colour in it is refused with a message to the
    /// logger.
    std::vector<QColor> const& RecentColors() const noexcept { return _recentColors; }
    bool SetRecentColors(std::vector<QColor> p_colors) { return RecentColorsProperty.Set(*this, std::move(p_colors)); }

    /// Where the panel lies inside its pane. A distance that is not finite is refused with a message to the logger.
    Types::XPosition const& GetXPosition() const noexcept { return _x; }
    bool SetXPosition(Types::XPosition const& p_position) { return XPositionProperty.Set(*this, p_position); }
    Types::YPosition const& GetYPosition() const noexcept { return _y; }
    bool SetYPosition(Types::YPosition const& p_position) { return YPositionProperty.Set(*this, p_position); }

    /// Begins with the colour that a node has; whenever `SetColor` is called from now on, by the user's doing or a
    /// program's, the node gets that colour too. The node is held weakly; an empty handle ends it.
    template <class Node, class Owner>
    void SetTarget(Core::Ptr<Node> const& p_node, Property<Owner, QColor> const& p_color) {
        _follow = nullptr;
        if (!p_node)
            return;
        SetColor(p_color.Get(*p_node));
        _follow = [node = Core::WeakPtr<Node>(p_node), &p_color](QColor const& p_picked) {
            if (Core::Ptr<Node> const target = node.Lock())
                p_color.Set(*target, p_picked);
        };
    }

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~ColorPicker() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;
    /// The clone has the same target.
    void CopyTo(ModelNode& p_clone) const override;

private:
    bool _alphaShown = true;
    QColor _color{255, 255, 255};
    std::vector<QColor> _recentColors;
    Types::XPosition _x;
    Types::YPosition _y;
    std::function<void(QColor const&)> _follow;
};

} // namespace Qor::Chart::Model
