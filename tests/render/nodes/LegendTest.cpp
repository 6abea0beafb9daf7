#include "render/nodes/Legend.h"

#include "tests/render/nodes/PaneFixture.h"
#include "render/nodes/LegendLayout.h"
#include "render/nodes/LegendScale.h"
#include "render/pick/SelectRecord.h"
#include "framework/model/Events.h"
#include "framework/model/Group.h"
#include "framework/utility/Unicode.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <set>

namespace Qor::Chart::Render {
namespace {

using Rectangle = Types::Viewport<0>;
using Model::LegendEntry;
using Model::Events::LegendEntryArgs;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

bool AreApart(Rectangle const& p_a, Rectangle const& p_b) {
    return p_a.IsEmpty() || p_b.IsEmpty() || p_a.Right() <= p_b.x || p_b.Right() <= p_a.x || p_a.Top() <= p_b.y ||
        p_b.Top() <= p_a.y;
}

bool IsInside(Rectangle const& p_in, Rectangle const& p_out) {
    return p_in.IsEmpty() || p_in.Clamped(p_out) == p_in;
}

TEST(LegendLayoutTest, whateverTheSizesNothingOverlapsOrLeavesThePaneAndEveryRowIsReached) {
    std::mt19937 random(7);
    auto const any = [&](int p_least, int p_most) { return std::uniform_int_distribution(p_least, p_most)(random); };
    for (int turn = 0; turn < 5000; ++turn) {
        std::vector<std::uint8_t> tall(static_cast<std::size_t>(any(0, 60)));
        for (std::uint8_t& isTall : tall)
            isTall = any(0, 4) == 0 ? 1 : 0;
        LegendLayout::Request request{{any(0, 400), any(0, 300)}, static_cast<float>(any(0, 1) * 20),
            static_cast<float>(any(0, 1) * any(0, 200)), any(0, 1) == 0,
            {static_cast<Types::DefinedAs>(any(0, 1)), static_cast<Types::XEdge>(any(0, 1)), any(-20, 500) / 10.0},
            {static_cast<Types::DefinedAs>(any(0, 1)), static_cast<Types::YEdge>(any(0, 1)), any(-20, 500) / 10.0},
            any(0, 4), static_cast<float>(any(2, 6)) / 2, static_cast<float>(any(1, 30)),
            static_cast<float>(any(0, 300)), static_cast<float>(any(0, 600)), tall, 0};
        Rectangle const pane(0, 0, static_cast<float>(request.pane.width), static_cast<float>(request.pane.height));
        std::size_t next = 0;
        for (bool isLast = false; !isLast;) {
            request.first = next;
            LegendLayout const layout(request);
            SCOPED_TRACE(turn);
            std::vector<Rectangle> places{
                layout.title, layout.rule, layout.up, layout.upCount, layout.down, layout.downCount};
            for (LegendLayout::Cell const& cell : layout.cells) {
                places.push_back(cell.place);
                auto const parts = layout.PartsOf(cell.place, tall[cell.row] != 0, tall[cell.row] == 0);
                std::array const inCell{parts.swatch, parts.text, parts.bar, parts.labels};
                for (std::size_t i = 0; i < inCell.size(); ++i) {
                    ASSERT_TRUE(IsInside(inCell[i], cell.place));
                    for (std::size_t j = 0; j < i; ++j)
                        ASSERT_TRUE(AreApart(inCell[i], inCell[j]));
                }
            }
            float const off = request.isAutomatic ? 1 : 0;
            ASSERT_TRUE(IsInside(layout.ground,
                {0, 0, pane.width - off * request.reservedRight, pane.height - off * request.reservedAbove}));
            for (std::size_t i = 0; i < places.size(); ++i) {
                ASSERT_TRUE(IsInside(places[i], layout.ground));
                for (std::size_t j = 0; j < i; ++j)
                    ASSERT_TRUE(AreApart(places[i], places[j])) << i << ' ' << j;
            }
            if (layout.cells.empty())
                break;
            ASSERT_LE(layout.first, next) << "no row is left out";
            ASSERT_EQ(layout.cells.front().row, layout.first);
            ASSERT_EQ(layout.cells.back().row + 1 + layout.hiddenAfter, tall.size());
            ASSERT_EQ(layout.first % layout.columns, 0U);
            if (layout.first > 0) {
                ASSERT_LT(layout.previousPage, layout.first);
            }
            isLast = layout.hiddenAfter == 0 || !layout.IsScrolled();
            ASSERT_TRUE(isLast || layout.nextPage > next);
            next = layout.nextPage;
        }
    }
}

TEST(LegendScaleTest, ticksStandAtRoundValuesInTheUnitOfDisplay) {
    struct Case {
        double first, last;
        bool isLogarithmic;
        UnitSystemConverter::Converter toDisplay;
        std::size_t most;
        std::vector<std::pair<double, std::string>> ticks;
    };
    double const max = std::numeric_limits<double>::max();
    for (Case const& one : std::vector<Case>{
             {0, 1, false, {}, 2, {{0, "0"}, {1, "1"}}},
             {95, 15, false, {}, 4, {{0.9375, "20"}, {0.6875, "40"}, {0.4375, "60"}, {0.1875, "80"}}},
             {273.15, 373.15, false, {1, -273.15}, 3, {{0, "0"}, {0.5, "50"}, {1, "100"}}},
             {1, 1000, true, {}, 7, {{0, "1"}, {1 / 3.0, "10"}, {2 / 3.0, "100"}, {1, "1000"}}},
             {1, 100, true, {}, 7,
                 {{0, "1"}, {0.1505, "2"}, {0.3495, "5"}, {0.5, "10"}, {0.6505, "20"}, {0.8495, "50"}, {1, "100"}}},
             {1e-3, 1e6, true, {}, 4, {{0, "0.001"}, {1 / 3.0, "1"}, {2 / 3.0, "1000"}, {1, "1e+06"}}},
             {2, 3, true, {}, 3, {{0, "2"}, {0.5503, "2.5"}, {1, "3"}}},
             {5, 5, false, {}, 5, {{0.5, "5"}}},
             {-max, max, false, {}, 3, {{0.2219, "-1e+308"}, {0.5, "0"}, {0.7781, "1e+308"}}},
             {1, std::nextafter(1.0, 2.0), false, {}, 7, {{0, "1"}}},
         }) {
        LegendScale scale{{}, one.toDisplay, {}};
        scale.map.SetRange(one.first, one.last,
            one.isLogarithmic ? Library::ColorMap::Scale::Logarithmic : Library::ColorMap::Scale::Linear);
        auto const ticks = scale.Ticks({}, one.most);
        SCOPED_TRACE(std::to_string(one.first) + " to " + std::to_string(one.last));
        ASSERT_EQ(ticks.size(), one.ticks.size());
        for (std::size_t i = 0; i < ticks.size(); ++i) {
            EXPECT_NEAR(ticks[i].position, one.ticks[i].first, 1e-4);
            EXPECT_EQ(ticks[i].text, one.ticks[i].second);
        }
    }
}

/// A pane with a legend of three entries; the second names a cube of the pane.
struct LegendTest : ::testing::Test, Fixtures::PaneFixture {
    LegendTest() {
        pane->Add(target);
        pane->Add(legend);
        for (wchar_t const* const text : {L"First", L"Second", L"Third"})
            Add(text);
        entries[1]->SetTarget(target);
        Show();
    }

