#include "framework/algorithms/StrategyBuilder.h"

#include "framework/core/Node.h"

#include <gtest/gtest.h>

#include <string>

namespace Qor::Chart::Algorithms {

namespace {

struct Fruit : Core::Node {};
struct Apple : Fruit {
    int seeds = 5;
};
struct RedApple : Apple {};
struct Pear : Fruit {};
struct Juice : Core::Node {
    explicit Juice(std::string p_label) : label(std::move(p_label)) {}
    std::string label;
};

using Press = StrategyBuilder<Fruit, Juice, Core::Ptr<Fruit>, Detail::TypeInfoFromPtr>;

auto Labelled(std::string p_label) {
    return [label = std::move(p_label)](Core::Ptr<Fruit> const&) { return Core::MakeNode<Juice>(label); };
}

std::string LabelOf(Press const& p_press, Core::Ptr<Fruit> const& p_fruit) {
    auto const& factory = p_press.Find(p_fruit);
    return factory ? factory(p_fruit)->label : "";
}

} // namespace

TEST(StrategyBuilderTest, looksUpTheObjectsTypeAndNoBaseOfIt) {
    Press press;
    EXPECT_TRUE((press.Register<Apple>(Labelled("apple"))));
    Core::Ptr<Fruit> const apple = Core::MakeNode<Apple>();
    Core::Ptr<Fruit> const redApple = Core::MakeNode<RedApple>();

    EXPECT_TRUE(press.IsRegistered(apple));
    EXPECT_EQ(LabelOf(press, apple), "apple");
    EXPECT_FALSE(press.IsRegistered(redApple));
    EXPECT_FALSE(press.Find(redApple));
    EXPECT_FALSE(press.IsRegistered({}));
    EXPECT_FALSE(press.Find({}));
}

TEST(StrategyBuilderTest, factoriesMayTakeTheirOwnType) {
    Press press;
    press.Register<Apple>(
        [](Core::Ptr<Apple> const& p_apple) { return Core::MakeNode<Juice>(std::to_string(p_apple->seeds)); });
    EXPECT_EQ(LabelOf(press, Core::MakeNode<Apple>()), "5");
}

TEST(StrategyBuilderTest, theFirstRegistrationWins) {
    Press press;
    press.Register<Apple>(Labelled("first"));
    EXPECT_FALSE((press.Register<Apple>(Labelled("second"))));
    EXPECT_FALSE((press.Register<Pear>(Press::Factory())));

    Press other;
    other.Register<Apple>(Labelled("third"));
    other.Register<Pear>(Labelled("pear"));
    Press const copy = press;
    press += other;

    EXPECT_EQ(LabelOf(press, Core::MakeNode<Apple>()), "first");
    EXPECT_EQ(LabelOf(press, Core::MakeNode<Pear>()), "pear");
    EXPECT_FALSE(copy.IsRegistered(Core::MakeNode<Pear>()));
}

} // namespace Qor::Chart::Algorithms
