#include "bench/Measurement.h"

#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/TextBox.h"
#include "framework/ogl/RecorderBackend.h"
#include "host/Camera.h"
#include "host/FrameDriver.h"
#include "host/InputDispatcher.h"
#include "host/Scene.h"
#include "render/events/EventInformation.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

namespace Bench {

namespace {

using namespace Qor::Chart;
using Key = Render::EventInformation::KeyCode;

constexpr std::size_t Short = 30;
constexpr std::size_t Long = 1'000'000;
constexpr int Keys = 50;

/// A window with a field that has the focus, the caret in the middle of its text.
struct FieldWindow {
    explicit FieldWindow(std::size_t p_length) {
        std::wstring text;
        while (text.size() < p_length)
            text += L"some words ";
        auto const pane = Core::MakeNode<Model::Pane>();
        auto const box = Core::MakeNode<Model::TextBox>(text, Model::TextBox::Mode::Editable);
        box->SetWidth(400);
        pane->Add(box);
        scene.Add(pane);
        Frame();
        input.KeyPressed(Key::KeyTab);
        input.KeyPressed(Key::KeyHome);
        for (int i = 0; i < 8; ++i)
            input.KeyPressed(Key::KeyRight, Render::EventInformation::ModifierControl);
        Frame();
    }
    void Frame() {
        input.SetView(camera, window);
        driver.Frame(camera, window);
    }

    Host::Scene scene{std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters)};
    Host::FrameDriver driver{scene};
    Host::InputDispatcher input{scene};
    Host::Camera camera;
    Types::Viewport<0> window{0, 0, 512, 512};
};

/// A field with a text of a megabyte, held against one with a few words.
/// @param p_bound  microseconds
template <class Action>
void Compare(benchmark::State& p_state, double p_bound, Action const& p_action) {
    FieldWindow brief(Short);
    FieldWindow extensive(Long);
    Measurement measurement("us", 1e6, p_bound);
    for (auto _ : p_state) {
        measurement.Reference(
            "30 characters", [&] { p_action(brief); }, Keys);
        p_state.SetIterationTime(measurement.Ours([&] { p_action(extensive); }, Keys));
    }
    measurement.Publish(p_state);
}

void TypeIntoField(benchmark::State& p_state) {
    constexpr double QuarterOfAFrame = 4000;
    Compare(p_state, QuarterOfAFrame, [](FieldWindow& p_window) {
        for (int i = 0; i < Keys; ++i) {
            p_window.input.KeyPressed(i % 2 == 0 ? int('A') : int(Key::KeyBackspace), 0, i % 2 == 0 ? L"a" : L"\b");
            p_window.Frame();
        }
    });
}
BENCHMARK(TypeIntoField)->Name("a key and a frame in a field of a megabyte")->UseManualTime()->Iterations(9);

void DrawField(benchmark::State& p_state) {
    constexpr double Bound = 100;
    Compare(p_state, Bound, [](FieldWindow& p_window) {
        for (int i = 0; i < Keys; ++i)
            p_window.Frame();
    });
}
BENCHMARK(DrawField)->Name("a frame of a field of a megabyte")->UseManualTime()->Iterations(9);

} // namespace

} // namespace Bench