    Core::Ptr<LegendEntry> const& Add(std::wstring const& p_text) {
        entries.push_back(Core::MakeNode<LegendEntry>(p_text));
        legend->Add(entries.back());
        return entries.back();
    }
    /// Updates and draws; gives the commands of the overlay.
    std::vector<Ogl::RecordedCommand> Show() {
        Update();
        return DrawLayer(LayerOverlay);
    }
    /// A pick where a part of the legend lies, empty when it cannot be seen.
    std::vector<HitRecord> PickName(std::uint64_t p_name) {
        for (int y = 1; y < 150; y += 3) {
            for (int x = 1; x < 200; x += 3) {
                auto hits = Pick({x, y}, LayerOverlay);
                if (!hits.empty() && hits.front().result.records.front().name == p_name)
                    return hits;
            }
        }
        return {};
    }
    /// The rows that can be seen, as names.
    std::vector<std::uint64_t> Rows() {
        std::set<std::uint64_t> names;
        for (int y = 0; y < 150; ++y) {
            for (HitRecord const& hit : Pick({160, y}, LayerOverlay))
                names.insert(hit.result.records.front().name);
        }
        std::erase_if(names, [](std::uint64_t p_name) { return p_name == 0 || p_name > 1000000; });
        return {names.begin(), names.end()};
    }

    void Hover(SelectRecord const& p_record) override { hovered.push_back(p_record.Selection().Lock()); }
    void EndHover(Core::WeakPtr<Model::ModelNode> const& p_node) override { std::erase(hovered, p_node.Lock()); }

