#pragma once

#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "render/Export.h"
#include "render/anim/Blender.h"
#include "render/nodes/SchemaFont.h"
#include "render/nodes/TextEdit.h"
#include "render/nodes/TextLine.h"
#include "render/nodes/Widget.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class QColor;

namespace Qor::Chart::Assets {
class TextLayout;
}

namespace Qor::Chart::Render {

class TextInputHost;

/// A text on the screen: a label in as many lines as fit, or a field of one line in which the user types, selects,
/// copies and pastes, in any script. What users take for one character is one for the caret. The arrows go through the
/// text in its order, turned around where the text is read from right to left.
///
///     field.SetMode(TextWidget::Mode::Editable).SetText(L"12.5").SetCommitted([] { take(); });
///
/// An edit ends when it is committed, with Return or with the loss of the focus, or taken back with Escape. A frame
/// costs what is to be seen of the text, however long that is.
class QOR_VIS_API TextWidget : public Widget {
public:
    enum class Mode {
        Label, ///< shows, and lets the pointer through
        Editable,
        ReadOnly, ///< can be selected and copied
    };
    /// What a program is told; it reads the text with `Text()`. It may change or destroy the widget.
    using Callback = std::function<void()>;
    /// Whether a text with something inserted is acceptable; what is not is not inserted. Deleting is always allowed.
    using Filter = std::function<bool(std::wstring const&)>;

    /// For how long after the last key the caret blinks; then it stays, so that an idle window can sleep.
    static constexpr int BlinkMilliseconds = 10'000;

    /// A label, not shown at first.
    TextWidget();
    ~TextWidget() override;

    TextWidget& SetMode(Mode p_mode);
    Mode GetMode() const noexcept { return _mode; }

    /// Puts another text in place of everything: an edit under way and what could be undone are gone, the caret stands
    /// at the end. Nobody is told. The same text ends the edit and changes nothing else. In a field control characters
    /// become blanks; what is longer than the maximum is kept.
    TextWidget& SetText(std::wstring_view p_text);
    /// With what was typed so far, without what an input method is still composing.
    std::wstring Text() const;
    /// Whether the user has changed it since it was set or committed.
    bool IsEdited() const noexcept { return _edit.IsEdited(); }

    /// Shown while there is no text.
    TextWidget& SetPlaceholder(std::wstring p_text);
    std::wstring const& Placeholder() const noexcept { return _placeholder; }
    /// How many code points the user can enter; 0 for no limit.
    TextWidget& SetMaxLength(std::size_t p_length);
    std::size_t MaxLength() const noexcept { return _edit.MaxLength(); }
    TextWidget& SetFilter(Filter p_filter);

    /// Whether a field stands on a ground of its own with a frame around; true at first. Labels have none.
    TextWidget& SetFramed(bool p_framed) noexcept;
    bool IsFramed() const noexcept { return _isFramed; }
    /// Whether a short text stands in the middle, and not where it begins.
    TextWidget& SetCentered(bool p_centered) noexcept;
    bool IsCentered() const noexcept { return _isCentered; }

    /// After each change by the user.
    TextWidget& SetChanged(Callback p_changed);
    /// After an edit was committed; one that changed nothing is not told.
    TextWidget& SetCommitted(Callback p_committed);
    /// After an edit was taken back.
    TextWidget& SetCancelled(Callback p_cancelled);

    /// In code points from the beginning of the text; the selection is between both.
    std::size_t Caret() const noexcept { return _edit.Caret(); }
    std::size_t Anchor() const noexcept { return _edit.Anchor(); }
    /// Places inside of what users take for one character move behind it.
    void Select(std::size_t p_anchor, std::size_t p_caret);
    void SelectAll();
    std::wstring SelectedText() const;
    /// Ends the edit that is under way.
    /// @{
    void Commit();
    void Cancel();
    /// @}

    /// How large it must be in pixels: for a field one line high with its frame and some characters wide, for a label
    /// as large as its text, broken into lines of at most p_width.
    Types::Size PreferredSize(DrawContext const& p_context, int p_width = 1 << 20);
    /// Where the caret was drawn last, in pixels as the rectangle; empty before, and in labels.
    Types::Viewport<0> const& CaretPlace() const noexcept { return _caretPlace; }

