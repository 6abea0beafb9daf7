// Values that nobody should give, for every property of every class of model nodes, in a scene that is drawn and
// picked.

#include "tests/host/HostileValues.h"

#include "host/FrameDriver.h"
#include "host/Picker.h"
#include "host/Scene.h"
#include "framework/model/Bitmap.h"
#include "framework/model/ColorPicker.h"
#include "framework/model/ImageButton.h"
#include "framework/model/Legend.h"
#include "framework/model/NodeTypes.h"
#include "framework/model/Pane.h"
#include "framework/model/RenderStyle.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SelectionList.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Statistics.h"
#include "framework/model/TextBox.h"
#include "framework/model/Toolbar.h"
#include "framework/ogl/RecorderBackend.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <limits>

namespace Qor::Chart::Host {
namespace {

/// One node of each class, each where it shows.
struct Stage {
    Stage() {
        scene.Add(pane);
        style->Add(Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Sphere)));
        for (Model::NodeType const& type : Model::NodeTypes()) {
            Core::Ptr<Model::ModelNode> node = type.make();
            if (auto const symbol = Core::DynamicCast<Model::Symbol>(node))
                Core::DynamicCast<Model::SimpleObject>(*style->begin())->SetSymbol(symbol);
            else if (auto const entry = Core::DynamicCast<Model::LegendEntry>(node))
                legend->Add(entry);
            else if (type.name == "Action")
                bar->Add(node);
            else if (type.name == "Pane")
                node = pane;
            else if (type.name == "RenderStyle")
                node = style;
            else if (type.name == "Legend")
                node = legend;
            else if (type.name == "Toolbar")
                node = bar;
            else
                style->Add(node);
            nodes.push_back(node);
        }
        for (Core::Ptr<Model::ModelNode> const& node : {Core::Ptr<Model::ModelNode>(style), {legend}, {bar}})
            pane->Add(node);
        Frame();
    }

    /// Looks at the scene as a window does, and asks what is under the pointer.
    void Frame() {
        static constexpr Types::Viewport<0> window(0, 0, 400, 300);
        driver.Frame(camera, window);
        for (Types::Pos const place : {Types::Pos(5, 5), Types::Pos(200, 150), Types::Pos(390, 290)})
            (void)Picker(scene).Pick(camera, window, {place, {2, 2}});
        EXPECT_EQ(scene.Graphics().Depths(), Ogl::StackDepths());
    }
    /// Two frames: what is reported in the first is a sentence, and not reported by the second.
    void Check(std::string const& p_what) {
        SCOPED_TRACE(p_what.substr(0, 200));
        Frame();
        for (Report const& report : scene.Dispatcher().Reports()) {
            EXPECT_EQ(report.kind, Report::Kind::Warning) << report.text;
            CheckSentence(report.text);
        }
        scene.Dispatcher().ClearReports();
        qordebug::CaptureScope const second(Utility::GetLogger());
        Frame();
        EXPECT_EQ(scene.Dispatcher().Reports().size(), 0U) << "reported by each frame";
        EXPECT_TRUE(second.texts().empty()) << "logged by each frame: " << second.texts().front();
    }
    static void CheckSentence(std::string const& p_text) {
        EXPECT_TRUE(p_text.size() > 10 && p_text.size() < 2200 && p_text.back() != '"') << p_text.substr(0, 2000);
    }

    Scene scene{std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters)};
    FrameDriver driver{scene};
    Camera camera;
    Core::Ptr<Model::Pane> pane = Core::MakeNode<Model::Pane>();
    Core::Ptr<Model::RenderStyle> style = Core::MakeNode<Model::RenderStyle>();
    Core::Ptr<Model::Legend> legend = Core::MakeNode<Model::Legend>();
    Core::Ptr<Model::Toolbar> bar = Core::MakeNode<Model::Toolbar>();
    std::vector<Core::Ptr<Model::ModelNode>> nodes; ///< of each class, in the order of `Model::NodeTypes`
};

constexpr double Infinite = std::numeric_limits<double>::infinity();
constexpr double Odd[] = {std::numeric_limits<double>::quiet_NaN(), Infinite, -Infinite, 1e308, -1e308, 1e-320, -1, 0};

template <class T>
std::vector<T> OddValues() {
    std::vector<T> values;
    if constexpr (std::is_same_v<T, double>)
        values.assign(std::begin(Odd), std::end(Odd));
    else if constexpr (std::is_same_v<T, int>)
        values = {0, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};
    else if constexpr (std::is_same_v<T, std::wstring>)
        values = {
            std::wstring(1, L'\0'), L"\xd800", std::wstring(1, static_cast<wchar_t>(0x7fffffff)), L"\x202e\x2066"};
    else if constexpr (std::is_same_v<T, std::vector<QColor>>)
        values = {{QColor()}, std::vector<QColor>(1000, QColor(1, 2, 3))};
    else if constexpr (std::is_same_v<T, QColor> || std::is_same_v<T, std::optional<QColor>>)
        values = {QColor(), QColor::fromRgbF(7, -7, 7, 0), QColor::fromHsv(-1, 0, 0)};
    else
        for (double const x : Odd) {
            if constexpr (std::is_same_v<T, Types::Vector2_Base<double>>) {
                values.push_back({x, 1});
            } else {
                values.push_back({Types::DefinedAs::Pixels, decltype(T::edge)(0), x});
                values.push_back({Types::DefinedAs::Fraction, decltype(T::edge)(1), x});
            }
        }
    return values;
}

