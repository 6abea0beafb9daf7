#pragma once

#include "framework/library/Texture.h"
#include "framework/types/Pos.h"
#include "render/Export.h"
#include "render/anim/Blender.h"
#include "render/nodes/SchemaFont.h"
#include "render/nodes/Widget.h"

#include <QColor>

#include <functional>
#include <memory>
#include <string>

namespace Qor::Chart::Render {

/// An image on the screen that can be pointed at and pressed: a button of a title bar, or one that stands alone. It is
/// clicked by the mouse, pressed and let go inside, and by Space or Return while it has the focus.
///
///     widget.SetTexture(sign).SetToolTip(L"Save").SetClicked([] { save(); });
class QOR_VIS_API TextureWidget : public Widget {
public:
    /// Where its colours come from.
    enum class TextureMode {
        Image = 0, ///< the image as it is
        Tinted = 1, ///< the image multiplied with the widget's colour: for white signs
    };

    /// In how many milliseconds the next frame of a running animation is wanted.
    static constexpr int RedrawMilliseconds = 41;
    /// How long a widget fades, and in how many steps; what slides open around it takes the same.
    static TimedCompletionCriteria FadeCriteria() { return {300, 10}; }
    /// How long a button that was pressed takes to look as before, so that even a short click can be seen.
    static TimedCompletionCriteria PressCriteria() { return {120, 4}; }

    /// Not shown at first. Without a texture the label is drawn, without that only what lies below it.
    explicit TextureWidget(std::shared_ptr<Library::Texture const> p_texture = {});
    ~TextureWidget() override;

    TextureWidget& SetTexture(std::shared_ptr<Library::Texture const> p_texture);
    std::shared_ptr<Library::Texture const> const& Texture() const noexcept { return _texture; }
    /// A text in the schema's font and colour in place of a missing texture, cut as `ShortText` says.
    TextureWidget& SetLabel(std::wstring const& p_label);
    std::wstring const& Label() const noexcept { return _label; }
    /// What its owner says about it when the pointer rests on it; the widget keeps it alone.
    TextureWidget& SetToolTip(std::wstring p_text);
    std::wstring const& ToolTip() const noexcept { return _toolTip; }

    TextureWidget& SetTextureMode(TextureMode p_mode) noexcept;
    TextureMode GetTextureMode() const noexcept { return _mode; }
    /// Black at first; an invalid colour takes that of the schema's texts.
    TextureWidget& SetColor(QColor const& p_color);
    QColor const& Color() const noexcept { return _color; }

    /// Whether it stands on a ground of its own with a frame around, and its image keeps clear of that; false at first.
    TextureWidget& SetFramed(bool p_framed) noexcept;
    bool IsFramed() const noexcept { return _isFramed; }
    /// Whether it shows as chosen; what a click does about that is the owner's.
    TextureWidget& SetChecked(bool p_checked) noexcept;
    bool IsChecked() const noexcept { return _isChecked; }

    /// Called for each click, at the end of the event; what it throws leaves the event. It may destroy the widget.
    TextureWidget& SetClicked(std::function<void()> p_clicked);
    /// Whether it is held down now, the pointer over it.
    bool IsPressed() const noexcept { return _isDown && _pressed.Target() > 0; }

    /// How large it must be in pixels: as high as a button of a toolbar, and as wide as that for an image or as wide as
    /// its label needs.
    Types::Size PreferredSize(DrawContext const& p_context);

    void Draw(DrawContext const& p_context) override;

    bool Press(Types::Pos const& p_pos, EventInformation& p_event) override;
    void Drag(Types::Pos const& p_pos, EventInformation& p_event) override;
    /// A release while the button still counts as down breaks the press off.
    void Release(Types::Pos const& p_pos, EventInformation& p_event) override;
    bool Key(EventInformation& p_event) override;

private:
    void FlagChanged(Flag p_flag) override;

    void SetDown(bool p_isDown, EventInformation& p_event);
    void Click();
    void DrawGround(DrawContext const& p_context, float p_opacity) const;
    void DrawSign(DrawContext const& p_context, float p_opacity);
    void DrawFocus(DrawContext const& p_context, float p_opacity) const;
    QColor SignColor(DrawContext const& p_context) const;

    std::shared_ptr<Library::Texture const> _texture;
    SchemaFont _font; ///< of labels
    std::wstring _label;
    std::wstring _toolTip;
    std::function<void()> _clicked;
    TextureMode _mode = TextureMode::Image;
    QColor _color{0, 0, 0};
    bool _isFramed = false;
    bool _isChecked = false;
    bool _isDown = false; ///< a press has begun on it
    bool _hidesFocus = false; ///< the focus came by the pointer, which shows where it is
    FloatAnimation _opacity;
    FloatAnimation _pressed;
};

} // namespace Qor::Chart::Render
