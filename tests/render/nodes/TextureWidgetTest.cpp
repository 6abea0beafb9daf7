#include "render/nodes/TextureWidget.h"

#include "tests/render/DrawFixture.h"
#include "framework/qordebug/highrestimer.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Render {
namespace {

using Types::Color4f;

/// How it looks otherwise is seen in pictures of buttons and toolbars.
TEST(TextureWidgetTest, fadesWhenAnimated) {
    qordebug::manualclock clock;
    Fixtures::DrawFixture draw;
    Utility::Scoped<Ogl::Agl> agl(draw.handle);
    agl->Viewport({0, 0, 100, 100});
    QImage image(4, 4, QImage::Format_RGBA8888);
    image.fill(Qt::white);
    TextureWidget widget(std::make_shared<Library::Texture>(image, agl));
    widget.SetRectangle({10, 20, 16, 16});
    DrawContext const context = draw.MakeContext(DrawContext::DrawMode::Highlight);
    auto const colors = [&] {
        draw.dispatcher.redraws.clear();
        agl->BeginFrame();
        widget.Draw(context);
        agl->EndFrame();
        std::vector<Color4f> result;
        for (Ogl::RecordedCommand const& command : draw.Backend().Commands())
            result.push_back(command.vertices.at(0).color);
        return result;
    };
    widget.Set(Widget::FlagShown, true);
    EXPECT_EQ(colors(), std::vector{Color4f(1, 1, 1)}) << "the image as it is";
    widget.Set(Widget::FlagAnimated, true);
    widget.Set(Widget::FlagShown, false);
    clock.advance(150);
    EXPECT_NEAR(colors().at(0).alpha, 0.5, 0.01);
    EXPECT_THAT(draw.dispatcher.redraws, ::testing::ElementsAre(41));
    clock.advance(150);
    EXPECT_EQ(colors(), std::vector<Color4f>());
    EXPECT_TRUE(draw.dispatcher.redraws.empty());
    widget.Set(Widget::FlagShown, true);
    draw.capabilities.animations = false;
    EXPECT_EQ(colors(), std::vector{Color4f(1, 1, 1)});
}

} // namespace
} // namespace Qor::Chart::Render
