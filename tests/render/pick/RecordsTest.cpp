#include "render/pick/SelectRecord.h"
#include "tests/render/pick/HitFixture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace Qor::Chart::Render {
namespace {

using Fixtures::HitNode;

template <class T>
std::string Printed(T const& p_value) {
    std::ostringstream stream;
    stream << p_value;
    return stream.str();
}

TEST(SelectRecordTest, comparesAndPrints) {
    auto handler = Core::Ptr<Vis>(Core::MakeNode<HitNode>(nullptr, "handler"));
    auto model = Core::MakeNode<Model::ModelNode>();
    auto const other = Core::MakeNode<Model::ModelNode>();
    Core::NodePath const path({1, 2});
    SelectRecord const plain(handler, model, {});
    SelectRecord const third(handler, model, 3, path);
    SelectRecord const placed(handler, model, Ogl::HitRecord::NameInvalid, {1, 2, 3}, {4, 5}, {});
    SelectRecord twice = third;
    twice.SetSecondIndex(1);
    SelectRecord const elsewhere(handler, other, 1, {});
    SelectRecord const unhandled({}, model, 9, {});

    EXPECT_EQ(plain, placed);
    EXPECT_NE(third, elsewhere);
    EXPECT_NE(third, unhandled);
    EXPECT_TRUE(plain < third && third < twice && twice < placed) << "by the indices, absent ones being 0";
    EXPECT_NE(third < elsewhere, elsewhere < plain) << "by the selection first";
    EXPECT_TRUE(unhandled < plain) << "then by the handler";
    EXPECT_TRUE(third.IsSubordinateValid());
    EXPECT_FALSE(placed.IsSubordinateValid() || plain.IsSubordinateValid());

    EXPECT_THAT(Printed(third), ::testing::EndsWith(" subordinate(3) path(" + Printed(path) + ")"));
    EXPECT_FALSE(unhandled.IsValid());
    EXPECT_EQ(Printed(unhandled), "**select record handler expired**");

    EXPECT_TRUE(third.IsValid());
    handler.Reset();
    EXPECT_FALSE(third.IsValid());
    EXPECT_EQ(Printed(third), "**select record handler expired**");
    model.Reset();
    EXPECT_EQ(Printed(third), "**select record selection expired**");
    EXPECT_EQ(third, plain);
    EXPECT_TRUE(plain < third);
    EXPECT_EQ(Printed(SelectRecord()), "**select record selection expired**");
}

} // namespace
} // namespace Qor::Chart::Render