using Done = std::function<void()>;

template <class Owner, class T>
void SetOddValues(Model::ModelNode& p_node, Model::PropertyInfo const& p_property, Done const& p_done) {
    auto* const owner = dynamic_cast<Owner*>(&p_node);
    auto const* const property = dynamic_cast<Model::Property<Owner, T> const*>(&p_property);
    if (!owner || !property)
        return;
    for (T const& value : OddValues<T>()) {
        property->Set(*owner, value);
        p_done();
    }
}
template <class Owner>
void SetOdd(Model::ModelNode& p_node, Model::PropertyInfo const& p_property, Done const& p_done) {
    SetOddValues<Owner, double>(p_node, p_property, p_done);
    SetOddValues<Owner, int>(p_node, p_property, p_done);
    SetOddValues<Owner, std::wstring>(p_node, p_property, p_done);
    SetOddValues<Owner, QColor>(p_node, p_property, p_done);
    SetOddValues<Owner, std::optional<QColor>>(p_node, p_property, p_done);
    SetOddValues<Owner, std::vector<QColor>>(p_node, p_property, p_done);
    SetOddValues<Owner, Types::Vector2_Base<double>>(p_node, p_property, p_done);
    SetOddValues<Owner, Types::XPosition>(p_node, p_property, p_done);
    SetOddValues<Owner, Types::YPosition>(p_node, p_property, p_done);
}

TEST(HostileValuesTest, noValueOfAnyPropertyStopsAFrameOrIsReportedAgainAndAgain) {
    qordebug::CaptureScope const quiet(Utility::GetLogger());
    Stage stage;
    std::string const long1 = std::string(1'000'000, 'x') + ".png";
    for (Core::Ptr<Model::ModelNode> const& node : stage.nodes) {
        for (Model::PropertyInfo const* const property : node->Properties()) {
            std::string const what = node->TypeName() + " " + property->Name() + " = ";
            std::vector<std::string> texts = TextsFor(*property);
            texts.push_back(long1);
            for (std::string const& text : texts) {
                if (std::string const refusal = Write(*node, *property, text); !refusal.empty())
                    Stage::CheckSentence(refusal);
                auto const begin = std::chrono::steady_clock::now();
                stage.Check(what + text);
                EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5)) << what;
                if (::testing::Test::HasFailure())
                    return;
            }
            Done const done = [&] { stage.Check(what + property->Text(*node)); };
            SetOdd<Model::RenderStyle>(*node, *property, done);
            SetOdd<Model::Legend>(*node, *property, done);
            SetOdd<Model::LegendEntry>(*node, *property, done);
            SetOdd<Model::Statistics>(*node, *property, done);
            SetOdd<Model::ColorPicker>(*node, *property, done);
            SetOdd<Model::ImageButton>(*node, *property, done);
            SetOdd<Model::TextBox>(*node, *property, done);
            SetOdd<Model::Toolbar>(*node, *property, done);
            if (::testing::Test::HasFailure())
                return;
            node->Reset(*property);
            stage.Check(what + "default");
        }
    }
    for (std::string const& text : quiet.texts(qordebug::severity::error))
        Stage::CheckSentence(text);
    EXPECT_TRUE(quiet.texts(qordebug::severity::ensure).empty())
        << ::testing::PrintToString(quiet.texts(qordebug::severity::ensure));
}

TEST(HostileValuesTest, tenThousandEntriesWhoseTargetsDieAreShownAndGo) {
    Stage stage;
    auto const list = Core::MakeNode<Model::SelectionList>();
    stage.pane->Add(list);
    std::vector<Core::Ptr<Model::ModelNode>> targets;
    auto const cube = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    for (int i = 0; i < 10'000; ++i) {
        targets.push_back(Core::MakeNode<Model::SimpleObject>(cube));
        auto const entry = Core::MakeNode<Model::LegendEntry>(std::to_wstring(i), targets.back());
        stage.legend->Add(entry);
        list->Select(targets.back());
        if (i % 2 == 0)
            stage.style->Add(targets.back());
    }
    EXPECT_EQ(list->Count(), 10'000U);
    stage.Check("targets that live");
    auto const begin = std::chrono::steady_clock::now();
    targets.clear();
    stage.Check("half of the targets gone");
    EXPECT_EQ(list->Selected().size(), 5'000U);
    stage.style->Clear();
    stage.Check("all targets gone");
    EXPECT_EQ(list->Count(), 0U);
    stage.legend->Clear();
    stage.Check("no entries");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

} // namespace
} // namespace Qor::Chart::Host
