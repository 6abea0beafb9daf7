#include "tests/framework/core/Probe.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

namespace Qor::Chart::Core {

TEST(Dependencies, thousandsOfDependentsAgreeWithAPlainMap) {
    std::mt19937 random(11);
    std::vector<Ptr<Probe>> dependents;
    for (int node = 0; node < 3000; ++node)
        dependents.push_back(MakeProbe({}, false));
    auto const subject = MakeProbe({}, false);
    Dependencies& deps = subject->Deps();
    std::map<Node const*, std::array<unsigned, 2>> oracle;
    for (int step = 0; step < 200'000; ++step) {
        // Few at first, then many, then few again.
        std::size_t const range = step < 2'000 ? 40 : dependents.size();
        Probe& node = *dependents[random() % range];
        auto const link = random() % 2 == 0 ? Dependencies::Link::Child : Dependencies::Link::Reference;
        auto const kind = static_cast<std::size_t>(link);
        bool const isGrowing = step / 50'000 % 2 == 0;
        if (random() % 8 < (isGrowing ? 5 : 2)) {
            deps.Add(node, link);
            ++oracle[&node][kind];
        } else {
            deps.Remove(node, link);
            if (auto const found = oracle.find(&node); found != oracle.end()) {
                found->second[kind] -= found->second[kind] > 0 ? 1 : 0;
                if (found->second == std::array<unsigned, 2>{})
                    oracle.erase(found);
            }
        }
        ASSERT_EQ(deps.Size(), oracle.size());
        Probe const& other = *dependents[random() % dependents.size()];
        auto const found = oracle.find(&other);
        ASSERT_EQ(deps.Has(other, link), found != oracle.end() && found->second[kind] > 0) << "step " << step;
    }
    for (Dependencies::Entry const& entry : deps.Entries()) {
        EXPECT_EQ(oracle.at(entry.dependent), (std::array<unsigned, 2>{entry.children, entry.references}));
        oracle.erase(entry.dependent);
    }
    EXPECT_TRUE(oracle.empty());
}

TEST(Dependencies, removingAllInRandomOrderIsLinear) {
    struct Owner : Node {
        WeakRef<Owner> weak{*this, "weak"};
    };
    auto const subject = MakeNode<Owner>();
    std::vector<Ptr<Owner>> owners;
    double const adding = SecondsOf([&] {
        for (std::size_t owner = 0; owner < Many; ++owner) {
            owners.push_back(MakeNode<Owner>());
            owners.back()->weak.Attach(subject);
        }
    });
    double const removing = SecondsOf([&] {
        for (std::size_t const owner : ShuffledIndices(Many, 5))
            owners[owner].Reset();
    });
    EXPECT_TRUE(subject->Deps().Empty());
    EXPECT_LT(removing, adding * LinearFactor);
}

} // namespace Qor::Chart::Core
