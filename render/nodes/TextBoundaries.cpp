#include "render/nodes/TextBoundaries.h"

#include <QChar>

#include <algorithm>

namespace Qor::Chart::Render {

namespace {

/// After how many code points without a direction a text counts as read from left to right.
constexpr std::size_t DirectionReach = 4096;

constexpr char32_t ZeroWidthNonJoiner = 0x200C;
constexpr char32_t ZeroWidthJoiner = 0x200D;

bool IsIn(char32_t p_character, char32_t p_first, char32_t p_last) {
    return p_character >= p_first && p_character <= p_last;
}

// The rules for characters as users see them are those of Unicode (annex 29) for extended grapheme clusters, with the
// conjuncts of Indic scripts. Marks, those with a width of their own included, always belong to what is before them.

bool IsExtending(char32_t p_character) {
    if (p_character < 0x300)
        return false;
    return QChar::isMark(p_character) || p_character == ZeroWidthNonJoiner || p_character == ZeroWidthJoiner ||
        p_character == 0xE33 || p_character == 0xEB3 || IsIn(p_character, 0xFF9E, 0xFF9F) ||
        IsIn(p_character, 0x1F3FB, 0x1F3FF) || IsIn(p_character, 0xE0020, 0xE007F);
}

/// Number signs of some scripts, which stand before what they belong to.
bool IsPrepended(char32_t p_character) {
    return IsIn(p_character, 0x600, 0x605) || p_character == 0x6DD || p_character == 0x70F ||
        IsIn(p_character, 0x890, 0x891) || p_character == 0x8E2 || p_character == 0xD4E || p_character == 0x110BD ||
        p_character == 0x110CD;
}

bool IsControl(char32_t p_character) {
    if (IsIn(p_character, 0x20, 0x7E) || IsExtending(p_character) || IsPrepended(p_character))
        return false;
    QChar::Category const category = QChar::category(p_character);
    return category == QChar::Other_Control || category == QChar::Other_Format || category == QChar::Separator_Line ||
        category == QChar::Separator_Paragraph;
}

bool IsFlagLetter(char32_t p_character) {
    return IsIn(p_character, 0x1F1E6, 0x1F1FF);
}

bool IsPictograph(char32_t p_character) {
    bool const isSign = p_character == 0xA9 || p_character == 0xAE || p_character == 0x203C || p_character == 0x2049 ||
        p_character == 0x3030 || p_character == 0x303D || p_character == 0x3297 || p_character == 0x3299;
    bool const isInBlock =
        IsIn(p_character, 0x2122, 0x2BFF) || IsIn(p_character, 0x1F000, 0x1FAFF) || IsIn(p_character, 0x1FC00, 0x1FFFD);
    return isSign || (isInBlock && !IsFlagLetter(p_character) && !IsExtending(p_character));
}

enum class Hangul {
    None,
    Leading,
    Vowel,
    Trailing,
    Open, ///< a syllable without a trailing consonant
    Closed,
};

Hangul HangulOf(char32_t p_character) {
    constexpr char32_t FirstSyllable = 0xAC00;
    constexpr char32_t TrailingCount = 28;
    if (p_character < 0x1100)
        return Hangul::None;
    if (IsIn(p_character, 0x1100, 0x115F) || IsIn(p_character, 0xA960, 0xA97C))
        return Hangul::Leading;
    if (IsIn(p_character, 0x1160, 0x11A7) || IsIn(p_character, 0xD7B0, 0xD7C6))
        return Hangul::Vowel;
    if (IsIn(p_character, 0x11A8, 0x11FF) || IsIn(p_character, 0xD7CB, 0xD7FB))
        return Hangul::Trailing;
    if (IsIn(p_character, FirstSyllable, 0xD7A3))
        return (p_character - FirstSyllable) % TrailingCount == 0 ? Hangul::Open : Hangul::Closed;
    return Hangul::None;
}

bool JoinsSyllable(Hangul p_before, Hangul p_behind) {
    switch (p_before) {
    case Hangul::Leading:
        return p_behind != Hangul::None && p_behind != Hangul::Trailing;
    case Hangul::Vowel:
    case Hangul::Open:
        return p_behind == Hangul::Vowel || p_behind == Hangul::Trailing;
    case Hangul::Trailing:
    case Hangul::Closed:
        return p_behind == Hangul::Trailing;
    default:
        return false;
    }
}

// The blocks of the scripts with conjuncts are alike: 128 places each, the same letters at the same places.

bool HasConjuncts(char32_t p_character) {
    return IsIn(p_character, 0x900, 0x9FF) || IsIn(p_character, 0xA80, 0xB7F) || IsIn(p_character, 0xC00, 0xC7F) ||
        IsIn(p_character, 0xD00, 0xD7F);
}

bool IsConsonant(char32_t p_character) {
    char32_t const place = p_character & 0x7F;
    return HasConjuncts(p_character) && (IsIn(place, 0x15, 0x39) || IsIn(place, 0x58, 0x5F));
}

bool IsLinker(char32_t p_character) {
    return HasConjuncts(p_character) && (p_character & 0x7F) == 0x4D;
}

/// Whether what ends before a place is a consonant with a linker and perhaps more marks.
bool EndsLinked(std::u32string_view p_text, std::size_t p_place) {
    bool isLinked = false;
    std::size_t i = p_place;
    while (i > 0 && IsExtending(p_text[i - 1]))
        isLinked = IsLinker(p_text[--i]) || isLinked;
    return isLinked && i > 0 && IsConsonant(p_text[i - 1]);
}

bool EndsInJoinedPictograph(std::u32string_view p_text, std::size_t p_place) {
    if (p_text[p_place - 1] != ZeroWidthJoiner)
        return false;
    std::size_t i = p_place - 1;
    while (i > 0 && IsExtending(p_text[i - 1]))
        --i;
    return i > 0 && IsPictograph(p_text[i - 1]);
}

/// Whether a letter of a flag at a place is the second one of its pair.
bool IsSecondOfFlag(std::u32string_view p_text, std::size_t p_place) {
    std::size_t i = p_place;
    while (i > 0 && IsFlagLetter(p_text[i - 1]))
        --i;
    return (p_place - i) % 2 == 1;
}

bool IsBoundary(std::u32string_view p_text, std::size_t p_place) {
    if (p_place == 0 || p_place >= p_text.size())
        return true;
    char32_t const before = p_text[p_place - 1];
    char32_t const behind = p_text[p_place];
    if (IsControl(before) || IsControl(behind))
        return before != U'\r' || behind != U'\n';
    if (IsExtending(behind) || IsPrepended(before) || JoinsSyllable(HangulOf(before), HangulOf(behind)))
        return false;
    if (IsFlagLetter(behind))
        return !IsSecondOfFlag(p_text, p_place);
    if (IsPictograph(behind))
        return !EndsInJoinedPictograph(p_text, p_place);
    return !IsConsonant(behind) || !EndsLinked(p_text, p_place);
}

enum class Kind {
    Blank,
    Letter,
    Ideograph,
    Sign,
};

bool IsInner(std::u32string_view p_text, std::size_t p_place);

Kind KindOf(char32_t p_character) {
    if (QChar::isSpace(p_character) || p_character < 0x20)
        return Kind::Blank;
    if (IsIn(p_character, 0x2E80, 0x2FFF) || IsIn(p_character, 0x3400, 0x9FFF) || IsIn(p_character, 0x20000, 0x3FFFF))
        return Kind::Ideograph;
    bool const isLetter = QChar::isLetterOrNumber(p_character) || QChar::isMark(p_character) ||
        QChar::category(p_character) == QChar::Punctuation_Connector ||
        QChar::category(p_character) == QChar::Other_Format;
    return isLetter ? Kind::Letter : Kind::Sign;
}

Kind KindAt(std::u32string_view p_text, std::size_t p_place) {
    Kind const kind = KindOf(p_text[p_place]);
    return kind == Kind::Sign && IsInner(p_text, p_place) ? Kind::Letter : kind;
}

/// Whether a sign belongs to the word around it: "don't", "3.14".
bool IsInner(std::u32string_view p_text, std::size_t p_place) {
    char32_t const sign = p_text[p_place];
    if (p_place == 0 || p_place + 1 >= p_text.size())
        return false;
    char32_t const before = p_text[p_place - 1];
    char32_t const after = p_text[p_place + 1];
    if (sign == U'\'' || sign == 0x2019)
        return QChar::isLetter(before) && QChar::isLetter(after);
    return (sign == U'.' || sign == U',') && QChar::isDigit(before) && QChar::isDigit(after);
}

std::size_t EndOfKind(std::u32string_view p_text, std::size_t p_place) {
    if (p_place >= p_text.size())
        return p_text.size();
    Kind const kind = KindAt(p_text, p_place);
    std::size_t place = p_place + 1;
    while (place < p_text.size() && KindAt(p_text, place) == kind)
        ++place;
    return place;
}

std::size_t BeginOfKind(std::u32string_view p_text, std::size_t p_place) {
    if (p_place == 0)
        return 0;
    Kind const kind = KindAt(p_text, p_place - 1);
    std::size_t place = p_place - 1;
    while (place > 0 && KindAt(p_text, place - 1) == kind)
        --place;
    return place;
}

} // namespace

std::size_t TextBoundaries::Snap(std::u32string_view p_text, std::size_t p_place) {
    std::size_t place = std::min(p_place, p_text.size());
    while (!IsBoundary(p_text, place))
        ++place;
    return place;
}

std::vector<bool> TextBoundaries::All(std::u32string_view p_text) {
    std::vector<bool> begins(p_text.size() + 1);
    for (std::size_t i = 0; i < begins.size(); ++i)
        begins[i] = IsBoundary(p_text, i);
    return begins;
}

std::size_t TextBoundaries::Next(std::u32string_view p_text, std::size_t p_place) {
    return p_place < p_text.size() ? Snap(p_text, p_place + 1) : p_text.size();
}

std::size_t TextBoundaries::Previous(std::u32string_view p_text, std::size_t p_place) {
    std::size_t place = std::min(p_place, p_text.size());
    if (place == 0)
        return 0;
    do
        --place;
    while (!IsBoundary(p_text, place));
    return place;
}

std::size_t TextBoundaries::NextWord(std::u32string_view p_text, std::size_t p_place) {
    std::size_t place = p_place;
    if (place < p_text.size() && KindAt(p_text, place) != Kind::Blank)
        place = EndOfKind(p_text, place);
    if (place < p_text.size() && KindAt(p_text, place) == Kind::Blank)
        place = EndOfKind(p_text, place);
    return Snap(p_text, place);
}

std::size_t TextBoundaries::PreviousWord(std::u32string_view p_text, std::size_t p_place) {
    std::size_t place = std::min(p_place, p_text.size());
    if (place > 0 && KindAt(p_text, place - 1) == Kind::Blank)
        place = BeginOfKind(p_text, place);
    place = BeginOfKind(p_text, place);
    std::size_t const snapped = Snap(p_text, place);
    return snapped < p_place ? snapped : Previous(p_text, p_place);
}

std::pair<std::size_t, std::size_t> TextBoundaries::WordAt(std::u32string_view p_text, std::size_t p_place) {
    if (p_text.empty())
        return {0, 0};
    std::size_t const place = std::min(p_place, p_text.size() - 1);
    return {Snap(p_text, BeginOfKind(p_text, place + 1)), Snap(p_text, EndOfKind(p_text, place))};
}

bool TextBoundaries::IsRightToLeft(std::u32string_view p_text) {
    for (char32_t const character : p_text.substr(0, DirectionReach)) {
        QChar::Direction const direction = QChar::direction(character);
        if (direction == QChar::DirL)
            return false;
        if (direction == QChar::DirR || direction == QChar::DirAL)
            return true;
    }
    return false;
}

} // namespace Qor::Chart::Render
