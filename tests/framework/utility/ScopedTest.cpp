#include "framework/utility/Scoped.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Exception.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

struct Device {
    void EnterScope() { depth += fails ? throw std::runtime_error("lost") : 1; }
    void LeaveScope() {
        --depth;
        if (fails)
            throw std::runtime_error("lost");
    }
    int depth = 0;
    bool fails = false;
};
using Scoped = Qor::Chart::Utility::Scoped<Device>;

TEST(ScopedTest, scopesNestAndBalanceWhateverFailsAtTheirEdges) {
    Device device;
    Qor::Chart::Utility::Unscoped<Device> const handle(device);
    qordebug::CaptureScope const capture(Qor::Chart::Utility::GetLogger());
    {
        Scoped const outer(handle);
        EXPECT_EQ(Scoped(outer.Handle())->depth, 2);
        EXPECT_TRUE(capture.empty());
        device.fails = true;
        EXPECT_THROW(Scoped{handle}, std::runtime_error);
        EXPECT_EQ(device.depth, 1);
    }
    EXPECT_EQ(device.depth, 0);
    EXPECT_TRUE(capture.contains("Device failed: lost"));
}

TEST(ScopedTest, anEmptyHandleThrowsASentence) {
    try {
        Scoped const scope{{}};
        FAIL();
    } catch (Qor::Chart::Utility::Exception const& failure) {
        EXPECT_THAT(failure.what(), testing::HasSubstr("Device to use: the handle is empty"));
    }
}

} // namespace
