#pragma once

#include "framework/Export.h"
#include "framework/model/ModelNode.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"

#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace Qor::Chart::Model {

/// A text in a pane: a label, or a field in which the user types. When the user has settled for another text it is
/// written here, and `Events::TextEditedArgs` is raised.
class QOR_FRAMEWORK_API TextBox : public ModelNode {
public:
    /// What the user may do with the text.
    enum class Mode {
        Label = 0, ///< look at it
        Editable = 1,
        ReadOnly = 2, ///< select and copy it
    };

    static Property<TextBox, std::wstring> const TextProperty;
    static Property<TextBox, Mode> const ModeProperty;
    static Property<TextBox, std::wstring> const PlaceholderProperty;
    static Property<TextBox, int> const MaxLengthProperty;
    static Property<TextBox, bool> const FramedProperty;
    static Property<TextBox, bool> const CenteredProperty;
    static Property<TextBox, Types::XPosition> const XPositionProperty;
    static Property<TextBox, Types::YPosition> const YPositionProperty;
    static Property<TextBox, double> const WidthProperty;
    static Property<TextBox, double> const HeightProperty;
    static PropertyList const& ClassProperties();

    TextBox() = default;
    explicit TextBox(std::wstring p_text, Mode p_mode = Mode::Label);

    std::wstring const& Text() const noexcept { return _text; }
    void SetText(std::wstring p_text) { TextProperty.Set(*this, std::move(p_text)); }

    /// A label at first.
    Mode GetMode() const noexcept { return _mode; }
    void SetMode(Mode p_mode) { ModeProperty.Set(*this, p_mode); }
    bool IsEditable() const noexcept { return _mode == Mode::Editable; }
    void SetEditable(bool p_editable) { SetMode(p_editable ? Mode::Editable : Mode::Label); }

    /// What a field shows while it is empty.
    std::wstring const& Placeholder() const noexcept { return _placeholder; }
    void SetPlaceholder(std::wstring p_text) { PlaceholderProperty.Set(*this, std::move(p_text)); }

    /// How many code points the user can enter; 0, as at first, for no limit. A negative number is refused with a
    /// message to the logger.
    int MaxLength() const noexcept { return _maxLength; }
    bool SetMaxLength(int p_length) { return MaxLengthProperty.Set(*this, p_length); }

    /// Whether a field stands on a ground of its own with a frame around; true at first.
    bool IsFramed() const noexcept { return _framed; }
    void SetFramed(bool p_framed) { FramedProperty.Set(*this, p_framed); }
    /// Whether the text stands in the middle, and not where it begins.
    bool IsCentered() const noexcept { return _centered; }
    void SetCentered(bool p_centered) { CenteredProperty.Set(*this, p_centered); }

    /// Where the box lies inside its pane. A distance that is not finite is refused with a message to the logger.
    Types::XPosition const& GetXPosition() const noexcept { return _x; }
    bool SetXPosition(Types::XPosition const& p_position) { return XPositionProperty.Set(*this, p_position); }
    Types::YPosition const& GetYPosition() const noexcept { return _y; }
    bool SetYPosition(Types::YPosition const& p_position) { return YPositionProperty.Set(*this, p_position); }

    /// In logical pixels; 0 is what the text of a label needs, and a usual size for a field. What is no number between
    /// 0 and 4096 is refused with a message to the logger.
    double Width() const noexcept { return _width; }
    bool SetWidth(double p_width) { return WidthProperty.Set(*this, p_width); }
    double Height() const noexcept { return _height; }
    bool SetHeight(double p_height) { return HeightProperty.Set(*this, p_height); }

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~TextBox() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;

private:
    std::wstring _text;
    std::wstring _placeholder;
    Mode _mode = Mode::Label;
    int _maxLength = 0;
    bool _framed = true;
    bool _centered = false;
    Types::XPosition _x;
    Types::YPosition _y;
    double _width = 0;
    double _height = 0;
};

/// As scene files spell them.
QOR_FRAMEWORK_API std::span<std::string_view const> NamesOf(TextBox::Mode p_mode) noexcept;

} // namespace Qor::Chart::Model
