#include "host/InputDispatcher.h"
#include "host/Offscreen.h"

#include "framework/model/Pane.h"
#include "framework/model/Toolbar.h"
#include "framework/ogl/Context.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace Qor::Chart::Host {
namespace {

TEST(ToolbarPictureTest, buttonsShowHowTheirActionsAre) {
    std::optional<Offscreen> picture;
    try {
        picture.emplace(Types::Size(120, 60), 0);
    } catch (Ogl::ContextError const& error) {
        GTEST_SKIP() << error.what();
    }
    auto const pane = Core::MakeNode<Model::Pane>();
    auto const bar = Core::MakeNode<Model::Toolbar>();
    pane->SetBackgroundColor(Qt::black);
    bar->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 10});
    bar->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Top, 5});
    for (wchar_t const* const label : {L"", L"", L"", L"\u2588\u2588\u2588"})
        bar->Add(Core::MakeNode<Model::Action>("action", label));
    auto const actions = bar->Actions();
    actions[0]->SetChecked(true);
    actions[2]->SetChecked(true);
    actions[2]->SetEnabled(false);
    pane->Add(bar);
    picture->GetScene().Add(pane);
    picture->Frame();
    InputDispatcher input(picture->GetScene());
    input.SetView(picture->GetCamera(), picture->Viewport());
    input.PointerMoved({46, 45});
    QImage const image = picture->Render();

    struct Sample {
        int x, y; ///< from the lower left corner
        QColor color;
    };
    Types::Schema const schema;
    for (Sample const& sample : {
             Sample{9, 45, Qt::black}, {10, 45, schema.borderColor}, {11, 45, schema.titleColor}, // the left end
             {28, 56, Qt::black}, {28, 54, schema.borderColor}, {28, 53, schema.titleColor}, // the upper side
             {13, 45, schema.borderColor}, {15, 45, schema.titleColor}, {16, 45, schema.borderColor}, // the handle
             {20, 45, schema.selectionColor}, {28, 45, QColor(128, 173, 220)}, {35, 45, schema.selectionColor},
             {38, 45, schema.highlightColor}, {46, 45, QColor(211, 197, 168)}, // hovered
             {56, 45, schema.disabledColor}, {64, 45, QColor(185, 191, 199)}, // checked and disabled
             {84, 45, schema.textColor}, // the label
         }) {
        QColor const color = image.pixelColor(sample.x, image.height() - 1 - sample.y);
        int const difference = std::max({std::abs(color.red() - sample.color.red()),
            std::abs(color.green() - sample.color.green()), std::abs(color.blue() - sample.color.blue())});
        EXPECT_LE(difference, 4) << sample.x << ", " << sample.y << ": " << color.name().toStdString();
    }
}

} // namespace
} // namespace Qor::Chart::Host