    void Draw(DrawContext const& p_context) override;

    bool Press(Types::Pos const& p_pos, EventInformation& p_event) override;
    void Drag(Types::Pos const& p_pos, EventInformation& p_event) override;
    void Release(Types::Pos const& p_pos, EventInformation& p_event) override;
    bool DoublePress(Types::Pos const& p_pos, EventInformation& p_event) override;
    bool Key(EventInformation& p_event) override;
    /// All is selected.
    void TabbedInto(EventInformation& p_event) override;
    bool IsFocusable() const override;
    void WindowChanged(bool p_isEntered) override;
    bool IsHit(Types::Pos const& p_pos) const override;

private:
    void FlagChanged(Flag p_flag) override;

    /// Where the caret stands in what is shown.
    std::size_t CaretShown() const noexcept {
        return _composition.empty() ? _edit.Caret() : _edit.SelectionBegin() + _composition.size();
    }
    bool IsEditable() const noexcept { return _mode == Mode::Editable && !Has(FlagDisabled); }
    bool IsAccepted(std::u32string const& p_inserted) const;
    bool Insert(std::u32string p_text, bool p_joins);
    void Compose(EventInformation const& p_event);
    bool Command(EventInformation& p_event);
    bool EditKey(EventInformation& p_event);
    /// Return and Escape.
    bool EndKey(EventInformation& p_event);
    bool MoveKey(EventInformation const& p_event);
    /// After something was done: the caret is to be seen.
    void Show(EventInformation& p_event);
    /// Gives up what is being composed.
    void EndInput();
    void EndComposition();
    /// Where a pixel is in the line as it was drawn, from the left end of its space.
    int InLine(Types::Pos const& p_pos);

    /// The space for the text.
    Types::Viewport<0> Inside() const;
    void TakeFont(DrawContext const& p_context);
    void LayOut();
    void LayOutAround(std::optional<std::size_t> p_shown);
    Assets::TextLayout const& Block(std::u32string const& p_text, std::uint64_t p_id, int p_width, int p_height);
    void DrawGround(DrawContext const& p_context, float p_opacity) const;
    void DrawLabel(DrawContext const& p_context, float p_opacity);
    void DrawField(DrawContext const& p_context, float p_opacity);
    void DrawSelection(DrawContext const& p_context, float p_opacity) const;
    /// A bar as high as the line, between two places of it.
    Types::Viewport<0> LineBar(int p_left, int p_right) const;
    void DrawBar(DrawContext const& p_context, Types::Viewport<0> const& p_bar, QColor const& p_color) const;
    void DrawComposition(DrawContext const& p_context, QColor const& p_color) const;
    void DrawCaret(DrawContext const& p_context, QColor const& p_color);
    bool IsCaretOn(DrawContext const& p_context) const;

    Mode _mode = Mode::Label;
    bool _isFramed = true;
    bool _isCentered = false;
    std::wstring _placeholder;
    Filter _filter;
    Callback _changed;
    Callback _committed;
    Callback _cancelled;

    TextEdit _edit;
    std::u32string _composition; ///< what an input method shows at the caret
    TextLine _line;
    std::optional<std::size_t> _shown; ///< the place that the line was scrolled to
    SchemaFont _font; ///< none until it was drawn or measured
    float _ratio = 1; ///< of the last draw

    /// A label or a placeholder that is laid out.
    struct LaidOut;
    std::unique_ptr<LaidOut> _block;
    /// What a label needs, and what that depends on.
    struct Measured {
        std::uint64_t id;
        int width;
        float size;
        float ratio;
        Types::Size needed;
    };
    std::optional<Measured> _measured;
    std::u32string _placeholderShown;
    std::uint64_t _placeholderNumber = 0; ///< counted up with each change of it

    TextInputHost* _host = nullptr; ///< while it has the focus
    bool _isWindowHere = true; ///< the user types into this window
    Types::Viewport<0> _caretPlace;
    std::optional<Types::Viewport<0>> _toldCaret; ///< what the input method knows, in pixels of the window
    std::uint64_t _lastAction = 0; ///< nanoseconds of the process's clock
    bool _isSelecting = false; ///< by a drag
    FloatAnimation _opacity;
};

} // namespace Qor::Chart::Render
