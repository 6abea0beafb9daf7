#include "render/nodes/Statistics.h"

#include "tests/render/nodes/SceneFixture.h"
#include "tests/render/support/AllocationCount.h"
#include "framework/model/Group.h"
#include "framework/qordebug/highrestimer.h"

#include <gmock/gmock.h>

#include <limits>

namespace Qor::Chart::Render {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;
using Mode = DrawContext::DrawMode;
using Number = CompactNumber;

TEST(CompactNumberTest, figuresHaveThreeDigitsOrSo) {
    for (auto const& [number, digits, unit] :
        std::initializer_list<std::tuple<Number, char const*, char const*>>{{Number::Count(999), "999", ""},
            {Number::Count(12'345), "12.3", "k"}, {Number::Count(99'949), "99.9", "k"},
            {Number::Count(99'950), "100", "k"}, {Number::Count(999'500), "1.00", "M"},
            {Number::Count(std::numeric_limits<std::uint64_t>::max()), "18.4", "E"},
            {Number::Bytes(48'200'000), "48.2", "MB"}, {Number::Milliseconds(0), "0.00", "ms"},
            {Number::Milliseconds(999.996), "1.00", "s"}, {Number::Milliseconds(5e6), "5000", "s"},
            {Number::Milliseconds(std::nan("")), "\u2013", ""}, {Number::Rate(0), "idle", ""},
            {Number::Rate(99.96), "100", "fps"}}) {
        EXPECT_EQ(number, (Number{digits, unit})) << number.digits << number.unit;
    }
}

FrameStatistics Figures() {
    FrameStatistics figures;
    figures.framesPerSecond = 60;
    figures.visited = 12;
    figures.updated = 3;
    figures.updateMilliseconds = 1;
    figures.pathMilliseconds = 0.5;
    figures.finishMilliseconds = 2;
    for (std::size_t i = 0; i < FrameStatistics::PassCount; ++i)
        figures.passes[i] = {0, 1000, static_cast<double>(i)};
    figures.graphics.drawCalls = 7;
    figures.graphics.instances = 10'000;
    figures.graphics.primitives = 9;
    figures.graphics.triangles = 1'240'000;
    figures.graphics.heldBytes = 48'200'000;
    return figures;
}

/// A panel over a window of 400 by 400 pixels, on a back end that only counts unless told otherwise.
struct StatisticsTest : ::testing::Test, Fixtures::UpdateFixture {
    explicit StatisticsTest(Ogl::RecorderBackend::Keep p_keep = Ogl::RecorderBackend::Keep::Commands)
        : UpdateFixture(p_keep) {
        RegisterNodeFactories(generator);
        for (auto const set :
            {&Model::Statistics::SetShowsRate, &Model::Statistics::SetShowsTimes, &Model::Statistics::SetShowsNodes,
                &Model::Statistics::SetShowsDrawing, &Model::Statistics::SetShowsMemory})
            (*idle.*set)(false);
        scene->Add(idle);
        scene->Add(model);
        root = generator(scene);
        Update(root);
    }

    /// Gives how often memory was allocated.
    std::size_t Draw(FrameStatistics const* p_figures) {
        DrawContext context = MakeContext(Mode::Highlight);
        context.Viewport().Set({0, 0, 400, 400});
        context.SetLastFrame(p_figures);
        agl.BeginFrame();
        std::size_t const before = Fixtures::allocations;
        RenderLoop(LayerOverlay, Mode::Highlight)(root, context);
        std::size_t const allocated = Fixtures::allocations - before;
        agl.EndFrame();
        return allocated;
    }
    /// The shapes that are drawn: ground and texts.
    std::vector<Ogl::PrimitiveBuffer const*> Shapes(FrameStatistics const* p_figures) {
        Draw(p_figures);
        std::vector<Ogl::PrimitiveBuffer const*> shapes;
        for (Ogl::RecordedCommand const& command : Backend().Commands())
            shapes.push_back(command.buffer);
        return shapes;
    }

