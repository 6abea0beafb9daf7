#include "render/nodes/TextWidget.h"

#include "tests/render/DrawFixture.h"
#include "tests/render/support/QuietSink.h"
#include "framework/qordebug/highrestimer.h"
#include "render/events/EventInformation.h"
#include "render/events/TextInputHost.h"
#include "render/nodes/TextBoundaries.h"

#include <QTextBoundaryFinder>
#include <gmock/gmock.h>

#include <chrono>
#include <random>

namespace Qor::Chart::Render {
namespace {

using Key = EventInformation::KeyCode;
using Mode = TextWidget::Mode;
constexpr std::uint32_t Ctrl = EventInformation::ModifierControl;
constexpr std::uint32_t Shift = EventInformation::ModifierShift;

/// A field of 200 by 20 pixels at (10, 10) that has the focus, and the window around it.
struct FieldFixture : Fixtures::DrawFixture, Fixtures::QuietSink, TextInputHost {
    FieldFixture() {
        field.SetMode(Mode::Editable);
        field.SetRectangle({10, 10, 200, 20});
        field.Set(Widget::FlagShown, true);
        field.Set(Widget::FlagFocus, true);
        field.SetChanged([this] { ++changes; }).SetCommitted([this] { told += "committed "; }).SetCancelled([this] {
            told += "cancelled ";
        });
    }

    bool Press(int p_key, std::uint32_t p_modifiers = 0, std::wstring const& p_text = {}) {
        EventInformation event(*this, nullptr);
        event.key = p_key;
        event.modifiers = p_modifiers;
        event.text = p_text;
        return field.Key(event);
    }
    void Type(std::wstring const& p_text) {
        for (wchar_t const character : p_text)
            Press(character == L' ' ? 32 : 'A', 0, {character});
    }
    void Compose(std::wstring const& p_text, std::wstring const& p_composition) {
        EventInformation event(*this, nullptr);
        event.text = p_text;
        event.composition = p_composition;
        field.Key(event);
    }
    void PointAt(int p_x, bool p_isDouble = false, int p_dragTo = -1) {
        EventInformation event(*this, nullptr);
        p_isDouble ? field.DoublePress({p_x, 20}, event) : field.Press({p_x, 20}, event);
        if (p_dragTo >= 0)
            field.Drag({p_dragTo, 20}, event);
        field.Release({p_x, 20}, event);
    }
    std::size_t Draw() {
        Utility::Scoped<Ogl::Agl> scope(handle);
        scope->Viewport({0, 0, 220, 40});
        DrawContext const context = MakeContext();
        dispatcher.redraws.clear();
        scope->BeginFrame();
        field.Draw(context);
        scope->EndFrame();
        std::size_t vertices = 0;
        for (Ogl::RecordedCommand const& command : Backend().Commands())
            vertices += command.vertices.size();
        return vertices;
    }
    int CaretX() {
        Draw();
        return static_cast<int>(field.CaretPlace().x) - 15; // the frame and the margin
    }

    TextInputHost* GetTextInputHost() override { return this; }
    std::wstring ClipboardText() override { return clipboard; }
    void SetClipboardText(std::wstring const& p_text) override { clipboard = p_text; }
    void BeginTextInput(Types::Viewport<0> const&) override { ++begun; }
    void EndTextInput() override { ++ended; }

    TextWidget field;
    std::wstring clipboard;
    std::string told;
    int changes = 0, begun = 0, ended = 0;
};

/// A field as users think of it: characters in a row, found anew in the whole text each time.
struct PlainField {
    std::u32string text;
    std::size_t caret = 0, anchor = 0;

    std::vector<std::size_t> Places() const {
        QString const string = QString::fromUcs4(text.data(), static_cast<qsizetype>(text.size()));
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, string);
        std::vector<std::size_t> places{0};
        qsizetype units = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            units += text[i] > 0xFFFF ? 2 : 1;
            finder.setPosition(units);
            if (finder.isAtBoundary())
                places.push_back(i + 1);
        }
        return places;
    }
    std::size_t AtOrBehind(std::size_t p_place) const {
        auto const places = Places();
        return *std::lower_bound(places.begin(), places.end(), p_place);
    }
    void MoveTo(std::size_t p_place, bool p_extends) {
        caret = AtOrBehind(p_place);
        anchor = p_extends ? anchor : caret;
    }
    std::size_t Behind() const { return AtOrBehind(std::min(caret + 1, text.size())); }
    std::size_t Before() const {
        auto const places = Places();
        auto const at = std::lower_bound(places.begin(), places.end(), caret);
        return at == places.begin() ? 0 : *std::prev(at);
    }
    void Replace(std::size_t p_to, std::u32string const& p_text) {
        bool const isSelected = caret != anchor;
        std::size_t const begin = isSelected ? std::min(caret, anchor) : std::min(caret, p_to);
        std::size_t const end = isSelected ? std::max(caret, anchor) : std::max(caret, p_to);
        text.replace(begin, end - begin, p_text);
        MoveTo(begin + p_text.size(), false);
    }
    bool ReadsLeftwards() const {
        auto const first = std::ranges::find_if(text, [](char32_t p_character) {
            bool const isSign = p_character == 0x301 || p_character == 0x200B || p_character == 0x200D;
            return p_character >= 'a' && !isSign && p_character < 0x1F3FB && p_character != 0x1F44D;
        });
        return first != text.end() && *first >= 0x5D0 && *first <= 0x64A;
    }
};

