#include "tests/host/PictureTest.h"

#include "host/Picker.h"
#include "render/events/EventInformation.h"
#include "framework/model/Bitmap.h"
#include "framework/model/ColorPicker.h"
#include "framework/model/Events.h"
#include "framework/model/ImageButton.h"
#include "framework/model/Legend.h"
#include "framework/model/SelectionList.h"
#include "framework/model/Statistics.h"
#include "framework/model/TextBox.h"
#include "framework/model/Toolbar.h"
#include "framework/ogl/HitRecord.h"

#include <gmock/gmock.h>

#include <array>
#include <filesystem>

namespace Qor::Chart::Host {
namespace {

using Keys = Render::EventInformation;
using ::testing::ElementsAre;

using WidgetPictureTest = PictureTest;

/// The panel lies from (10, 20) to (230, 264): see the layout for its parts.
TEST_F(WidgetPictureTest, aColourPickerShowsAndChangesTheColourOfItsTarget) {
    auto const picker = Core::MakeNode<Model::ColorPicker>();
    auto const object = Core::MakeNode<Model::SimpleObject>();
    object->SetColor(QColor(0, 0, 255, 51));
    picker->SetTarget(object, Model::SimpleObject::ColorProperty);
    picker->SetRecentColors({Qt::green});
    Place(*picker, 10, 20);
    std::vector<QColor> picked;
    auto const connection = picker->Delegate().Connect<Model::Events::ColorPickedArgs>(
        [&](Model::Events::ColorPickedArgs const& p_event) { picked.push_back(p_event.Color()); });
    Show(picker);
    ExpectColors({
        {9, 100, Qt::black}, {10, 100, schema.borderColor}, {15, 100, schema.titleColor}, // the edge of the panel
        {22, 252, QColor(247, 247, 251)}, {120, 187, QColor(61, 61, 123)}, {218, 126, QColor(0, 0, 5)}, // the area
        {22, 107, QColor(255, 16, 0)}, {86, 107, QColor(0, 255, 0)}, {153, 107, Qt::white}, // hue and its mark
        {120, 86, QColor(102, 102, 230)}, {120, 90, QColor(127, 127, 255)}, // checks below the alpha
        {218, 87, QColor(3, 3, 255)}, {28, 38, Qt::green}, {48, 38, schema.titleColor}, // and a free place for a colour
    });
    Drag({119, 187}, {1000, 1000});
    EXPECT_EQ(object->Color(), QColor(0, 0, 255, 51));
    Drag({120, 87}, {20, 87});
    EXPECT_EQ(object->Color(), QColor(0, 0, 255, 0));
    Drag({119, 187}, {20, 1000});
    EXPECT_EQ(object->Color(), QColor(255, 255, 255, 0));
    EXPECT_THAT(picked, ElementsAre(QColor(0, 0, 255, 0), QColor(255, 255, 255, 0)));
    EXPECT_THAT(picker->RecentColors(), ElementsAre(picked[1], picked[0], Qt::green));
    input->KeyPressed(Keys::KeyDown, Keys::ModifierShift);
    EXPECT_EQ(object->Color(), QColor(230, 230, 230, 0)) << "by keys, without the pointer over it";
    object->SetColor(Qt::yellow);
    EXPECT_EQ(picker->Color(), QColor(230, 230, 230, 0)) << "the target does not lead";
    picker->SetTarget(Core::Ptr<Model::SimpleObject>(), Model::SimpleObject::ColorProperty);
    picker->SetColor(Qt::red);
    EXPECT_EQ(object->Color(), QColor(Qt::yellow));
}

/// The button lies from (50, 100) to (90, 120).
TEST_F(WidgetPictureTest, aButtonAloneShowsHowItsActionIsAndExecutesIt) {
    auto const button = Core::MakeNode<Model::ImageButton>("button", L"\u2588\u2588");
    int done = 0;
    button->GetAction()->SetExecute([&] { ++done; });
    Place(*button, 50, 100);
    button->SetWidth(40);
    button->SetHeight(20);
    Show(button);
    ExpectColors({{49, 110, Qt::black}, {50, 110, schema.borderColor}, {54, 110, schema.titleColor},
        {70, 110, schema.textColor}, {89, 110, schema.borderColor}, {90, 110, Qt::black}});

    input->PointerMoved({55, 110});
    ExpectColors({{50, 110, schema.highlightColor}, {54, 110, QColor(211, 197, 168)}, {60, 90, Qt::black}});
    Click({55, 110});
    Drag({55, 110}, {88, 118});
    Drag({55, 110}, {95, 110});
    EXPECT_EQ(done, 2) << "not when let go outside";
    button->SetCheckable(true);
    Click({88, 118});
    EXPECT_TRUE(button->GetAction()->IsChecked());
    input->PointerMoved({5, 5});
    Frame();
    input->KeyPressed(Keys::KeySpace);
    EXPECT_FALSE(button->GetAction()->IsChecked());
    EXPECT_EQ(done, 4);

    button->GetAction()->SetEnabled(false);
    Click({55, 110});
    input->KeyPressed(Keys::KeyReturn);
    EXPECT_EQ(done, 4);
    ExpectColors({{50, 110, schema.borderColor}, {54, 110, schema.titleColor}, {70, 110, schema.disabledColor}});
    button->GetAction()->SetImageFile("/no/such/file.png");
    Frame();
    EXPECT_EQ(picture->GetScene().Dispatcher().Reports().size(), 1U);
    button->SetAction({});
    Click({55, 110});
    button->SetVisible(false);
    Click({55, 110});
    ExpectColors({{54, 110, Qt::black}});
}

TEST_F(WidgetPictureTest, toolbarButtonsShowHowTheirActionsAre) {
    Make({120, 60});
    auto const bar = Core::MakeNode<Model::Toolbar>();
    bar->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 10});
    bar->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Top, 5});
    for (wchar_t const* const label : {L"", L"", L"", L"\u2588\u2588\u2588"})
        bar->Add(Core::MakeNode<Model::Action>("action", label));
    auto const actions = bar->Actions();
    actions[0]->SetChecked(true);
    actions[2]->SetChecked(true);
    actions[2]->SetEnabled(false);
    Show(bar);
    input->PointerMoved({46, 45});
    ExpectColors({
        {9, 45, Qt::black}, {10, 45, schema.borderColor}, {11, 45, schema.titleColor}, // the left end
        {28, 56, Qt::black}, {28, 54, schema.borderColor}, {28, 53, schema.titleColor}, // the upper side
        {13, 45, schema.borderColor}, {15, 45, schema.titleColor}, {16, 45, schema.borderColor}, // the handle
        {20, 45, schema.selectionColor}, {28, 45, QColor(128, 173, 220)}, {35, 45, schema.selectionColor},
        {38, 45, schema.highlightColor}, {46, 45, QColor(211, 197, 168)}, // hovered
        {56, 45, schema.disabledColor}, {64, 45, QColor(185, 191, 199)}, // checked and disabled
        {84, 45, schema.textColor}, // the label
    });
}

