#include "render/nodes/TextEdit.h"

#include "render/nodes/TextBoundaries.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Render {

void TextEdit::SetText(std::u32string p_text) {
    _text = std::move(p_text);
    ++_revision;
    _caret = _anchor = _text.size();
    _done.clear();
    _undone.clear();
    _remembered = 0;
    Commit();
}

void TextEdit::Commit() {
    if (_revision != _committedRevision)
        _committed = _text;
    _committedRevision = _revision;
    _isBroken = true;
}

void TextEdit::Revert() {
    if (!IsEdited())
        return;
    Replace(0, _text.size(), _committed, false);
    _committedRevision = _revision;
    _isBroken = true;
}

void TextEdit::MoveTo(std::size_t p_place, bool p_extends) {
    _caret = TextBoundaries::Snap(_text, p_place);
    if (!p_extends)
        _anchor = _caret;
    _isBroken = true;
}

void TextEdit::Select(std::size_t p_anchor, std::size_t p_caret) {
    MoveTo(p_anchor, false);
    MoveTo(p_caret, true);
}

void TextEdit::SelectWordAt(std::size_t p_place) {
    auto const [begin, end] = TextBoundaries::WordAt(_text, p_place);
    Select(begin, end);
}

std::u32string TextEdit::Fitting(std::u32string p_text) const {
    std::size_t const kept = _text.size() - (SelectionEnd() - SelectionBegin());
    std::size_t const space = _maxLength > kept ? _maxLength - kept : 0;
    if (_maxLength == 0 || p_text.size() <= space)
        return p_text;
    std::size_t const end = TextBoundaries::Snap(p_text, space);
    p_text.resize(end <= space ? end : TextBoundaries::Previous(p_text, end));
    return p_text;
}

bool TextEdit::Insert(std::u32string p_text, bool p_joins) {
    std::u32string text = Fitting(std::move(p_text));
    if (text.empty())
        return false;
    Replace(SelectionBegin(), SelectionEnd(), std::move(text), p_joins);
    return true;
}

bool TextEdit::Remove(std::size_t p_to) {
    std::size_t const to = std::min(p_to, _text.size());
    std::size_t const begin = HasSelection() ? SelectionBegin() : std::min(_caret, to);
    std::size_t const end = HasSelection() ? SelectionEnd() : std::max(_caret, to);
    if (begin == end)
        return false;
    Replace(begin, end, {}, !HasSelection());
    return true;
}

void TextEdit::Splice(std::size_t p_place, std::size_t p_length, std::u32string const& p_text) {
    _text.replace(p_place, p_length, p_text);
    ++_revision;
}

void TextEdit::Replace(std::size_t p_begin, std::size_t p_end, std::u32string p_text, bool p_joins) {
    Step step{p_begin, _text.substr(p_begin, p_end - p_begin), std::move(p_text), _caret, _anchor, p_joins};
    Splice(p_begin, p_end - p_begin, step.inserted);
    _caret = _anchor = TextBoundaries::Snap(_text, p_begin + step.inserted.size());
    _undone.clear();
    if (!Join(step))
        Remember(std::move(step));
    _isBroken = false;
}

/// What is typed in a row, and what is deleted in a row, is one step; a blank ends it, so that words are undone one by
/// one.
bool TextEdit::Join(Step const& p_step) {
    if (_isBroken || _done.empty() || !_done.back().joins || !p_step.joins)
        return false;
    Step& last = _done.back();
    bool const isTyping = last.removed.empty() && p_step.removed.empty();
    bool const isDeleting = last.inserted.empty() && p_step.inserted.empty();
    if (isTyping && p_step.place == last.place + last.inserted.size()) {
        bool const beginsWord = last.inserted.back() == U' ' && p_step.inserted.front() != U' ';
        if (beginsWord)
            return false;
        last.inserted += p_step.inserted;
    } else if (isDeleting && p_step.place + p_step.removed.size() == last.place) {
        last.removed.insert(0, p_step.removed);
        last.place = p_step.place;
    } else if (isDeleting && p_step.place == last.place) {
        last.removed += p_step.removed;
    } else {
        return false;
    }
    _remembered += p_step.removed.size() + p_step.inserted.size();
    return true;
}

void TextEdit::Remember(Step p_step) {
    _remembered += p_step.removed.size() + p_step.inserted.size();
    _done.push_back(std::move(p_step));
    while (_done.size() > MaxSteps || (_done.size() > 1 && _remembered > MaxRemembered)) {
        _remembered -= _done.front().removed.size() + _done.front().inserted.size();
        _done.pop_front();
    }
}

bool TextEdit::Undo() {
    if (_done.empty())
        return false;
    Step step = std::move(_done.back());
    _done.pop_back();
    _remembered -= step.removed.size() + step.inserted.size();
    Splice(step.place, step.inserted.size(), step.removed);
    _caret = step.caret;
    _anchor = step.anchor;
    _undone.push_back(std::move(step));
    _isBroken = true;
    return true;
}

bool TextEdit::Redo() {
    if (_undone.empty())
        return false;
    Step step = std::move(_undone.back());
    _undone.pop_back();
    Splice(step.place, step.removed.size(), step.inserted);
    _caret = _anchor = TextBoundaries::Snap(_text, step.place + step.inserted.size());
    Remember(std::move(step));
    _isBroken = true;
    return true;
}

} // namespace Qor::Chart::Render
