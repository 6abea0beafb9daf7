#pragma once

#include "framework/Export.h"
#include "framework/core/Ref.h"
#include "framework/model/Action.h"
#include "framework/model/ModelNode.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"

#include <string>
#include <utility>

namespace Qor::Chart::Model {

/// A button that stands alone in a pane. What it shows and does is an action's: a disabled action makes a button that
/// shows and does nothing. The action may be a toolbar's as well, and the button a second way to it.
///
///     auto const button = Core::MakeNode<Model::ImageButton>("save", L"Save");
///     button->GetAction()->SetImageFile("save.png");
///     button->GetAction()->SetExecute([] { save(); });
class QOR_FRAMEWORK_API ImageButton : public ModelNode {
public:
    static Property<ImageButton, bool> const CheckableProperty;
    static Property<ImageButton, Types::XPosition> const XPositionProperty;
    static Property<ImageButton, Types::YPosition> const YPositionProperty;
    static Property<ImageButton, double> const WidthProperty;
    static Property<ImageButton, double> const HeightProperty;
    static PropertyList const& ClassProperties();

    /// With an action of its own.
    ImageButton();
    /// @param p_name   of the node and its action
    /// @param p_label  of the action
    ImageButton(std::string const& p_name, std::wstring p_label);

    /// Empty for a button that shows nothing and does nothing. The button follows its action: attaching one is reported
    /// as a change of the reference "action".
    Core::Ptr<Action> const& GetAction() const noexcept { return _action.Get(); }
    void SetAction(Core::Ptr<Action> p_action) { _action.Attach(std::move(p_action)); }

    /// Whether a click on it checks and unchecks its action.
    bool IsCheckable() const noexcept { return _checkable; }
    void SetCheckable(bool p_checkable) { CheckableProperty.Set(*this, p_checkable); }

    /// Where the button lies inside its pane. A distance that is not finite is refused with a message to the logger.
    Types::XPosition const& GetXPosition() const noexcept { return _x; }
    bool SetXPosition(Types::XPosition const& p_position) { return XPositionProperty.Set(*this, p_position); }
    Types::YPosition const& GetYPosition() const noexcept { return _y; }
    bool SetYPosition(Types::YPosition const& p_position) { return YPositionProperty.Set(*this, p_position); }

    /// In logical pixels; 0 is what the image or the label needs. What is no number between 0 and 4096 is
    /// refused with a message to the logger.
    double Width() const noexcept { return _width; }
    bool SetWidth(double p_width) { return WidthProperty.Set(*this, p_width); }
    double Height() const noexcept { return _height; }
    bool SetHeight(double p_height) { return HeightProperty.Set(*this, p_height); }

    /// What a click does: checks or unchecks the action of a checkable button, then executes it. Nothing when the
    /// action is disabled. What the action throws leaves this operation.
    void Click() const;

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~ImageButton() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;
    void CopyTo(ModelNode& p_clone) const override;

private:
    bool _checkable = false;
    Types::XPosition _x;
    Types::YPosition _y;
    double _width = 0;
    double _height = 0;
    Core::Ref<Action> _action;
};

} // namespace Qor::Chart::Model
