#include "host/InputDispatcher.h"
#include "host/Offscreen.h"

#include "render/events/EventInformation.h"
#include "framework/model/ColorPicker.h"
#include "framework/model/Events.h"
#include "framework/model/ImageButton.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/Context.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace Qor::Chart::Host {
namespace {

using Keys = Render::EventInformation;
using ::testing::ElementsAre;

/// A pane of 300 by 300 pixels with widgets in it, with real pixels where the machine has OpenGL.
struct WidgetPictureTest : ::testing::Test {
    WidgetPictureTest() {
        try {
            picture.emplace(Types::Size(300, 300), 0);
        } catch (Ogl::ContextError const&) {
            picture.emplace(Types::Size(300, 300), 0, Offscreen::Device::Recorder);
        }
        picture->GetScene().Capabilities().animations = false;
        pane->SetBackgroundColor(Qt::black);
        picture->GetScene().Add(pane);
        input.emplace(picture->GetScene());
    }
    void Frame() {
        picture->Frame();
        input->SetView(picture->GetCamera(), picture->Viewport());
        input->FrameDone();
    }
    void Drag(Types::Pos const& p_from, Types::Pos const& p_to) {
        Frame();
        input->PointerMoved(p_from);
        input->PointerPressed(p_from);
        input->PointerMoved(p_to);
        input->PointerReleased(p_to);
        Frame();
    }
    void Click(Types::Pos const& p_pos) { Drag(p_pos, p_pos); }

    struct Sample {
        int x, y; ///< from the lower left corner
        QColor color;
    };
    void ExpectColors(std::vector<Sample> const& p_samples) {
        QImage const image = picture->Render();
        for (auto const& [x, y, expected] : p_samples) {
            if (image.isNull())
                return;
            QColor const color = image.pixelColor(x, image.height() - 1 - y);
            int const difference = std::max({std::abs(color.red() - expected.red()),
                std::abs(color.green() - expected.green()), std::abs(color.blue() - expected.blue())});
            EXPECT_LE(difference, 4) << x << ", " << y << ": " << color.name().toStdString();
        }
    }

    std::optional<Offscreen> picture;
    std::optional<InputDispatcher> input;
    Core::Ptr<Model::Pane> pane = Core::MakeNode<Model::Pane>();
    Types::Schema const schema;
};

/// The panel lies from (10, 20) to (230, 264): see the layout for its parts.
TEST_F(WidgetPictureTest, aColourPickerShowsAndChangesTheColourOfItsTarget) {
    auto const picker = Core::MakeNode<Model::ColorPicker>();
    auto const object = Core::MakeNode<Model::SimpleObject>();
    object->SetColor(QColor(0, 0, 255, 51));
    picker->SetTarget(object, Model::SimpleObject::ColorProperty);
    picker->SetRecentColors({Qt::green});
    picker->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 10});
    picker->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Bottom, 20});
    pane->Add(picker);
    std::vector<QColor> picked;
    auto const connection = picker->Delegate().Connect<Model::Events::ColorPickedArgs>(
        [&](Model::Events::ColorPickedArgs const& p_event) { picked.push_back(p_event.Color()); });
    Frame();
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
    EXPECT_FALSE(picker->SetColor(QColor()));
    EXPECT_FALSE(picker->SetRecentColors(std::vector<QColor>(11, Qt::red)));
    picker->SetTarget(Core::Ptr<Model::SimpleObject>(), Model::SimpleObject::ColorProperty);
    picker->SetColor(Qt::red);
    EXPECT_EQ(object->Color(), QColor(Qt::yellow));
}

/// The button lies from (50, 100) to (90, 120).
TEST_F(WidgetPictureTest, aButtonAloneShowsHowItsActionIsAndExecutesIt) {
    auto const button = Core::MakeNode<Model::ImageButton>("button", L"\u2588\u2588");
    int done = 0;
    button->GetAction()->SetExecute([&] { ++done; });
    button->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 50});
    button->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Bottom, 100});
    EXPECT_TRUE(button->SetWidth(40) && button->SetHeight(20));
    EXPECT_FALSE(button->SetWidth(std::numeric_limits<double>::quiet_NaN()) || button->SetHeight(-1));
    pane->Add(button);
    Frame();
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
    ExpectColors({{70, 110, schema.disabledColor}});
    button->SetAction({});
    Click({55, 110});
    button->SetVisible(false);
    Click({55, 110});
    ExpectColors({{54, 110, Qt::black}});
}

} // namespace
} // namespace Qor::Chart::Host