TEST(TextWidgetTest, behavesAsARowOfCharactersWhateverTheUserDoes) {
    std::vector<std::wstring> const pieces{L"a", L"bc", L" ", L".", L"e\u0301", L"\u0301", L"\u05E9", L"\u0627\u0644",
        L"\u1100", L"\u1161", L"\u11A8", L"\uAC01", L"\u4E2D", L"\r\n", L"\U0001F469\u200D\U0001F4BB",
        L"\U0001F44D\U0001F3FD", L"\U0001F1E9", L"\U0001F1EA\U0001F1E9", L"\u200D", L"\u200B",
        std::wstring(300, L'\u0301')};
    for (unsigned seed = 0; seed < 12; ++seed) {
        std::mt19937 random(seed);
        auto const below = [&](int p_n) { return std::uniform_int_distribution<int>(0, p_n - 1)(random); };
        FieldFixture window;
        PlainField plain;
        std::vector<std::u32string> history{U""};
        bool const draws = seed < 3;
        for (int step = 0; step < 250; ++step) {
            std::uint32_t const shift = below(3) == 0 ? Shift : 0;
            bool const extends = shift != 0;
            bool const isLeftward = plain.ReadsLeftwards();
            switch (int const action = below(12)) {
            case 0:
            case 1:
            case 2:
            case 3: {
                auto const count = static_cast<int>(pieces.size()) - (below(9) > 0 ? 1 : 0);
                auto which = static_cast<std::size_t>(below(count));
                char32_t const first = static_cast<char32_t>(pieces[which].front());
                bool const isFlag = first >= 0x1F1E6 && first <= 0x1F1FF;
                if (first >= 0x1F1E6 && isFlag == (seed % 2 == 0))
                    which = 0; // the finder of the oracle splits flags behind pictures
                window.clipboard = pieces[which];
                window.Press('V', Ctrl);
                std::u32string const wide(pieces[which].begin(), pieces[which].end());
                plain.Replace(plain.caret, wide == U"\r\n" ? U" " : wide);
                break;
            }
            case 4:
                window.Press(Key::KeyBackspace);
                plain.Replace(plain.Before(), U"");
                break;
            case 5:
                window.Press(Key::KeyDelete);
                plain.Replace(plain.Behind(), U"");
                break;
            case 6:
            case 7: {
                window.Press(action == 6 ? Key::KeyLeft : Key::KeyRight, shift);
                bool const isForward = (action == 7) != isLeftward;
                bool const collapses = !extends && plain.caret != plain.anchor;
                std::size_t const edge =
                    isForward ? std::max(plain.caret, plain.anchor) : std::min(plain.caret, plain.anchor);
                plain.MoveTo(collapses ? edge : isForward ? plain.Behind() : plain.Before(), extends);
                break;
            }
            case 8:
                window.Press(below(2) ? Key::KeyLeft : Key::KeyRight, Ctrl | shift);
                plain.MoveTo(window.field.Caret(), extends);
                break;
            case 9:
                window.Press(Key::KeyEnd, shift);
                plain.MoveTo(plain.text.size(), extends);
                break;
            case 10: {
                std::size_t const places = plain.text.size() + 3;
                std::size_t const a = random() % places, b = random() % places;
                window.field.Select(a, b);
                plain.MoveTo(std::min(a, plain.text.size()), false);
                plain.MoveTo(std::min(b, plain.text.size()), true);
                break;
            }
            default:
                window.Press('X', Ctrl);
                if (plain.caret != plain.anchor)
                    plain.Replace(plain.caret, U"");
            }
            if (history.back() != plain.text)
                history.push_back(plain.text);
            std::wstring const now = window.field.Text();
            ASSERT_EQ(std::u32string(now.begin(), now.end()), plain.text) << "seed " << seed << ", step " << step;
            ASSERT_EQ(std::pair(window.field.Anchor(), window.field.Caret()), std::pair(plain.anchor, plain.caret))
                << "seed " << seed << ", step " << step;
            if (draws)
                window.Draw();
        }
        auto const allAreKnown = [&](int p_key) {
            for (std::size_t i = 0; i < history.size() + 2; ++i) {
                window.Press(p_key, Ctrl);
                std::wstring const now = window.field.Text();
                ASSERT_THAT(history, ::testing::Contains(std::u32string(now.begin(), now.end())));
            }
        };
        std::wstring const last = window.field.Text();
        allAreKnown('Z');
        EXPECT_EQ(window.field.Text(), L"");
        allAreKnown('Y');
        EXPECT_EQ(window.field.Text(), last);
    }
}

