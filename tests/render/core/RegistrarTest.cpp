#include "render/core/Registrar.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace Qor::Chart::Render {
namespace {

using ::testing::StartsWith;

TEST(RegistrarTest, everyUpdateAdvancesTheTimeThatReadersSee) {
    Registrar registrar;
    Registrar::Key const key(1, 2);
    auto const handle = registrar.Register(key);
    Core::TimeStamp fresh;
    EXPECT_FALSE(registrar.GetObject<int>(key, fresh)) << "there is no object yet";
    EXPECT_NE(fresh, Core::TimeStamp());
    Core::TimeStamp const first = registrar.Update(key, 10);
    Core::TimeStamp const second = registrar.Update(key, 20);
    Core::TimeStamp seen;
    EXPECT_EQ(registrar.GetObject<int>(key, seen), 20);
    EXPECT_EQ(seen, second);
    EXPECT_TRUE(fresh < first && first < second);
    EXPECT_FALSE(registrar.GetObject<std::string>(key, seen)) << "an object of another type";

    auto const unique = registrar.RegisterUnique<std::string>();
    Core::TimeStamp const stamp = registrar.UpdateUnique<std::string>("one");
    EXPECT_EQ(registrar.GetUnique<std::string>(seen), std::string("one"));
    EXPECT_EQ(seen, stamp);
}

TEST(RegistrarTest, entryLivesAsLongAsOneOfItsHandles) {
    Registrar registrar;
    Registrar::Key const key(1, 2);
    auto first = registrar.Register(key);
    registrar.Update(key, 5);
    auto second = registrar.Register(key);
    first.reset();
    Core::TimeStamp stamp;
    EXPECT_EQ(registrar.GetObject<int>(key, stamp), 5);
    second.reset();
    Core::TimeStamp const before = stamp;
    EXPECT_FALSE(registrar.GetObject<int>(key, stamp));
    EXPECT_EQ(stamp, before);

    qordebug::CaptureScope log(Utility::GetLogger());
    EXPECT_EQ(registrar.Update(key, 6), Core::TimeStamp());
    registrar.UpdateUnique(7);
    ASSERT_EQ(log.texts().size(), 2U);
    EXPECT_THAT(log.texts()[0], StartsWith("\"it != _state->keyMaps->end()\" - "));
    EXPECT_THAT(log.texts()[1], StartsWith("\"it != _state->typeMaps->end()\" - "));
}

/// A handle outlives its registrar, and an object that holds the last handle of another entry, or its own, can go.
TEST(RegistrarTest, handlesMayOutliveTheRegistrarAndBeObjectsThemselves) {
    auto const object = std::make_shared<int>(1);
    Registrar::Handle outer;
    {
        Registrar registrar;
        outer = registrar.Register({1, 1});
        auto inner = registrar.Register({2, 2});
        registrar.Update({2, 2}, object);
        registrar.Update({1, 1}, inner);
        inner.reset();
        EXPECT_EQ(object.use_count(), 2);
    }
    EXPECT_EQ(object.use_count(), 2);
    outer.reset();
    EXPECT_EQ(object.use_count(), 1);
}

} // namespace
} // namespace Qor::Chart::Render
