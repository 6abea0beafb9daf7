#pragma once

#include "framework/Export.h"
#include "framework/model/ModelNode.h"

#include <functional>
#include <string>
#include <utility>

namespace Qor::Chart::Model {

/// Something that the user can have done: a button of a toolbar. What it does is a function of the program's; a disabled
/// action shows and does nothing. A checkable one shows whether it is checked; who executes it decides what that means.
class QOR_FRAMEWORK_API Action : public ModelNode {
public:
    static Property<Action, std::wstring> const LabelProperty;
    static Property<Action, std::wstring> const ToolTipProperty;
    static Property<Action, std::string> const ImageFileProperty;
    static Property<Action, bool> const CheckedProperty;
    static PropertyList const& ClassProperties();

    using Function = std::function<void()>;

    Action() = default;
    /// @param p_name   of the node
    /// @param p_label  shown where there is no image
    Action(std::string const& p_name, std::wstring p_label);

    std::wstring const& Label() const noexcept { return _label; }
    void SetLabel(std::wstring p_label) { LabelProperty.Set(*this, std::move(p_label)); }

    /// What is said about the action when the pointer rests on it; empty says the label.
    std::wstring const& ToolTip() const noexcept { return _toolTip; }
    void SetToolTip(std::wstring p_text) { ToolTipProperty.Set(*this, std::move(p_text)); }

    /// The name of a built-in image or the path of one, UTF-8; empty shows the label.
    std::string const& ImageFile() const noexcept { return _imageFile; }
    void SetImageFile(std::string p_file) { ImageFileProperty.Set(*this, std::move(p_file)); }

    bool IsChecked() const noexcept { return _checked; }
    void SetChecked(bool p_checked) { CheckedProperty.Set(*this, p_checked); }

    /// Takes the place of what the action did so far; an empty function does nothing.
    void SetExecute(Function p_function) { _execute = std::move(p_function); }
    /// Does it, unless the action is disabled or has nothing to do; what the function throws leaves this operation.
    /// @return whether it was done
    bool Execute() const;

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~Action() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;
    /// The clone does the same.
    void CopyTo(ModelNode& p_clone) const override;

private:
    bool _checked = false;
    std::wstring _label;
    std::wstring _toolTip;
    std::string _imageFile;
    Function _execute;
};

} // namespace Qor::Chart::Model