/// The finder of the oracle splits pictures, flags and marks that stand in a text of an Indic script.
TEST(TextWidgetTest, charactersOfIndicScriptsHaveTheirConjunctsAndNoOthers) {
    std::u32string const text = U"\u0928\u092E\u0938\u094D\u0924\u0947 "
                                U"\U0001F469\u200D\U0001F4BB\U0001F1EE\U0001F1F3\u0B95\u0BCD\u0BB7\u0E01\u0E33\u0301";
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < text.size(); i = TextBoundaries::Next(text, i))
        places.push_back(i);
    EXPECT_THAT(places, ::testing::ElementsAre(0, 1, 2, 6, 7, 10, 12, 14, 15));
    EXPECT_EQ(TextBoundaries::Previous(text, 12), 10U);
    EXPECT_EQ(TextBoundaries::Previous(text, 6), 2U);
}

TEST(TextWidgetTest, keysEditSelectAndEndAsUsersKnow) {
    struct Case {
        std::wstring
            keys; ///< < > arrows, ( ) with Ctrl, { } with Ctrl and Shift, [ ] with Shift, H E Home and End, B D
        ///< delete, - = by word, A C X V Z Y with Ctrl, R Return, Q Escape; else it is typed
        std::wstring expected; ///< the caret as |, the anchor as ^
        std::string told;
    };
    for (Case const& test : {
             Case{L"one don't 3.14 ((", L"one |don't 3.14 ", ""},
             {L"one two(-", L"|two", ""},
             {L"one twoH=", L"|two", ""},
             {L"a++b<{", L"a|++^b", ""},
             {L"abc[[x", L"ax|", ""},
             {L"abc[[<", L"a|bc", ""},
             {L"abc[[>", L"abc|", ""},
             {L"abACEVV", L"ababab|", ""},
             {L"abAXVV", L"abab|", ""},
             {L"ab cdZ", L"ab |", ""},
             {L"ab cdZZYY", L"ab cd|", ""},
             {L"abBBZZY", L"ab|", ""},
             {L"abRcQ", L"ab|", "committed cancelled "},
             {L"abRR", L"ab|", "committed "},
             {L"abcdefghijkl", L"abcdefghij|", ""},
             {L"a#b", L"ab|", ""},
             {L"abQZ", L"ab|", "cancelled "},
         }) {
        FieldFixture window;
        window.field.SetMaxLength(test.keys.find(L' ') == std::wstring::npos ? 10 : 0);
        window.field.SetFilter([](std::wstring const& p_text) { return p_text.find(L'#') == std::wstring::npos; });
        for (wchar_t const key : test.keys) {
            static std::map<wchar_t, std::pair<int, std::uint32_t>> const codes{{L'<', {Key::KeyLeft, 0}},
                {L'>', {Key::KeyRight, 0}}, {L'(', {Key::KeyLeft, Ctrl}}, {L')', {Key::KeyRight, Ctrl}},
                {L'{', {Key::KeyLeft, Ctrl | Shift}}, {L'[', {Key::KeyLeft, Shift}}, {L'H', {Key::KeyHome, 0}},
                {L'E', {Key::KeyEnd, 0}}, {L'B', {Key::KeyBackspace, 0}}, {L'-', {Key::KeyBackspace, Ctrl}},
                {L'=', {Key::KeyDelete, Ctrl}}, {L'R', {Key::KeyReturn, 0}}, {L'Q', {Key::KeyEscape, 0}}};
            auto const code = codes.find(key);
            if (code != codes.end())
                window.Press(code->second.first, code->second.second);
            else if (key >= L'A' && key <= L'Z')
                window.Press(key, Ctrl, {static_cast<wchar_t>(key - L'A' + 1)});
            else
                window.Type({key});
        }
        std::wstring shown = window.field.Text();
        std::size_t const first = std::min(window.field.Caret(), window.field.Anchor());
        std::size_t const second = std::max(window.field.Caret(), window.field.Anchor());
        bool const caretFirst = window.field.Caret() == first;
        if (first != second)
            shown.insert(second, caretFirst ? L"^" : L"|");
        shown.insert(first, caretFirst ? L"|" : L"^");
        EXPECT_EQ(shown, test.expected) << QString::fromStdWString(test.keys).toStdString();
        EXPECT_EQ(window.told, test.told) << QString::fromStdWString(test.keys).toStdString();
    }

    FieldFixture window;
    window.clipboard = L"a\tb\r\nc\u2028d";
    window.Press('V', Ctrl);
    EXPECT_EQ(window.field.Text(), L"a b c d");
    window.field.SetMode(Mode::ReadOnly);
    for (int const key : {int(Key::KeyBackspace), int('O'), int(Key::KeyReturn)})
        EXPECT_FALSE(window.Press(key, 0, L"o")) << "others may have it";
    window.Press('A', Ctrl);
    window.Press('X', Ctrl);
    EXPECT_EQ(window.clipboard, L"a b c d");
    EXPECT_EQ(window.field.Text(), L"a b c d");
    window.field.SetMode(Mode::Editable);
    for (int const key : {int('O'), int('P'), Key::KeySign + '.', int(Key::KeyUp), int('V')})
        EXPECT_TRUE(window.Press(key)) << "nobody else is to take it for a command";
    EXPECT_FALSE(window.Press('S', Ctrl, L"\x13"));
    window.Press('Q', Ctrl | EventInformation::ModifierAlt, L"@");
    window.field.Set(Widget::FlagFocus, false);
    EXPECT_EQ(window.field.Text(), L"@") << "all was selected";
    EXPECT_EQ(window.told, "committed ");
}

