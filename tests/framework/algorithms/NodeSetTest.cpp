#include "framework/algorithms/NodeSet.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace Qor::Chart::Algorithms {

TEST(NodeSetTest, behavesAsASetWhateverTheOrderOfErasing) {
    std::mt19937 random(7);
    NodeSet set;
    std::set<void const*> model;
    for (int step = 0; step < 200000; ++step) {
        // Addresses of one array, close together as nodes are, up to a thousand at a time so that the set grows.
        auto const* const address = reinterpret_cast<void const*>(std::uintptr_t{0x10000} + 16 * (random() % 2000));
        if (random() % 2 == 0 && model.size() < 1000) {
            ASSERT_EQ(set.Insert(address), model.insert(address).second);
        } else {
            set.Erase(address);
            model.erase(address);
        }
        ASSERT_EQ(set.Size(), model.size());
        ASSERT_EQ(set.Contains(address), model.contains(address));
    }
    for (void const* const address : model)
        ASSERT_TRUE(set.Contains(address));
    EXPECT_FALSE(set.Insert(nullptr) || set.Contains(nullptr));
}

} // namespace Qor::Chart::Algorithms