    qordebug::manualclock clock;
    Core::Ptr<Model::Group> scene = Core::MakeNode<Model::Group>();
    Core::Ptr<Model::Statistics> model = Core::MakeNode<Model::Statistics>();
    Core::Ptr<Model::Statistics> idle = Core::MakeNode<Model::Statistics>(); ///< without rows: gives the pass work
    Core::Ptr<Vis> root;
};

struct StatisticsCostTest : StatisticsTest {
    StatisticsCostTest() : StatisticsTest(Ogl::RecorderBackend::Keep::Counters) {}
};

TEST_F(StatisticsTest, rowsTellTheFiguresOfTheFrame) {
    FrameStatistics const figures = Figures();
    auto const texts = [&](FrameStatistics const* p_figures) {
        std::vector<std::string> all;
        for (StatisticsPanel::Row const& row : Statistics::RowsOf(*model, p_figures))
            all.push_back(
                (row.isFirst ? "* " : "") + std::string(row.name) + " " + row.figure.digits + row.figure.unit);
        return all;
    };
    EXPECT_THAT(texts(&figures),
        ElementsAre("* Frame rate 60.0fps", "* Update 1.00ms", "Paths 0.50ms", "Draw 0.00ms", "Highlight 1.00ms",
            "Overlay 2.00ms", "Overlay highlight 3.00ms", "Finish 2.00ms", "Total 9.50ms", "* Nodes visited 12",
            "Nodes updated 3", "Nodes drawn 4.00k", "* Draw calls 7", "Instances 10.0k", "Triangles 1.24M",
            "* Memory on device 48.2MB"));
    EXPECT_THAT(texts(nullptr), ::testing::Each(::testing::EndsWith(" \u2013")));
    model->SetShowsTimes(false);
    model->SetShowsNodes(false);
    EXPECT_THAT(texts(&figures), SizeIs(5));
}

TEST_F(StatisticsTest, figuresStayForTheIntervalAndAreNeverAskedFor) {
    FrameStatistics figures = Figures();
    auto const first = Shapes(&figures);
    ASSERT_THAT(first, SizeIs(2));
    auto const renewed = [&](std::uint64_t p_milliseconds) {
        figures.visited += 100;
        clock.advance(p_milliseconds);
        static std::vector<Ogl::PrimitiveBuffer const*> before = first;
        auto const now = Shapes(&figures);
        bool const isNew = now.back() != before.back();
        before = now;
        return isNew;
    };
    EXPECT_FALSE(renewed(249));
    EXPECT_TRUE(renewed(1));
    EXPECT_FALSE(renewed(200));
    model->SetInterval(100);
    EXPECT_TRUE(renewed(0));
    model->SetInterval(0);
    EXPECT_TRUE(renewed(0));
    EXPECT_THAT(dispatcher.redraws, SizeIs(0));
    EXPECT_FALSE(root->Tracker().Modified() && Update(root).updated > 0) << "drawing changes nothing";
    auto const before = Shapes(&figures);
    EXPECT_EQ(Shapes(&figures), before) << "the same figures";
    for (std::function<void()> const& change : std::vector<std::function<void()>>{[&] { model->SetShowsNodes(false); },
             [&] { schema.textColor = Qt::darkBlue; }, [&] { capabilities.pixelRatio = 2; }}) {
        model->SetInterval(1000);
        auto const former = Shapes(&figures);
        change();
        EXPECT_NE(Shapes(&figures), former) << "what the user changes shows at once";
    }
    FrameStatistics const other = Figures();
    EXPECT_NE(Shapes(&other), Shapes(&figures)) << "another view";
}

TEST_F(StatisticsCostTest, aSteadyFrameAllocatesNothingAndTakesTwoDrawCalls) {
    FrameStatistics const figures = Figures();
    model->SetVisible(false);
    Update(root);
    Draw(&figures);
    std::size_t const without = Draw(&figures);
    model->SetVisible(true);
    Update(root);
    EXPECT_GT(Draw(&figures), without);
    for (int i = 0; i < 2; ++i)
        Draw(&figures);
    EXPECT_EQ(Draw(&figures), without);
    agl.ResetStatistics();
    Draw(&figures);
    EXPECT_EQ(agl.GetStatistics().drawCalls, 2U);
}

} // namespace
} // namespace Qor::Chart::Render