TEST(TextWidgetTest, compositionsShowInPlaceOfTheSelectionUntilTheyAreGivenUp) {
    FieldFixture window;
    window.field.SetText(L"abcd");
    window.Press('A', Ctrl);
    int const behind = [&] {
        window.Press(Key::KeyEnd);
        return window.CaretX();
    }();
    window.field.Select(1, 3);
    window.Compose(L"", L"ni");
    EXPECT_EQ(window.field.Text(), L"abcd");
    window.Draw();
    EXPECT_EQ(window.begun, 2) << "the caret has moved";
    window.Compose(L"", L"");
    EXPECT_EQ(window.field.SelectedText(), L"bc") << "given up";
    window.Compose(L"\u4F60", L"h");
    EXPECT_EQ(window.field.Text(), L"a\u4F60d");
    window.Draw();
    window.Press(Key::KeyEscape);
    EXPECT_EQ(window.field.Text(), L"a\u4F60d") << "only the composition goes";
    EXPECT_EQ(window.ended, 1);
    window.field.SetText(L"ab");
    window.Compose(L"", L"cd");
    EXPECT_NEAR(window.CaretX(), behind, 2) << "the caret stands behind it";
    window.field.SetText(L"ef");
    EXPECT_EQ(window.ended, 2) << "another text ends it";
    window.Compose(L"", L"gh");
    window.Draw();
    window.field.Set(Widget::FlagFocus, false);
    EXPECT_EQ(window.field.Text(), L"ef");
    EXPECT_EQ(window.ended, 3);
}

TEST(TextWidgetTest, placesUnderThePointerFollowTheOrderOnTheScreen) {
    FieldFixture window;
    auto const xs = [&](std::wstring const& p_text) {
        window.field.SetText(p_text);
        std::vector<int> result;
        for (std::size_t i = 0; i <= p_text.size(); ++i) {
            window.field.Select(i, i);
            result.push_back(window.CaretX());
        }
        return result;
    };
    std::vector<int> const latin = xs(L"abc ");
    EXPECT_TRUE(std::ranges::is_sorted(latin) && latin.front() == 0 && latin[4] > latin[3])
        << "a blank at the end counts";
    std::vector<int> const hebrew = xs(L"\u05E9\u05DC\u05D5\u05DD");
    EXPECT_TRUE(std::ranges::is_sorted(hebrew, std::greater<>()) && hebrew.front() > 150) << "on the right side";
    std::vector<int> const mixed = xs(L"ab\u05E9\u05DCcd");
    EXPECT_GT(mixed[2], mixed[3]) << "leftwards";
    EXPECT_GT(mixed[5], mixed[4]);
    EXPECT_EQ(mixed[4], mixed[2]) << "behind what reads leftwards the rest begins";
    std::vector<int> const marked = xs(L"e\u0301x");
    EXPECT_EQ(marked[1], marked[2]) << "the caret does not stand before a mark";

    for (std::wstring const& text : {std::wstring(L"abc def"), std::wstring(L"\u05E9\u05DC\u05D5\u05DD")}) {
        std::vector<int> const places = xs(text);
        for (std::size_t i = 0; i <= text.size(); ++i) {
            window.PointAt(15 + places[i]);
            EXPECT_EQ(window.field.Caret(), i);
            window.PointAt(15 + places[0], false, 15 + places[i]);
            EXPECT_EQ(std::pair(window.field.Anchor(), window.field.Caret()), std::pair(std::size_t(0), i));
        }
    }
    window.field.SetText(L"one two");
    window.Draw();
    window.PointAt(15 + xs(L"one two")[5], true);
    EXPECT_EQ(window.field.SelectedText(), L"two");
}

