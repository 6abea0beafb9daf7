#include "render/nodes/ColorPickerWidget.h"

#include "tests/render/DrawFixture.h"
#include "tests/render/support/QuietSink.h"
#include "render/events/EventInformation.h"
#include "render/nodes/ColorText.h"

#include <gmock/gmock.h>

#include <random>

namespace Qor::Chart::Render {
namespace {

using Part = ColorPickerWidget::Part;
using Layout = ColorPickerLayout;
using Keys = EventInformation;
using ::testing::ElementsAre;

/// A widget as its owner treats it.
struct ColorPickerWidgetTest : ::testing::Test {
    ColorPickerWidgetTest() {
        auto const [width, height] = Layout::PreferredSize(1, true);
        widget.SetRectangle({30, 20, static_cast<float>(width), static_cast<float>(height)});
        widget.Set(Widget::FlagShown, true);
        widget.Set(Widget::FlagFocus, true);
        widget.SetChanged([this](QColor const& p_color) { changed.push_back(p_color); });
        widget.SetCommitted([this](QColor const& p_color) { committed.push_back(p_color); });
    }
    EventInformation& Event(std::uint32_t p_buttons = 0) {
        event.emplace(sink, nullptr);
        event->buttons = p_buttons;
        return *event;
    }
    void Drag(Types::Pos const& p_from, Types::Pos const& p_to, bool p_isBrokenOff = false) {
        widget.Press(p_from, Event(Keys::ButtonMaskPrimary));
        widget.Drag(p_to, Event(Keys::ButtonMaskPrimary));
        widget.Release(p_to, Event(p_isBrokenOff ? 1 : 0));
    }
    bool Key(int p_key, std::uint32_t p_modifiers = 0, std::wstring const& p_text = {}) {
        Event().key = p_key;
        event->modifiers = p_modifiers;
        event->text = p_text;
        return widget.Key(*event);
    }
    static Types::Pos At(Layout::Rectangle const& p_part, double p_right, double p_up) {
        return {static_cast<int>(Layout::XOf(p_part, p_right)), static_cast<int>(Layout::YOf(p_part, p_up))};
    }
    void TabTo(Part p_part) {
        while (widget.FocusedPart() != p_part) {
            if (!Key(Keys::KeyTab))
                widget.TabbedInto(Event());
        }
    }
    void Enter(std::wstring const& p_text) {
        TabTo(Part::Text);
        Key('A', Keys::ModifierControl);
        for (wchar_t const character : p_text)
            Key(Keys::KeyNone, 0, std::wstring(1, character));
        Key(Keys::KeyReturn);
    }