TEST_F(WidgetPictureTest, fieldsShowFocusSelectionAndCaretInsideTheirFrames) {
    Make({160, 80});
    for (int i = 0; i < 2; ++i) {
        // Blocks fill the height of the line, or nearly: 30 of them are wider than the field.
        auto const box = Core::MakeNode<Model::TextBox>(
            i == 0 ? std::wstring(30, L'\u2588') : std::wstring(), Model::TextBox::Mode::Editable);
        Place(*box, 10, 10.0 + 40 * i);
        box->SetWidth(100);
        box->SetHeight(22);
        pane->Add(box);
    }
    picture->GetScene().Add(pane);
    Frame();
    QColor const blank = Qt::white, ink = schema.textColor, focus = schema.selectionColor;
    input->KeyPressed(Keys::KeyTab);
    input->KeyPressed(Keys::KeyHome);
    ExpectColors({{9, 21, Qt::black}, {10, 21, focus}, {11, 21, focus}, {13, 21, blank}, {60, 21, ink}, {104, 21, ink},
        {107, 21, blank}, {60, 31, focus}, {60, 33, Qt::black}, // the frame above
        {10, 61, schema.borderColor}, {11, 61, blank}, {15, 61, blank}}); // no focus, no caret
    input->KeyPressed(Keys::KeyEnd);
    ExpectColors({{16, 21, ink}, {104, 21, ink}, {107, 21, blank}}); // scrolled, the caret at the right end
    for (int i = 0; i < 2; ++i)
        input->KeyPressed(Keys::KeySpace, 0, L" ");
    Frame();
    for (int i = 0; i < 2; ++i)
        input->KeyPressed(Keys::KeyLeft, Keys::ModifierShift);
    ExpectColors({{101, 21, QColor(165, 204, 243)}}); // a selected blank
}

