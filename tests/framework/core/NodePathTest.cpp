#include "framework/core/NodePath.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

namespace Qor::Chart::Core {

namespace {

using Ids = std::vector<std::int32_t>;

std::string TextOf(NodePath const& p_path) {
    std::ostringstream text;
    text << p_path;
    return text.str();
}

} // namespace

TEST(NodePath, comparesAsItsIdentifiersDoHoweverItWasMade) {
    std::mt19937 random(5);
    std::vector<NodePath> paths{NodePath()};
    std::vector<Ids> oracle{{}};
    WorkingPath working;
    Ids ids;
    for (int step = 0; step < 400; ++step) {
        if (random() % 3 == 0) {
            working.Pop();
            if (!ids.empty())
                ids.pop_back();
        } else if (ids.size() < 6) {
            ids.push_back(static_cast<std::int32_t>(random() % 3) - 1);
            working.Push(ids.back());
        }
        ASSERT_EQ(working.Size(), ids.size());
        paths.push_back(random() % 4 == 0 ? NodePath(ids) : working.Path());
        oracle.push_back(ids);
    }
    for (std::size_t left = 0; left < paths.size(); ++left) {
        EXPECT_EQ(paths[left].Ids(), oracle[left]) << "a path stays what it was when the working path moves on";
        EXPECT_EQ(paths[left].IsDefined(), !oracle[left].empty());
        EXPECT_EQ(paths[left].Last(), oracle[left].empty() ? 0 : oracle[left].back());
        for (std::size_t right = 0; right < paths.size(); ++right) {
            ASSERT_EQ(paths[left] == paths[right], oracle[left] == oracle[right]);
            ASSERT_EQ(paths[left] <=> paths[right], oracle[left] <=> oracle[right]);
        }
    }
}

TEST(NodePath, printsItsIdentifiers) {
    EXPECT_EQ(TextOf(NodePath()), "(undefined)");
    EXPECT_EQ(TextOf(NodePath({7})), "7");
    EXPECT_EQ(TextOf(NodePath({1, -2, 30})), "1/-2/30");
}

TEST(NodePath, aPathForEachLevelOfADeepTreeSharesTheBeginnings) {
    // Whole copies would take 20 GB.
    constexpr std::int32_t depth = 100'000;
    std::vector<NodePath> paths;
    {
        WorkingPath working;
        for (std::int32_t level = 0; level < depth; ++level) {
            working.Push(level);
            paths.push_back(working.Path());
        }
    }
    EXPECT_LE(sizeof(NodePath), 16U);
    std::mt19937 random(1);
    for (int look = 0; look < 20; ++look) {
        auto const level = static_cast<std::int32_t>(random() % depth);
        Ids const ids = paths[level].Ids();
        ASSERT_EQ(ids.size(), static_cast<std::size_t>(level) + 1);
        EXPECT_EQ(ids[ids.size() / 2], level / 2 + level % 2);
    }
    NodePath const last = paths.back();
    paths.clear();
    EXPECT_EQ(last.Ids().front(), 0);
}

} // namespace Qor::Chart::Core
