#include "host/InputDispatcher.h"
#include "host/Offscreen.h"

#include "framework/model/Pane.h"
#include "framework/model/TextBox.h"
#include "framework/ogl/Context.h"
#include "render/events/EventInformation.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace Qor::Chart::Host {
namespace {

TEST(TextBoxPictureTest, fieldsShowFocusSelectionAndCaretInsideTheirFrames) {
    std::optional<Offscreen> picture;
    try {
        picture.emplace(Types::Size(160, 80), 0);
    } catch (Ogl::ContextError const& error) {
        GTEST_SKIP() << error.what();
    }
    auto const pane = Core::MakeNode<Model::Pane>();
    pane->SetBackgroundColor(Qt::black); // no text could be read on that
    for (int i = 0; i < 2; ++i) {
        // Blocks fill the height of the line, or nearly: 30 of them are wider than the field.
        auto const box = Core::MakeNode<Model::TextBox>(
            i == 0 ? std::wstring(30, L'\u2588') : std::wstring(), Model::TextBox::Mode::Editable);
        box->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 10});
        box->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Bottom, 10.0 + 40 * i});
        box->SetWidth(100);
        box->SetHeight(22);
        pane->Add(box);
    }
    picture->GetScene().Add(pane);
    picture->Frame();
    InputDispatcher input(picture->GetScene());
    input.SetView(picture->GetCamera(), picture->Viewport());
    input.KeyPressed(Render::EventInformation::KeyTab);
    input.KeyPressed(Render::EventInformation::KeyHome);
    QImage const left = picture->Render();
    input.KeyPressed(Render::EventInformation::KeyEnd);
    QImage const right = picture->Render();
    for (int i = 0; i < 2; ++i)
        input.KeyPressed(Render::EventInformation::KeySpace, 0, L" ");
    picture->Frame();
    for (int i = 0; i < 2; ++i)
        input.KeyPressed(Render::EventInformation::KeyLeft, Render::EventInformation::ModifierShift);
    QImage const selected = picture->Render();

    struct Sample {
        QImage const& image;
        int x, y; ///< from the lower left corner
        QColor color;
    };
    Types::Schema const schema;
    QColor const blank = Qt::white;
    QColor const ink = schema.textColor;
    for (Sample const& sample :
        {
            Sample{left, 9, 21, Qt::black}, {left, 10, 21, schema.selectionColor},
            {left, 11, 21, schema.selectionColor}, {left, 13, 21, blank}, {left, 60, 21, ink}, {left, 104, 21, ink},
            {left, 107, 21, blank}, {left, 60, 31, schema.selectionColor}, {left, 60, 33, Qt::black}, // the frame above
            {left, 10, 61, schema.borderColor}, {left, 11, 61, blank}, {left, 15, 61, blank}, // no focus, no caret
            {right, 16, 21, ink}, {right, 104, 21, ink},
            {right, 107, 21, blank}, // scrolled, the caret at the right end
            {selected, 101, 21, QColor(165, 204, 243)}, // a selected blank
        }) {
        QColor const color = sample.image.pixelColor(sample.x, sample.image.height() - 1 - sample.y);
        int const difference = std::max({std::abs(color.red() - sample.color.red()),
            std::abs(color.green() - sample.color.green()), std::abs(color.blue() - sample.color.blue())});
        EXPECT_LE(difference, 4) << sample.x << ", " << sample.y << ": " << color.name().toStdString();
    }
}

} // namespace
} // namespace Qor::Chart::Host
