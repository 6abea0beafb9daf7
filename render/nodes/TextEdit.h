#pragma once

#include "render/Export.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace Qor::Chart::Render {

/// A line of text with a caret and a selection, and what can be undone: the logic of a field, without pixels and keys.
/// Places are counted in code points. The caret is never inside of what users take for one character: whatever happens
/// to the text around it, it then goes on to the next place that is allowed.
class QOR_VIS_API TextEdit {
public:
    /// How many steps can be undone, and how many code points they may hold together.
    static constexpr std::size_t MaxSteps = 1000;
    static constexpr std::size_t MaxRemembered = std::size_t{1} << 22;

    std::u32string const& Text() const noexcept { return _text; }
    /// Counted up with each change of the text.
    std::uint64_t Revision() const noexcept { return _revision; }
    /// Replaces everything; nothing can be undone afterwards, and the caret stands at the end.
    void SetText(std::u32string p_text);

    void SetMaxLength(std::size_t p_length) noexcept { _maxLength = p_length; }
    std::size_t MaxLength() const noexcept { return _maxLength; }

    std::size_t Caret() const noexcept { return _caret; }
    std::size_t Anchor() const noexcept { return _anchor; }
    bool HasSelection() const noexcept { return _caret != _anchor; }
    std::size_t SelectionBegin() const noexcept { return _caret < _anchor ? _caret : _anchor; }
    std::size_t SelectionEnd() const noexcept { return _caret < _anchor ? _anchor : _caret; }
    std::u32string Selected() const { return _text.substr(SelectionBegin(), SelectionEnd() - SelectionBegin()); }

    /// @param p_extends  whether the selection goes there, and not only the caret
    void MoveTo(std::size_t p_place, bool p_extends);
    void Select(std::size_t p_anchor, std::size_t p_caret);
    void SelectWordAt(std::size_t p_place);

    /// How much of a text can be put in place of the selection, cut where it exceeds the maximum.
    std::u32string Fitting(std::u32string p_text) const;
    /// Puts a text in place of the selection; false when nothing changes.
    /// @param p_joins  whether it is undone together with what was typed just before
    bool Insert(std::u32string p_text, bool p_joins);
    /// Removes the selection, or what is between the caret and a place; false when that is nothing.
    bool Remove(std::size_t p_to);

    /// What Escape brings back is the text as it is now.
    void Commit();
    /// Brings the text back that was set or committed last; that can be undone.
    void Revert();
    bool IsEdited() const noexcept { return _revision != _committedRevision && _text != _committed; }

    bool Undo();
    bool Redo();

private:
    /// A change: at a place one text took the place of another.
    struct Step {
        std::size_t place;
        std::u32string removed;
        std::u32string inserted;
        std::size_t caret; ///< and the anchor, before
        std::size_t anchor;
        bool joins; ///< whether more of its kind may be added to it
    };

    void Replace(std::size_t p_begin, std::size_t p_end, std::u32string p_text, bool p_joins);
    bool Join(Step const& p_step);
    void Remember(Step p_step);
    void Splice(std::size_t p_place, std::size_t p_length, std::u32string const& p_text);

    std::u32string _text;
    std::u32string _committed;
    std::uint64_t _revision = 0;
    std::uint64_t _committedRevision = 0;
    std::size_t _maxLength = 0;
    std::size_t _caret = 0;
    std::size_t _anchor = 0;
    std::deque<Step> _done;
    std::deque<Step> _undone;
    std::size_t _remembered = 0; ///< code points in the steps that are done
    bool _isBroken = true; ///< the caret was moved: nothing joins the last step
};

} // namespace Qor::Chart::Render