    static constexpr std::uint64_t First = Ogl::HitRecord::NameFirst;
    Core::Ptr<Model::Legend> legend = Core::MakeNode<Model::Legend>();
    Core::Ptr<Model::SimpleObject> target = Fixtures::MakeCube();
    std::vector<Core::Ptr<LegendEntry>> entries;
    std::vector<Core::Ptr<Model::ModelNode>> hovered;
};

TEST_F(LegendTest, pointerAndClickAreToldAndAClickTogglesWhereBothAllow) {
    std::vector<std::string> told;
    auto const listen = [&](Model::ModelNode& p_node, std::string const& p_at) {
        return p_node.Delegate().Connect<LegendEntryArgs>([&told, p_at](LegendEntryArgs const& p_args) {
            std::string const what = dynamic_cast<Model::Events::LegendEntryHoveredArgs const*>(&p_args) ? "over"
                : dynamic_cast<Model::Events::LegendEntryClickedArgs const*>(&p_args)                    ? "click"
                                                                                                         : "out";
            told.push_back(p_at + ' ' + what + ' ' + Utility::ToUtf8(p_args.Entry().Peek()->Text()));
        });
    };
    auto const atLegend = listen(*legend, "legend");
    auto const atSecond = listen(*entries[1], "entry");
    auto const first = PickName(First), second = PickName(First + 1);
    ASSERT_FALSE(second.empty());
    Send(&Legend::OnMouseOver, first);
    EXPECT_THAT(hovered, ElementsAre(entries[0]));
    Send(&Legend::OnMouseOut, {});
    Send(&Legend::OnMouseOver, second);
    EXPECT_THAT(hovered, ElementsAre(entries[1], target));
    entries[1]->SetTarget({});
    Send(&Legend::OnMouseOut, {});
    entries[1]->SetTarget(target);
    EXPECT_THAT(hovered, IsEmpty());
    EXPECT_THAT(told,
        ElementsAre("legend over First", "legend out First", "entry over Second", "legend over Second",
            "entry out Second", "legend out Second"));
    told.clear();

    EXPECT_EQ(Send(&Legend::OnClick, second), Event::Consumed);
    EXPECT_FALSE(target->IsVisible());
    entries[1]->SetClickToggles(false);
    Send(&Legend::OnClick, second);
    entries[1]->SetClickToggles(true);
    legend->SetClickToggles(false);
    Send(&Legend::OnClick, second);
    EXPECT_FALSE(target->IsVisible());
    legend->SetClickToggles(true);
    Send(&Legend::OnClick, second);
    EXPECT_TRUE(target->IsVisible());
    EXPECT_EQ(told.size(), 8U);
}

TEST_F(LegendTest, anEntryIsFaintWhileItsTargetIsHiddenByItselfOrFromAbove) {
    auto const group = Core::MakeNode<Model::Group>(), other = Core::MakeNode<Model::Group>();
    pane->Add(group);
    pane->Add(other);
    for (auto const& above : {group, other})
        above->Add(target);
    pane->Remove(*target);
    entries[1]->SetSwatch(Model::LegendSwatch::Color);
    auto const isFaint = [&] {
        return std::ranges::any_of(Show(), [](Ogl::RecordedCommand const& p_command) {
            auto const isIt = [](auto const& p_vertex) { return std::abs(p_vertex.color.alpha - 0.3F) < 0.01F; };
            return std::ranges::any_of(p_command.vertices, isIt);
        });
    };
    EXPECT_FALSE(isFaint());
    target->SetVisible(false);
    EXPECT_TRUE(isFaint());
    target->SetVisible(true);
    group->SetVisible(false);
    EXPECT_FALSE(isFaint()) << "seen in the other group";
    other->SetVisible(false);
    EXPECT_TRUE(isFaint());
    group->SetVisible(true);
    EXPECT_FALSE(isFaint());
}

TEST_F(LegendTest, rowsFollowTheModelAndScrollByPages) {
    entries[0]->SetVisible(false);
    Update();
    EXPECT_THAT(Rows(), ElementsAre(First + 1, First + 2)) << "an entry keeps its name";
    legend->Remove(*entries[1]);
    legend->Add(Core::MakeNode<Model::Group>());
    Add(L"Fourth");
    Update();
    EXPECT_THAT(Rows(), ElementsAre(First + 1, First + 2));

    Core::Ptr<LegendEntry> const third = entries[2];
    legend->Remove(*third);
    legend->Add(third);
    Update();
    auto const last = PickName(First + 2);
    EXPECT_EQ(boost::any_cast<Core::WeakPtr<LegendEntry>>(last.front().result.data), Core::WeakPtr<LegendEntry>(third));
    for (int i = 0; i < 10000; ++i)
        Add(L"Entry " + std::to_wstring(i));
    Update();
    auto const rows = Rows();
    std::size_t const page = rows.size();
    ASSERT_GT(page, 3U);
    auto const up = PickName(Legend::PartScrollUp), down = PickName(Legend::PartScrollDown);
    Send(&Legend::OnClick, down);
    EXPECT_EQ(Rows().front(), rows.back() + 1);
    Send(&Legend::OnClick, down, {}, 0, EventInformation::ModifierControl);
    EXPECT_EQ(Rows().back(), First + 10002) << "the last one, of 10003";
    EXPECT_EQ(Rows().size(), page) << "a full page";
    Send(&Legend::OnClick, up);
    EXPECT_EQ(Rows().back(), First + 10002 - page);
    legend->Clear();
    legend->Add(entries[2]);
    Update();
    EXPECT_THAT(Rows(), ElementsAre(First));
    EXPECT_TRUE(PickName(Legend::PartScrollDown).empty());
}

TEST_F(LegendTest, legendsThatFindTheirPlacesKeepClearOfEachOther) {
    auto const below = Core::MakeNode<Model::Legend>();
    pane->Add(below);
    for (auto const& legends : {legend, below})
        legends->Add(Core::MakeNode<LegendEntry>(L"One more"));
    struct Case {
        char const* what;
        std::function<void()> change;
        bool isBeside;
    };
    for (Case const& c : {
             Case{"below", [] {}, false},
             Case{"beside a higher one", [&] { legend->SetTitle(L"Title"); }, true},
             Case{"alone", [&] { legend->SetVisible(false); }, false},
             Case{"below again", [&] { legend->SetVisible(true), legend->SetTitle(L""); }, false},
             Case{"beside",
                 [&] {
                     for (int i = 0; i < 50; ++i)
                         Add(L"x");
                 },
                 true},
             Case{"the other one given", [&] { legend->SetAutomaticPlacement(false); }, false},
         }) {
        c.change();
        Show();
        std::map<Model::ModelNode const*, Rectangle> places;
        for (int y = 0; y < 150; y += 2) {
            for (int x = 0; x < 200; x += 2) {
                for (HitRecord const& hit : Pick({x, y}, LayerOverlay)) {
                    auto const left = static_cast<float>(x), low = static_cast<float>(y);
                    Rectangle& place =
                        places.try_emplace(hit.node.Peek()->SourceModel().Peek(), left, low, 1, 1).first->second;
                    float const right = std::max(place.Right(), left + 1);
                    place.x = std::min(place.x, left);
                    place.width = right - place.x;
                    place.height = low + 1 - place.y;
                }
            }
        }
        Rectangle const first = places[legend.Get()], second = places[below.Get()];
        EXPECT_EQ(first.IsEmpty(), !legend->IsVisible()) << c.what;
        EXPECT_GT(second.height, 20) << c.what;
        EXPECT_EQ(second.Right() < 180, c.isBeside) << c.what;
        EXPECT_TRUE(AreApart(first, second) || !legend->IsAutomaticallyPlaced()) << c.what;
    }
}

TEST_F(LegendTest, theUnitIsThatOfTheConverterRegisteredNow) {
    struct Scaling : Types::UnitsConverter {
        using UnitsConverter::AreConvertable;
        using UnitsConverter::GetConversionFactors;
        using UnitsConverter::GetDisplayUnit;
        explicit Scaling(double p_factor) : factor(p_factor) {}
        bool AreConvertable(std::wstring const&, std::wstring const&) const override { return true; }
        void GetConversionFactors(std::wstring const&, std::wstring const&, double& p_factor, double&) const override {
            p_factor = factor;
        }
        std::wstring GetDisplayUnit(std::wstring const&, std::wstring const&) override { return L"x"; }
        double factor;
    };
    units->RegisterConverter(boost::make_shared<Scaling>(1));
    Add(L"Depth")->SetColorMap("Viridis");
    entries.back()->SetRange(0, 7000);
    entries.back()->SetUnit({L"Length", L"m"});
    auto const corners = [&] { // a tick is two triangles
        std::size_t count = 0;
        for (Ogl::RecordedCommand const& command : Show())
            count += command.vertices.size();
        return count;
    };
    std::size_t const before = corners();
    units->RegisterConverter(boost::make_shared<Scaling>(1 / 2000.0));
    EXPECT_EQ(corners() - before, 2 * 6U) << "0, 1, 2, 3 in place of 0, 5000";
    EXPECT_THAT(dispatcher.warnings, IsEmpty());
}

} // namespace
} // namespace Qor::Chart::Render