    Fixtures::QuietSink sink;
    std::optional<EventInformation> event;
    ColorPickerWidget widget;
    Layout const& layout = widget.Layout();
    std::vector<QColor> changed, committed;
};

TEST(HsvColorTest, everyColourOfEightBitsComesBack) {
    HsvColor former;
    for (int number = 0; number < 1 << 24; number += 7) { // meets every value of every channel many times
        QColor const color(number >> 16, number >> 8 & 255, number & 255);
        former = HsvColor::Of(color, former);
        ASSERT_EQ(former.Rgb(), color) << number;
        ASSERT_TRUE(former.hue >= 0 && former.hue < 360 && former.saturation <= 1 && former.value <= 1) << number;
    }
    EXPECT_EQ(HsvColor::Of(QColor(0, 255, 255), {}), (HsvColor{180, 1, 1}));
    EXPECT_EQ(HsvColor::Of(Qt::black, {77, 0.5, 1}), (HsvColor{77, 0.5, 0}));
    EXPECT_EQ((HsvColor{30, 0.5, 1}.Rgb()), QColor(255, 191, 128));
}

TEST(ColorTextTest, readsHexadecimalColoursAndNothingElse) {
    struct Case {
        wchar_t const* text;
        std::optional<QColor> color;
    };
    QColor const some(0x12, 0xAB, 0x34);
    for (auto const& [text, color] : {Case{L"#12ab34", some}, {L"12AB34", some}, {L" \t#12Ab34\n", some},
             {L"#8012ab34", QColor(0x12, 0xAB, 0x34, 0x80)}, {L"#ff12ab34", some}, {L"#0000", {}},
             {L"#f0c", QColor(255, 0, 204)}, {L"000", QColor(0, 0, 0)}, {L"", {}}, {L"##123", {}}, {L"#12345", {}},
             {L"#123456789", {}}, {L"#12 456", {}}, {L"red", {}}, {L"-12345", {}}, {L"#１２３", {}}}) {
        EXPECT_EQ(ColorText::Read(text), color) << testing::PrintToString(text);
        EXPECT_TRUE(!color || ColorText::Read(ColorText::Write(*color)) == color);
    }
    EXPECT_EQ(ColorText::Write(QColor(1, 2, 3, 4)), L"#04010203");
}

TEST_F(ColorPickerWidgetTest, draggingMovesWhatIsUnderThePressAlsoOutside) {
    widget.SetColor(QColor(255, 0, 0, 128));
    Drag(At(layout.area, 1, 1), {10000, -500});
    EXPECT_EQ(widget.Color(), QColor(0, 0, 0, 128));
    EXPECT_THAT(committed, ElementsAre(QColor(0, 0, 0, 128)));
    Drag(At(layout.hue, 0, 0.5), At(layout.hue, 1.0 / 3, 40));
    EXPECT_EQ(widget.Color(), QColor(0, 0, 0, 128)) << "black has no hue";
    EXPECT_EQ(committed.size(), 1U) << "nothing has changed";
    Drag(At(layout.area, 1, 0), At(layout.area, 1, 1));
    EXPECT_NEAR(widget.Hsv().hue, 120, 1) << "but it was kept";
    EXPECT_EQ(widget.Color().green(), 255);
    committed.clear();
    QColor const before = widget.Color();
    Drag(At(layout.alpha, 0.2, 0.5), At(layout.alpha, 0.7, 0.5), true);
    EXPECT_EQ(widget.Color(), before) << "taken back";
    EXPECT_THAT(committed, testing::IsEmpty());
    EXPECT_EQ(changed.back(), before);
    TabTo(Part::Text);
    Key('A', Keys::ModifierControl);
    Key(Keys::KeyNone, 0, L"#ff8000");
    Drag(At(layout.hue, 0.2, 0.5), At(layout.hue, 0.7, 0.5), true);
    EXPECT_EQ(widget.Color(), QColor(255, 128, 0)) << "back to the text that the press has entered";
}

TEST_F(ColorPickerWidgetTest, keysGoThroughThePartsAndMoveThem) {
    widget.SetColor(QColor(255, 0, 0));
    widget.SetRecentColors({Qt::green});
    struct Case {
        Part part;
        int key;
        std::uint32_t modifiers;
        QColor color;
    };
    for (auto const& [part, key, modifiers, color] :
        {Case{Part::Area, Keys::KeyLeft, 4, {255, 25, 25}}, {Part::Area, Keys::KeyHome, 0, {255, 255, 255}},
            {Part::Area, Keys::KeyDown, 0, {252, 252, 252}}, {Part::Area, Keys::KeyEnd, 0, {252, 0, 0}},
            {Part::Area, Keys::KeyPageUp, 0, {255, 0, 0}}, {Part::Hue, Keys::KeyUp, 4, {255, 43, 0}},
            {Part::Hue, Keys::KeyEnd, 0, {255, 0, 0}}, {Part::Hue, Keys::KeyLeft, 0, {255, 0, 4}},
            {Part::Alpha, Keys::KeyLeft, 0, {255, 0, 4, 254}}, {Part::Alpha, Keys::KeyDown, 4, {255, 0, 4, 238}},
            {Part::Alpha, Keys::KeyHome, 0, {255, 0, 4, 0}}, {Part::Recent, Keys::KeyEnd, 0, {255, 0, 4, 0}},
            {Part::Recent, Keys::KeyReturn, 0, {0, 255, 0}}, {Part::Former, Keys::KeySpace, 0, {255, 0, 0}}}) {
        TabTo(part);
        EXPECT_TRUE(Key(key, modifiers));
        EXPECT_EQ(widget.Color(), color) << key << ": " << widget.Color().name(QColor::HexArgb).toStdString();
    }
    EXPECT_THAT(std::vector(widget.RecentColors().begin(), widget.RecentColors().begin() + 3),
        ElementsAre(QColor(255, 0, 0), QColor(0, 255, 0), QColor(255, 0, 4, 0)))
        << "a row of keys counts once";
    TabTo(Part::Hue);
    EXPECT_TRUE(Key(Keys::KeyTab, Keys::ModifierShift));
    EXPECT_FALSE(Key(Keys::KeyTab, Keys::ModifierShift)) << "the next widget's turn";
    EXPECT_EQ(widget.FocusedPart(), Part::Area);
    Event().modifiers = Keys::ModifierShift;
    widget.TabbedInto(*event);
    EXPECT_EQ(widget.FocusedPart(), Part::Recent);
    EXPECT_FALSE(Key(Keys::KeyTab));
    widget.SetAlphaShown(false);
    TabTo(Part::Hue);
    Key(Keys::KeyTab);
    EXPECT_EQ(widget.FocusedPart(), Part::Text);
    widget.SetColor(QColor(9, 9, 9, 128));
    Enter(L"#40112233");
    EXPECT_EQ(widget.Color(), QColor(0x11, 0x22, 0x33, 128)) << "what is not shown stays";
}

TEST_F(ColorPickerWidgetTest, badInputIsRefusedAndTheColourStays) {
    widget.SetColor(QColor(1, 2, 3));
    Enter(L"#12345");
    EXPECT_TRUE(widget.IsTextRefused());
    EXPECT_EQ(widget.HexText(), L"#12345") << "to be corrected";
    EXPECT_EQ(widget.Color(), QColor(1, 2, 3));
    Key(Keys::KeyNone, 0, L"6");
    EXPECT_FALSE(widget.IsTextRefused());
    Key(Keys::KeyTab);
    EXPECT_EQ(widget.Color(), QColor(0x12, 0x34, 0x56));
    Enter(L"rubbish");
    widget.Set(Widget::FlagFocus, false);
    EXPECT_EQ(widget.HexText(), L"#123456");
    EXPECT_FALSE(widget.IsTextRefused());
    EXPECT_EQ(committed.size(), 1U);
}

TEST_F(ColorPickerWidgetTest, randomUseKeepsWhatIsShownTrue) {
    std::mt19937 random(1);
    auto const below = [&](int p_bound) { return static_cast<int>(random() % static_cast<unsigned>(p_bound)); };
    constexpr std::array keys{Keys::KeyTab, Keys::KeyLeft, Keys::KeyRight, Keys::KeyUp, Keys::KeyDown, Keys::KeyHome,
        Keys::KeyEnd, Keys::KeyReturn, Keys::KeySpace, Keys::KeyPageUp, Keys::KeyPageDown, Keys::KeyEscape,
        Keys::KeyBackspace, Keys::KeyDelete};
    QColor told = widget.Color();
    widget.SetChanged([&](QColor const& p_color) { told = p_color; });
    for (int i = 0; i < 20000; ++i) {
        Types::Pos const pos(below(300), below(330)), to(below(300), below(330));
        switch (below(8)) {
        case 0:
            widget.SetAlphaShown(below(2) == 0);
            break;
        case 1:
            widget.SetColor(told = QColor(below(256), below(3) * 127, below(2) * 255, below(256)));
            break;
        case 2:
            widget.Set(Widget::FlagFocus, below(4) > 0);
            break;
        case 3:
            Drag(pos, to, below(4) == 0);
            break;
        case 4:
            Key(Keys::KeyNone, 0, std::wstring(1, L"#0f9Ax"[below(6)]));
            break;
        default:
            Key(keys[static_cast<std::size_t>(below(static_cast<int>(keys.size())))], below(3) == 0 ? 4 : 0);
        }
        QColor const color = widget.Color();
        ASSERT_EQ(color, told) << i;
        ASSERT_EQ(widget.Hsv().Rgb(color.alpha()), color) << i << ": the marks stand for the colour";
        ASSERT_TRUE(widget.Hsv().hue >= 0 && widget.Hsv().hue <= 360) << i;
        QColor const shown = widget.IsAlphaShown() ? color : color.rgb();
        ASSERT_TRUE(widget.FocusedPart() == Part::Text || widget.HexText() == ColorText::Write(shown)) << i;
        std::vector<QColor> recent = widget.RecentColors();
        ASSERT_LE(recent.size(), ColorPickerWidget::MostRecentColors);
        std::sort(recent.begin(), recent.end(), [](auto const& a, auto const& b) { return a.rgba() < b.rgba(); });
        ASSERT_EQ(std::adjacent_find(recent.begin(), recent.end()), recent.end()) << i;
    }
}

TEST(ColorPickerLayoutTest, partsLieApartAtWholePixelsInThePanel) {
    for (float const ratio : {1.0F, 1.25F, 2.0F, 3.3F}) {
        auto const [width, height] = Layout::PreferredSize(ratio, true);
        for (Layout::Rectangle const& panel :
            {Layout::Rectangle(7, 9, static_cast<float>(width), static_cast<float>(height)), {7, 9, 50, 60},
                {0, 0, 900, 20}}) {
            Layout const placed(panel, ratio, true);
            std::vector<Layout::Rectangle> parts{
                placed.area, placed.hue, placed.alpha, placed.former, placed.present, placed.text};
            parts.insert(parts.end(), placed.recent.begin(), placed.recent.end());
            for (std::size_t i = 0; i < parts.size(); ++i) {
                Layout::Rectangle const& part = parts[i];
                EXPECT_EQ(part, part.Clamped(panel)) << i << " leaves the panel";
                EXPECT_EQ(part,
                    (Layout::Rectangle{
                        std::round(part.x), std::round(part.y), std::round(part.width), std::round(part.height)}));
                bool const isPreferred = panel.width == static_cast<float>(width);
                EXPECT_TRUE(!isPreferred || !part.IsEmpty()) << i;
                for (std::size_t k = 0; k < i && isPreferred; ++k)
                    EXPECT_TRUE(part.Clamped(parts[k]).IsEmpty()) << i << " lies on " << k;
            }
        }
    }
}

} // namespace
} // namespace Qor::Chart::Render
