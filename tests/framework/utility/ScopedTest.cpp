#include "framework/utility/Scoped.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Exception.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using Qor::Chart::Utility::Scoped;
using Qor::Chart::Utility::Unscoped;

struct Device {
    void EnterScope() {
        if (failEnter) {
            throw std::runtime_error("lost");
        }
        ++depth;
    }
    void LeaveScope() {
        --depth;
        if (failLeave) {
            throw std::runtime_error("lost");
        }
    }
    int depth = 0;
    bool failEnter = false;
    bool failLeave = false;
};

TEST(ScopedTest, scopesNestAndBalance) {
    Device device;
    Unscoped<Device> const handle(device);
    {
        Scoped<Device> const outer(handle);
        Scoped<Device> const inner(outer.Handle());
        EXPECT_EQ(inner->depth, 2);
        EXPECT_EQ(&*inner, handle.Get());
    }
    EXPECT_EQ(device.depth, 0);
}

TEST(ScopedTest, anEmptyHandleThrowsASentence) {
    Unscoped<Device> const empty;
    EXPECT_FALSE(empty);
    try {
        Scoped<Device> const scope(empty);
        FAIL();
    } catch (Qor::Chart::Utility::Exception const& failure) {
        EXPECT_THAT(failure.what(), testing::HasSubstr("Device to use: the handle is empty"));
    }
}

TEST(ScopedTest, failuresAtTheEdgesKeepTheBalance) {
    Device device;
    Unscoped<Device> const handle(device);
    device.failEnter = true;
    EXPECT_THROW(Scoped<Device>{handle}, std::runtime_error);
    EXPECT_EQ(device.depth, 0);
    device.failEnter = false;
    device.failLeave = true;
    qordebug::CaptureScope const capture(Qor::Chart::Utility::GetLogger());
    { Scoped<Device> const scope(handle); }
    EXPECT_EQ(device.depth, 0);
    EXPECT_TRUE(capture.contains("Device failed: lost"));
}

} // namespace
