#include "framework/algorithms/DepthFirstSearch.h"

#include "framework/core/NodeList.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pthread.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__) || !defined(__OPTIMIZE__)
constexpr bool Optimised = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool Optimised = false;
#else
constexpr bool Optimised = true;
#endif
#else
constexpr bool Optimised = true;
#endif

namespace Qor::Chart::Algorithms {

namespace {

struct Place : Core::NodeList<Place> {};
using Handle = Core::Ptr<Place>;
using Search = DepthFirstSearch<Handle, Core::NodeList<Place>::Iterator>;

Handle MakePlace(std::string p_name) {
    auto place = Core::MakeNode<Place>();
    place->SetName(std::move(p_name));
    return place;
}

Handle MakeChain(std::size_t p_levels) {
    Handle top = MakePlace("");
    for (std::size_t i = 1; i < p_levels; ++i) {
        Handle above = MakePlace("");
        above->Add(top);
        top = above;
    }
    return top;
}

struct NoOp {
    explicit operator bool() const { return false; }
    bool operator()(Handle const&, auto const&) const { throw std::logic_error("called"); }
};

/// Visits every node and counts.
std::size_t CountFrom(Handle const& p_root) {
    std::size_t count = 0;
    auto search = Search::Make(
        "counting",
        [&count](Handle const& p_node, auto const& p_visitChildren) {
            ++count;
            p_visitChildren(p_node->begin(), p_node->end());
            return true;
        },
        [](Handle const&) { return false; });
    search(p_root);
    return count;
}

void OnThread(std::size_t p_stack, std::function<void()> p_work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, p_stack);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(
                  &thread, &attributes,
                  [](void* p_data) -> void* {
                      (*static_cast<std::function<void()>*>(p_data))();
                      return nullptr;
                  },
                  &p_work),
        0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace

TEST(DepthFirstSearchTest, goesWhereTheOperationLeadsAndVisitsSharedNodesInEachPlace) {
    Handle const root = MakePlace("root");
    Handle const left = MakePlace("left");
    Handle const right = MakePlace("right");
    Handle const shared = MakePlace("shared");
    root->Add(left);
    root->Add(right);
    left->Add(shared);
    right->Add(shared);
    shared->Add(MakePlace("below"));

    std::vector<std::string> visited;
    auto search = Search::Make(
        "listing",
        [&](Handle const& p_node, auto const& p_visitChildren) {
            visited.push_back(p_node->Name());
            if (p_node != right) {
                p_visitChildren(p_node->begin(), p_node->end());
            }
            return p_node == root;
        },
        [](Handle const&) -> bool { throw std::logic_error("no cycle here"); });
    EXPECT_TRUE(search(root));
    EXPECT_THAT(visited, testing::ElementsAre("root", "left", "shared", "below", "right"));
    EXPECT_FALSE(search(shared));
    EXPECT_FALSE(search(nullptr));
    EXPECT_EQ(CountFrom(root), 7U);
}

TEST(DepthFirstSearchTest, aCycleIsMetOnceAndTheSearchStaysUsable) {
    Handle const root = MakePlace("root");
    Handle const child = MakePlace("child");
    root->Add(child);
    child->Add(root);

    int visits = 0;
    bool throws = true;
    auto search = Search::Make(
        "looking",
        [&](Handle const& p_node, auto const& p_visitChildren) {
            ++visits;
            p_visitChildren(p_node->begin(), p_node->end());
            return true;
        },
        [&](Handle const& p_node) -> bool {
            EXPECT_EQ(p_node, root);
            if (throws) {
                throw Core::CyclicDependencyFoundExcept(p_node->Name());
            }
            return false;
        });
    EXPECT_THROW(search(root), Core::CyclicDependencyFoundExcept);
    EXPECT_EQ(search.Depth(), 0U);
    throws = false;
    qordebug::CaptureScope const log(Utility::GetLogger());
    EXPECT_TRUE(search(root));
    EXPECT_EQ(visits, 4);
    EXPECT_TRUE(log.empty());
    child->Clear();
}

TEST(DepthFirstSearchTest, reportsAMissingOperationAndVisitsNothing) {
    qordebug::CaptureScope log(Utility::GetLogger());
    auto const cycle = [](Handle const&) { return false; };
    int visits = 0;
    auto const visit = [&visits](Handle const&, auto const&) { return ++visits > 0; };

    auto withoutVisit = Search::Make("nothing", NoOp(), cycle);
    auto withoutCycle = Search::Make("nothing", visit, std::function<bool(Handle const&)>());
    EXPECT_FALSE(withoutVisit(MakePlace("")));
    EXPECT_FALSE(withoutCycle(MakePlace("")));
    EXPECT_EQ(visits, 0);
    EXPECT_THAT(log.texts(),
        testing::ElementsAre(testing::StartsWith("\"_perNodeOp\" - "), testing::StartsWith("\"_cycleDetectOp\" - ")));
}

TEST(DepthFirstSearchTest, aLevelCostsLittleStack) {
    if (!Optimised) {
        GTEST_SKIP() << "frames are larger in this build";
    }
    constexpr std::size_t Levels = 10000;
    Handle const root = MakeChain(Levels);
    std::size_t counted = 0;
    // 160 bytes a level beside what the limit keeps in reserve.
    OnThread(Utility::StackLimit::DefaultReserve + (64U << 10U) + Levels * 160, [&] { counted = CountFrom(root); });
    EXPECT_EQ(counted, Levels);
}

TEST(DepthFirstSearchTest, aTreeTooDeepForTheStackEndsInAnErrorThatSaysSo) {
    Handle const root = MakeChain(100000);
    std::string message;
    OnThread(512U << 10U, [&] {
        try {
            CountFrom(root);
        } catch (Core::TreeTooDeepExcept const& failure) {
            message = failure.what();
        }
    });
    EXPECT_THAT(message, testing::HasSubstr("counting"));
}

} // namespace Qor::Chart::Algorithms
