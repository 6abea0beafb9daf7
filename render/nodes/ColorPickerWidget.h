#pragma once

#include "framework/types/Pos.h"
#include "render/Export.h"
#include "render/nodes/ColorPickerLayout.h"
#include "render/nodes/ColorPickerPainter.h"
#include "render/nodes/HsvColor.h"
#include "render/nodes/TextWidget.h"
#include "render/nodes/TextureWidget.h"
#include "render/nodes/Widget.h"

#include <QColor>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace Qor::Chart::Render {

/// A panel to pick a colour with: an area of saturation and value, sliders of hue and alpha, a field for hexadecimal
/// text (see `ColorText`), the former colour beside the present one, and the colours that were picked lately. Each part
/// is dragged or clicked, and works by keys: Tab goes through the parts; arrows, Page Up, Page Down, Home and End move
/// what is in them, by larger steps with Shift; Return and Space take the former or a recent colour.
///
///     ColorPickerWidget picker;
///     picker.SetColor(object->Color());
///     picker.SetChanged([&](QColor const& p_color) { object->SetColor(p_color); });
class QOR_VIS_API ColorPickerWidget : public Widget {
public:
    using Part = ColorPickerLayout::Part;
    using Callback = std::function<void(QColor const&)>;

    /// How many recent colours are kept.
    static constexpr std::size_t MostRecentColors = ColorPickerLayout::RecentCount;

    /// White, with alpha.
    ColorPickerWidget();
    ~ColorPickerWidget() override;

    /// Shows a colour, which is also the former one from now on. The colour that is shown already changes nothing; of
    /// more than eight bits a channel the highest eight count. An invalid colour is refused with a message to the
    /// logger.
    bool SetColor(QColor const& p_color);
    /// The colour that is shown, in eight bits a channel.
    QColor const& Color() const noexcept { return _color; }
    /// What `SetColor` has set, to which a click on it goes back.
    QColor const& FormerColor() const noexcept { return _former; }
    /// Where the marks stand. Hue and saturation stay as they are where the colour has none.
    HsvColor const& Hsv() const noexcept { return _hsv; }

    /// Whether the alpha can be changed; without it it stays as it is, and the text shows none. True at first.
    void SetAlphaShown(bool p_shown);
    bool IsAlphaShown() const noexcept { return _isAlphaShown; }

    /// Most recent first. Further ones than fit, and such as stand there twice, are left out; invalid ones are
    /// reported.
    void SetRecentColors(std::vector<QColor> const& p_colors);
    std::vector<QColor> const& RecentColors() const noexcept { return _recent; }

    /// Called whenever the user has changed the colour, many times in a drag. Neither call may destroy the widget.
    void SetChanged(Callback p_changed) { _changed = std::move(p_changed); }
    /// Called when the user has settled for a colour: let go, pressed a key, entered a text or clicked on one. By then
    /// it is the most recent one; a row of keys in one part counts as one there.
    void SetCommitted(Callback p_committed) { _committed = std::move(p_committed); }

    /// For how many pixels a logical one the parts are laid out, 1 at first; drawing sets it too.
    void SetPixelRatio(float p_ratio);
    ColorPickerLayout const& Layout() const noexcept { return _layout; }
    /// Where keys go.
    Part FocusedPart() const noexcept { return _part; }
    /// What stands in the field.
    std::wstring HexText() const { return _text.Text(); }
    /// Whether that was entered, and is no colour: the field has a red frame, and the colour is the old one.
    bool IsTextRefused() const noexcept { return _isTextRefused; }

    void Draw(DrawContext const& p_context) override;

    bool Press(Types::Pos const& p_pos, EventInformation& p_event) override;
    void Drag(Types::Pos const& p_pos, EventInformation& p_event) override;
    /// A release while the button still counts as down takes the drag back.
    void Release(Types::Pos const& p_pos, EventInformation& p_event) override;
    bool DoublePress(Types::Pos const& p_pos, EventInformation& p_event) override;
    bool Key(EventInformation& p_event) override;
    /// The first part gets the keys, or the last one.
    void TabbedInto(EventInformation& p_event) override;
    void WindowChanged(bool p_isEntered) override;

private:
    /// What a drag goes back to.
    struct Begin {
        QColor color;
        HsvColor hsv;
    };

    void FlagChanged(Flag p_flag) override;
    void RectangleChanged() override;

    void LayOut();
    bool IsThere(Part p_part) const;
    void FocusPart(Part p_part);
    /// False when there is no further part.
    bool FocusNextPart(EventInformation& p_event);

    void DragTo(Types::Pos const& p_pos);
    void Change(HsvColor const& p_hsv, int p_alpha);
    void ChangeByKey(HsvColor const& p_hsv, int p_alpha);
    /// Changes to a colour and commits it.
    void Pick(QColor const& p_color);
    void Click(Part p_part, Types::Pos const& p_pos);
    void Commit(bool p_isKey);

    bool KeyInPart(EventInformation& p_event);
    bool KeyInArea(int p_key, bool p_isLarge);
    bool KeyInSlider(int p_key, bool p_isLarge);
    bool KeyInText(EventInformation& p_event);
    bool KeyInRecent(int p_key);

    /// Takes what stands in the field for the colour, or refuses it.
    void EnterText();
    /// The same, and what was refused gives way to the colour.
    void LeaveText();
    std::wstring WrittenColor() const;
    void ShowColorAsText();

    ColorPickerPainter::Content Shown(float p_opacity) const;

    ColorPickerLayout _layout;
    ColorPickerPainter _painter;
    FloatAnimation _opacity;
    TextWidget _text;
    float _ratio = 1;
    bool _isAlphaShown = true;

    HsvColor _hsv{0, 0, 1};
    QColor _color{255, 255, 255};
    QColor _former{255, 255, 255};
    std::vector<QColor> _recent;
    Callback _changed;
    Callback _committed;

    Part _part = Part::Area;
    std::size_t _recentAt = 0; ///< which recent colour keys go to
    bool _showsFocus = true; ///< the focus was not moved by the pointer, which shows where it is
    bool _isTextRefused = false;
    std::optional<Part> _pressed; ///< where the press under way has begun
    std::size_t _pressedRecent = 0;
    Begin _begin;
    /// The recent colours before a row of keys that is under way; nothing before the first key.
    std::optional<std::vector<QColor>> _recentBeforeKeys;
};

} // namespace Qor::Chart::Render
