#include "render/core/Registrar.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

namespace Qor::Chart::Render {
namespace {

using ::testing::StartsWith;

TEST(RegistrarTest, updatesAdvanceTheTimeOfAnEntryThatLivesAsLongAsOneOfItsHandles) {
    Registrar registrar;
    Registrar::Key const key(1, 2);
    auto first = registrar.Register(key);
    auto const unique = registrar.RegisterUnique<std::string>();
    Core::TimeStamp fresh, seen;
    EXPECT_FALSE(registrar.GetObject<int>(key, fresh)) << "there is no object yet";
    Core::TimeStamp const before = registrar.Update(key, 10);
    Core::TimeStamp const after = registrar.Update(key, 20);
    auto second = registrar.Register(key);
    first.reset();
    EXPECT_EQ(registrar.GetObject<int>(key, seen), 20);
    EXPECT_EQ(seen, after);
    EXPECT_TRUE(Core::TimeStamp() < fresh && fresh < before && before < after);
    EXPECT_FALSE(registrar.GetObject<std::string>(key, seen)) << "an object of another type";
    second.reset();
    EXPECT_FALSE(registrar.GetObject<int>(key, seen));
    registrar.UpdateUnique<std::string>("one");
    EXPECT_EQ(registrar.GetUnique<std::string>(seen), std::string("one"));

    qordebug::CaptureScope log(Utility::GetLogger());
    EXPECT_EQ(registrar.Update(key, 6), Core::TimeStamp());
    registrar.UpdateUnique(7);
    EXPECT_THAT(log.texts(),
        ::testing::ElementsAre(
            StartsWith("\"it != _state->keyMaps->end()\" - "), StartsWith("\"it != _state->typeMaps->end()\" - ")));
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
    }
    EXPECT_EQ(object.use_count(), 2);
    outer.reset();
    EXPECT_EQ(object.use_count(), 1);
}

} // namespace
} // namespace Qor::Chart::Render
