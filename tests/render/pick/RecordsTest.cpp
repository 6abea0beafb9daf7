#include "render/pick/HitRecord.h"
#include "render/pick/SelectRecord.h"
#include "tests/render/pick/HitFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace Qor::Chart::Render {
namespace {

using Fixtures::HitNode;
using Point = Types::Vector3_Base<double>;

template <class T>
std::string Printed(T const& p_value) {
    std::ostringstream stream;
    stream << p_value;
    return stream.str();
}

HitRecord RecordOf(Core::Ptr<HitNode> const& p_node, double p_depth) {
    HitResult result;
    result.records = {{Ogl::HitRecord::NameFirst, p_depth}, {Ogl::HitRecord::NameDefault, 1}};
    result.data = std::string("payload");
    return {p_node, result, {1, 2, 3}, {4, 5, 6}, {7, 8}};
}

TEST(HitRecordTest, printsOneLinePerHit) {
    auto node = Core::MakeNode<HitNode>(nullptr, "wheel");
    std::string const name = Printed(Core::Ptr<Core::Node>(node));
    HitRecord const record = RecordOf(node, .5);
    std::string const expected = name + "\n\tlocation(" + Printed(Point(1, 2, 3)) + ")\n\tglobal(" +
        Printed(Point(4, 5, 6)) + ")\n\tscreenPos(" + Printed(Types::Pos(7, 8)) +
        ")\n\t\t[0] name(1) depth(0.5)\n\t\t[1] name(default) depth(1)";
    EXPECT_EQ(Printed(record), expected);
    std::ostringstream list;
    HitRecord::Dump("> ", list, {record, record});
    EXPECT_THAT(list.str(), ::testing::StartsWith("> [0] \n> \t" + name + "\n> \t\tlocation("));
    EXPECT_THAT(list.str(), ::testing::HasSubstr("> \t\t\t[1] name(default) depth(1)\n> [1] \n> \t" + name));
    node.Reset();
    EXPECT_EQ(Printed(std::vector<HitRecord>{record}), "[0] \n\tERROR: Expired node\n");
    EXPECT_EQ(Printed(std::vector<HitRecord>()), "");
}

/// Records are sorted, copied and printed while their nodes go, in every order.
TEST(HitRecordTest, outliveTheirNodes) {
    std::vector<std::size_t> order{0, 1, 2};
    do {
        std::vector<Core::Ptr<HitNode>> nodes;
        std::vector<HitRecord> records;
        for (double const depth : {.5, .25, .75}) {
            nodes.push_back(Core::MakeNode<HitNode>(nullptr, "node"));
            records.push_back(RecordOf(nodes.back(), depth));
            records.back().hitRoot = nodes.front();
        }
        for (std::size_t gone = 0; gone < 3; ++gone) {
            nodes[order[gone]].Reset();
            std::vector<HitRecord> sorted = records;
            HitRecord::Sort(sorted);
            for (std::size_t i = 0; i < 3; ++i)
                EXPECT_EQ(sorted[i].node.Expired(), i >= 2 - gone);
            EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end() - static_cast<std::ptrdiff_t>(gone + 1),
                [](auto const& p_a, auto const& p_b) { return HitRecord::IsBefore(p_a, p_b); }));
            boost::any_cast<std::string&>(sorted[0].result.data) = "other";
            EXPECT_THAT(Printed(sorted), ::testing::HasSubstr("ERROR: Expired node"));
        }
        for (HitRecord const& record : records)
            EXPECT_EQ(boost::any_cast<std::string>(record.result.data), "payload");
    } while (std::next_permutation(order.begin(), order.end()));
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

    std::string const nodes = "handler(" + Printed(Core::Ptr<Core::Node>(handler)) + ") selection(" +
        Printed(Core::Ptr<Core::Node>(model)) + ")";
    EXPECT_EQ(Printed(plain), nodes);
    EXPECT_EQ(Printed(third), nodes + " subordinate(3) path(" + Printed(path) + ")");
    EXPECT_EQ(Printed(placed), nodes + " subordinate(18446744073709551615) location(" + Printed(Point(1, 2, 3)) + ")");
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