TEST(TextWidgetTest, aMegabyteCostsWhatIsToBeSeen) {
    for (std::wstring const& part : {std::wstring(L"word "), std::wstring(L"x"), std::wstring(L"\u05E9"),
             std::wstring(L"\u0301"), std::wstring(L"\U0001F1E9"), std::wstring(L"\u200B")}) {
        FieldFixture window;
        std::wstring text;
        while (text.size() < 1'000'000)
            text += part;
        window.field.SetText(text);
        EXPECT_LT(window.Draw(), 5000U);
        for (int const x :
            {Key::KeyHome, Key::KeyRight, Key::KeyEnd, Key::KeyLeft, Key::KeyBackspace, Key::KeyDelete}) {
            window.Press(x);
            EXPECT_LT(window.Draw(), 5000U);
            EXPECT_TRUE(window.field.CaretPlace().x >= 10 && window.field.CaretPlace().Right() <= 210);
        }
        std::size_t const middle = text.size() / 2;
        window.field.Select(middle, middle);
        window.Draw();
        auto const begin = std::chrono::steady_clock::now();
        for (int i = 0; i < 100; ++i) {
            window.Press('A', 0, L"a");
            window.Draw();
        }
        std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - begin;
        EXPECT_LT(elapsed.count(), 5) << "100 keys and frames";
        bool const isOneCharacter = part == L"\u0301"; // with what was typed
        EXPECT_TRUE(
            isOneCharacter || window.field.Text().substr(window.field.Caret() - 100, 100) == std::wstring(100, L'a'));
        EXPECT_TRUE(window.field.CaretPlace().x >= 10 && window.field.CaretPlace().Right() <= 210);
        window.Press('A', Ctrl);
        window.Press('X', Ctrl);
        window.Press('V', Ctrl);
        EXPECT_EQ(window.field.Text().size(), window.clipboard.size());
        window.field.SetMode(Mode::Label);
        EXPECT_LT(window.Draw(), 5000U);
    }
}

TEST(TextWidgetTest, scrollingKeepsWhatIsSeenInItsPlace) {
    for (wchar_t const letter : {L'x', L'\u05E9'}) {
        FieldFixture window;
        window.field.SetText(std::wstring(3000, letter));
        window.Press(Key::KeyHome);
        bool const isLeftward = letter != L'x';
        for (int i = 0, before = window.CaretX(); i < 1500; ++i) {
            window.Press(isLeftward ? Key::KeyLeft : Key::KeyRight);
            int const x = window.CaretX();
            ASSERT_LE(std::abs(x - before), 12) << "key " << i;
            before = x;
        }
        window.Press(Key::KeyEnd);
        int const end = window.CaretX();
        for (int i = 0; i < 5; ++i)
            window.Press(Key::KeyBackspace);
        EXPECT_EQ(window.CaretX(), end) << "no space is left unused";
    }
}

TEST(TextWidgetTest, theCaretBlinksForAWhileAndThenLetsTheWindowSleep) {
    qordebug::manualclock clock;
    FieldFixture window;
    window.Type(L"a");
    std::size_t const on = window.Draw();
    EXPECT_THAT(window.dispatcher.redraws, ::testing::ElementsAre(500));
    clock.advance(500);
    EXPECT_LT(window.Draw(), on);
    clock.advance(TextWidget::BlinkMilliseconds);
    EXPECT_EQ(window.Draw(), on);
    EXPECT_TRUE(window.dispatcher.redraws.empty());
    window.field.WindowChanged(false);
    EXPECT_LT(window.Draw(), on) << "the user types elsewhere";
    window.capabilities.animations = false;
    window.field.WindowChanged(true);
    clock.advance(500);
    EXPECT_EQ(window.Draw(), on);
    EXPECT_TRUE(window.dispatcher.redraws.empty());
}

} // namespace
} // namespace Qor::Chart::Render
