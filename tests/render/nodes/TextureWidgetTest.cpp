#include "render/nodes/TextureWidget.h"

#include "tests/render/DrawFixture.h"
#include "framework/qordebug/highrestimer.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Render {
namespace {

/// How it looks otherwise is seen in pictures of buttons and toolbars.
TEST(TextureWidgetTest, fadesWhenAnimatedAndThenLetsTheWindowSleep) {
    qordebug::manualclock clock;
    Fixtures::DrawFixture draw;
    Utility::Scoped<Ogl::Agl> agl(draw.handle);
    agl->Viewport({0, 0, 100, 100});
    QImage image(4, 4, QImage::Format_RGBA8888);
    image.fill(Qt::white);
    TextureWidget widget(std::make_shared<Library::Texture>(image, agl));
    widget.SetRectangle({10, 20, 16, 16});
    DrawContext const context = draw.MakeContext(DrawContext::DrawMode::Highlight);
    auto const alpha = [&] {
        draw.dispatcher.redraws.clear();
        agl->BeginFrame();
        widget.Draw(context);
        agl->EndFrame();
        auto const& commands = draw.Backend().Commands();
        return commands.empty() ? 0.0F : commands[0].vertices.at(0).color.alpha;
    };
    widget.Set(Widget::FlagShown, true);
    EXPECT_EQ(alpha(), 1.0F);
    widget.Set(Widget::FlagAnimated, true);
    widget.Set(Widget::FlagShown, false);
    clock.advance(150);
    EXPECT_NEAR(alpha(), 0.5, 0.01);
    EXPECT_THAT(draw.dispatcher.redraws, ::testing::ElementsAre(41));
    clock.advance(150);
    EXPECT_EQ(alpha(), 0.0F);
    EXPECT_TRUE(draw.dispatcher.redraws.empty());
}

} // namespace
} // namespace Qor::Chart::Render
