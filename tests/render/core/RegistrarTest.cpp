#include "render/core/Registrar.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace Qor::Chart::Render {
namespace {

TEST(RegistrarTest, updatesAdvanceTheTimeOfAnEntryThatLivesAsLongAsOneOfItsHandles) {
    Registrar registrar;
    Registrar::Key const key(1, 2);
    auto first = registrar.Register(key);
    auto const unique = registrar.RegisterUnique<std::string>();
    Core::TimeStamp fresh, seen;
    registrar.GetObject<int>(key, fresh);
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
