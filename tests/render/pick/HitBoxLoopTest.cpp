#include "render/pick/HitBoxLoop.h"

#include "tests/render/pick/HitFixture.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace Qor::Chart::Render {
namespace {

using ::testing::HasSubstr;

struct HitBoxLoopTest : ::testing::Test, Fixtures::HitFixture {};

/// Who is found, and in which order, is compared with the geometry of random scenes.
TEST_F(HitBoxLoopTest, failuresAndChangesAreReported) {
    auto const failing = Make("failing");
    failing->actions['!'] = failing->actions['?'] = [&](DrawContext const&) {
        failing->Touch();
        throw std::runtime_error("no way");
    };
    Make("next")->depths = {.5};
    qordebug::CaptureScope log(Utility::GetLogger(), {""});
    for (char const* const function : {"HitBoxLoop::HitOverlay(", "HitBoxLoop::HitBase("}) {
        BoxSelection const box({}, {10, 10, 50, 50}, false, BoxSelection::Operation::Replace);
        EXPECT_EQ(Text(HitBoxLoop()(root, context, box, visited, tested)), "next@");
        EXPECT_THAT(dispatcher.locations.back(), HasSubstr(function));
        EXPECT_EQ(log.texts("").back(), "Graph modified during a hit detect.");
        failing->actions.erase('!');
        failing->Touch();
    }
    EXPECT_EQ(log.texts("").size() + dispatcher.locations.size(), 4U);
    ExpectRestored();
}

} // namespace
} // namespace Qor::Chart::Render