TEST_F(WidgetPictureTest, swatchesOfALegendShowWhatTheirEntriesStandFor) {
    Make({240, 200});
    auto const legend = Core::MakeNode<Model::Legend>();
    auto const hidden = Core::MakeNode<Model::Symbol>();
    hidden->SetVisible(false);
    legend->SetBackgroundColor(QColor(Qt::white));
    legend->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 10});
    legend->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Top, 5});
    auto const add = [&](QColor const& p_color, Model::LegendSwatch p_swatch) {
        auto const entry = Core::MakeNode<Model::LegendEntry>();
        entry->SetColor(p_color);
        entry->SetSwatch(p_swatch);
        legend->Add(entry);
        return entry;
    };
    using enum Model::LegendSwatch;
    add(Qt::red, Color);
    add(Qt::green, Color)->SetTarget(hidden);
    add(Qt::red, Line);
    add(Qt::blue, Point);
    add(Qt::blue, Symbol)->SetSymbol(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Sphere));
    add(Qt::blue, ColorMap)->SetColorMap("viridis");
    Show(legend);

    /// For each entry, the heights at which the pointer finds it.
    std::array<std::vector<int>, 6> heights;
    for (int y = 0; y < 200; ++y) {
        auto const hits = Picker(picture->GetScene()).Pick(picture->GetCamera(), picture->Viewport(), {{20, y}, {}});
        std::uint64_t const name = hits.empty() ? 0 : hits.front().result.records.front().name;
        if (name >= Ogl::HitRecord::NameFirst)
            heights.at(name - Ogl::HitRecord::NameFirst).push_back(y);
    }
    auto const middleOf = [&](std::size_t p_entry) { return heights[p_entry].at(heights[p_entry].size() / 2); };
    input->PointerMoved({60, middleOf(2)});
    QImage const image = picture->Render();
    QColor const lit(255, 233, 195);
    ExpectSamples(image,
        {
            {9, middleOf(0), Qt::black}, {10, middleOf(0), schema.borderColor}, {12, middleOf(0), Qt::white}, // frame
            {20, middleOf(0), Qt::red}, {50, middleOf(0), Qt::white}, {20, middleOf(1), QColor(178, 255, 178)}, // faint
            {20, middleOf(2), Qt::red}, {20, middleOf(2) + 5, lit}, {60, middleOf(2), lit}, // under the pointer
            {25, middleOf(3), Qt::blue}, {18, middleOf(3), Qt::white}, // round
        });
    QColor const sphere = ColorAt(image, 25, middleOf(4));
    EXPECT_TRUE(sphere.blue() > 150 && sphere.red() < 30) << sphere.name().toStdString();
    int first = 0, last = 0;
    for (int x = 0; x < 240; ++x) {
        for (int const y : heights[5]) {
            first = first == 0 && AreAlike(ColorAt(image, x, y), QColor(68, 1, 84)) ? x : first;
            last = AreAlike(ColorAt(image, x, y), QColor(253, 231, 37)) ? x : last;
        }
    }
    EXPECT_EQ(first, 17) << "inside the frame of the bar";
    EXPECT_GT(last, first + 100);
}

TEST_F(WidgetPictureTest, bitmapsFitIntoTheWindowInTheirOwnProportions) {
    std::string const file = (std::filesystem::path(::testing::TempDir()) / "qor-bitmap-picture.png").string();
    QImage image(200, 100, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (int x = 0; x < 100; ++x)
        for (int y = 0; y < 50; ++y)
            image.setPixelColor(x, y, Qt::green);
    image.save(QString::fromStdString(file));
    auto const bitmap = Core::MakeNode<Model::Bitmap>();
    bitmap->SetImageFile(file);
    for (auto const& [size, samples] :
        {std::pair(Types::Size(100, 100),
             std::vector<Sample>{{50, 23, Qt::black}, {2, 27, Qt::red}, {97, 72, Qt::red}, {2, 72, Qt::green},
                 {47, 52, Qt::green}, {50, 76, Qt::black}}),
            {Types::Size(400, 100),
                {{98, 50, Qt::black}, {102, 2, Qt::red}, {297, 97, Qt::red}, {102, 97, Qt::green},
                    {302, 50, Qt::black}}}}) {
        Make(size);
        Show(bitmap);
        ExpectColors(samples);
    }
}

TEST_F(WidgetPictureTest, figuresStandOnAGroundThatLetsThemBeRead) {
    auto const statistics = Core::MakeNode<Model::Statistics>();
    statistics->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 20});
    Make({300, 400});
    picture->GetScene().Schema().textColor = Qt::black;
    Show(statistics);
    QColor const ground(232, 232, 232), frame(116, 116, 116);
    ExpectColors({{19, 50, Qt::black}, {20, 50, frame}, {22, 50, ground}, {50, 9, Qt::black}, {50, 10, frame},
        {50, 12, ground}});
}

TEST_F(WidgetPictureTest, theSelectedSymbolAloneIsLit) {
    Make({160, 80});
    auto const list = Core::MakeNode<Model::SelectionList>();
    Scene& shown = picture->GetScene();
    std::vector<Core::Ptr<Model::ModelNode>> cubes;
    for (double const x : {-1.0, 1.0}) {
        cubes.push_back(MakeShape(Model::SymbolShape::Cube, QColor(120, 120, 120), {x, 0, 0}));
        shown.Add(cubes.back());
    }
    shown.Add(list);
    picture->GetCamera().Look(0, 0);
    picture->GetCamera().Fit({{-2, -1, -1}, {2, 1, 1}}, picture->Viewport());
    auto const color = [&](int p_x) { return picture->Render().pixelColor(p_x, 40); };
    picture->Frame();
    QColor const plain = color(40);
    for (std::size_t const selected : {0U, 1U}) {
        list->Replace({cubes[selected]});
        picture->Frame();
        QColor const lit = color(selected == 0 ? 40 : 120);
        EXPECT_GT(lit.blue() - lit.red(), 60) << "towards the colour of the selection";
        EXPECT_EQ(color(selected == 0 ? 120 : 40), plain);
    }
    shown.Model()->Remove(*list);
    picture->Frame();
    EXPECT_EQ(color(120), plain) << "a list that leaves takes its selection along";
}

} // namespace
} // namespace Qor::Chart::Host
