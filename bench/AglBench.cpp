#include "bench/Measurement.h"
#include "bench/PlainGl.h"

#include "bench/peers/common.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Context.h"
#include "framework/ogl/OffscreenTarget.h"
#include "framework/ogl/OpenGlBackend.h"
#include "framework/ogl/RecorderBackend.h"

#include <benchmark/benchmark.h>
#include <epoxy/gl.h>
#include <nlohmann/json.hpp>

#include <QImage>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Bench {

namespace {

using namespace Ogl::Tokens;

constexpr std::size_t Objects = 100000;
constexpr std::size_t Pairs = 20000;

// ------------------------------------------------------------------------------------------------------------ the scene

std::shared_ptr<Ogl::PrimitiveBuffer const> MakeShape(
    Ogl::Token p_kind, std::vector<Types::Vector3_Base<float>> p_positions, std::vector<std::uint32_t> p_indices) {
    Ogl::VertexData data;
    data.positions = std::move(p_positions);
    return std::make_shared<Ogl::PrimitiveBuffer>(std::make_shared<Ogl::IndexBuffer>(p_kind, std::move(p_indices)),
        std::make_shared<Ogl::VertexBuffer>(std::move(data)));
}

/// A cube, an octahedron, a square and three lines.
std::vector<std::shared_ptr<Ogl::PrimitiveBuffer const>> MakeShapes() {
    peer::Mesh const cube = peer::makeCube();
    std::vector<Types::Vector3_Base<float>> corners;
    for (std::size_t i = 0; i < cube.pos.size(); i += 3)
        corners.emplace_back(cube.pos[i], cube.pos[i + 1], cube.pos[i + 2]);
    float const h = peer::kHalf;
    std::vector<Types::Vector3_Base<float>> const tips = {
        {h, 0, 0}, {-h, 0, 0}, {0, h, 0}, {0, -h, 0}, {0, 0, h}, {0, 0, -h}};
    return {MakeShape(AGL_TRIANGLES, corners, cube.idx),
        MakeShape(AGL_TRIANGLES, tips, {0, 2, 4, 2, 1, 4, 1, 3, 4, 3, 0, 4, 2, 0, 5, 1, 2, 5, 3, 1, 5, 0, 3, 5}),
        MakeShape(AGL_TRIANGLES, {{-h, -h, 0}, {h, -h, 0}, {h, h, 0}, {-h, h, 0}}, {0, 1, 2, 0, 2, 3}),
        MakeShape(AGL_LINES, tips, {0, 1, 2, 3, 4, 5})};
}

/// The leaves that the programs in bench/peers draw. Mixed ones differ from their neighbours in shape and state.
std::vector<Object> MakeObjects(std::size_t p_count, bool p_isMixed) {
    std::vector<Object> objects;
    peer::Rng random(7);
    for (peer::Leaf const& leaf : peer::makeLeaves(p_count)) {
        Object& object = objects.emplace_back();
        object.modelView = Types::Matrix4::Translation({leaf.x, leaf.y, leaf.z - peer::kEyeZ});
        std::transform(object.modelView.Data(), object.modelView.Data() + 16, object.floats.begin(),
            [](double p_element) { return static_cast<float>(p_element); });
        object.color = {leaf.r, leaf.g, leaf.b, 1};
        if (p_isMixed) {
            auto const coin = [&random] { return random.next() < 0.5F; };
            object.shape = static_cast<std::size_t>(4 * random.next());
            object.state = {coin(), coin(), coin()};
            object.color.alpha = 0.5F;
        }
    }
    return objects;
}

Types::Matrix4 Projection() {
    return Types::Matrix4::Perspective(
        static_cast<double>(peer::kFovY), 1, static_cast<double>(peer::kNear), static_cast<double>(peer::kFar));
}

/// Everything that one frame of the scene takes, drawn by Agl.
class AglPicture {
public:
    explicit AglPicture(std::unique_ptr<Ogl::Backend> p_backend) : _agl(std::move(p_backend)) {
        _agl.Viewport({0, 0, peer::kView, peer::kView});
        _agl.MatrixMode(AGL_PROJECTION);
        _agl.LoadMatrix(Projection());
        _agl.MatrixMode(AGL_MODELVIEW);
        _agl.Enable(AGL_DEPTH_TEST);
        _agl.BlendFunc(AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA);
    }
    Ogl::Agl& Graphics() { return _agl; }

    void Draw(PlainGl::Shapes p_shapes, std::span<Object const> p_objects, bool p_isMixed) {
        auto const set = [this](Ogl::Token p_capability, bool p_isOn) {
            p_isOn ? _agl.Enable(p_capability) : _agl.Disable(p_capability);
        };
        _agl.BeginFrame();
        _agl.Clear(AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT);
        for (Object const& object : p_objects) {
            if (p_isMixed) {
                set(AGL_BLEND, object.state.isBlended);
                set(AGL_CULL_FACE, object.state.isCulled);
                _agl.DepthMask(object.state.writesDepth);
            }
            _agl.LoadMatrix(object.modelView);
            _agl.Color(object.color);
            _agl.Draw(p_shapes[object.shape]);
        }
        _agl.Disable(AGL_BLEND);
        _agl.Disable(AGL_CULL_FACE);
        _agl.DepthMask(true);
        _agl.EndFrame();
    }

private:
    Ogl::Agl _agl;
};

/// Agl and plain OpenGL side by side in one compatibility context.
struct Device {
    Ogl::Context context{Ogl::Context::Profile::Compatibility};
    Ogl::OffscreenTarget target{peer::kView, peer::kView};
    std::vector<std::shared_ptr<Ogl::PrimitiveBuffer const>> shapes = MakeShapes();
    AglPicture picture{std::make_unique<Ogl::OpenGlBackend>()};
    std::optional<PlainGl> plain;

    Device() {
        target.Bind();
        glViewport(0, 0, peer::kView, peer::kView);
        plain.emplace(shapes, Projection());
    }
    /// The share of the pixels on which two pictures disagree visibly.
    static double Difference(QImage const& p_a, QImage const& p_b) {
        int differing = 0;
        for (int y = 0; y < p_a.height(); ++y) {
            for (int x = 0; x < p_a.width(); ++x) {
                QColor const a = p_a.pixelColor(x, y);
                QColor const b = p_b.pixelColor(x, y);
                int const most = std::max(
                    {std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
                differing += most > 8 ? 1 : 0;
            }
        }
        return differing / static_cast<double>(p_a.width() * p_a.height());
    }
};

/// A device, or the reason why there is none as the result of the benchmark.
std::unique_ptr<Device> MakeDevice(benchmark::State& p_state) {
    try {
        return std::make_unique<Device>();
    } catch (Ogl::ContextError const& error) {
        p_state.SkipWithError(error.what());
        return nullptr;
    }
}

// ------------------------------------------------------------------------------------------------- without any driver

void PushAndPop(benchmark::State& p_state, void (*p_ours)(Ogl::Agl&), void (*p_plain)(std::size_t)) {
    auto const device = MakeDevice(p_state);
    if (!device)
        return;
    Ogl::Agl agl(std::make_unique<Ogl::RecorderBackend>());
    Measurement measurement("ns a pair", 1e9, 50);
    for (auto _ : p_state) {
        p_state.SetIterationTime(measurement.Ours(
            [&] {
                for (std::size_t i = 0; i < Pairs; ++i)
                    p_ours(agl);
            },
            Pairs));
        measurement.Reference(
            "the same calls to OpenGL", [&] { p_plain(Pairs); }, Pairs);
    }
    measurement.Publish(p_state);
}
void PushAttributes(benchmark::State& p_state) {
    PushAndPop(
        p_state,
        [](Ogl::Agl& p_agl) {
            p_agl.PushAttrib(AGL_ALL_ATTRIB_BITS);
            p_agl.LineWidth(2);
            p_agl.PopAttrib();
        },
        &PlainGl::PushAndPopAttributes);
}
BENCHMARK(PushAttributes)->Name("state, push, change and pop")->UseManualTime()->Iterations(51);

void PushMatrices(benchmark::State& p_state) {
    PushAndPop(
        p_state,
        [](Ogl::Agl& p_agl) {
            p_agl.PushMatrix();
            p_agl.Translate(1, 2, 3);
            p_agl.PopMatrix();
        },
        &PlainGl::PushAndPopMatrices);
}
BENCHMARK(PushMatrices)->Name("matrix, push, translate and pop")->UseManualTime()->Iterations(51);

/// On the back end that only counts.
void RecordDraw(benchmark::State& p_state) {
    auto const shapes = MakeShapes();
    auto const objects = MakeObjects(Objects, false);
    AglPicture picture(std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters));
    std::vector<std::pair<std::array<float, 16>, Types::Color4f>> copies;
    Measurement measurement("ns a draw", 1e9, 120);
    for (auto _ : p_state) {
        p_state.SetIterationTime(measurement.Ours([&] { picture.Draw(shapes, objects, false); }, Objects));
        measurement.Reference(
            "matrices and colours copied by a plain loop",
            [&] {
                copies.clear();
                for (Object const& object : objects)
                    copies.emplace_back(object.floats, object.color);
                benchmark::DoNotOptimize(copies.data());
            },
            Objects);
    }
    measurement.Publish(p_state);
}
BENCHMARK(RecordDraw)->Name("record of a draw, 1e5")->UseManualTime()->Iterations(15);

// ------------------------------------------------------------------------------------------------------- with a driver

enum class Against { PlainCalls, OneInstancedDraw };

/// p_measurement gets whole frames of the scene, ours and the reference's. Both must show the same.
void DrawFrames(
    benchmark::State& p_state, std::size_t p_objects, bool p_isMixed, Against p_against, Measurement p_measurement) {
    auto const device = MakeDevice(p_state);
    if (!device)
        return;
    auto const objects = MakeObjects(p_objects, p_isMixed);
    auto const ours = [&] {
        device->picture.Draw(device->shapes, objects, p_isMixed);
        glFinish();
    };
    auto const reference = [&] {
        if (p_against == Against::PlainCalls)
            device->plain->DrawEach(objects, p_isMixed);
        else
            device->plain->DrawInstanced(objects);
    };
    ours();
    QImage const picture = device->target.Read();
    reference();
    if (Device::Difference(picture, device->target.Read()) > 0.01)
        p_state.SkipWithError("both must draw the same picture");
    for (auto _ : p_state) {
        p_state.SetIterationTime(p_measurement.Ours(ours, static_cast<double>(p_objects)));
        p_measurement.Reference(
            p_against == Against::PlainCalls ? "glLoadMatrixf, glColor4f, glDrawElements each" : "one instanced draw",
            reference, static_cast<double>(p_objects));
    }
    if (std::string const errors = device->picture.Graphics().CheckError(); !errors.empty())
        p_state.SkipWithError(errors.c_str());
    p_measurement.Publish(p_state);
}

void DrawOneShape(benchmark::State& p_state) {
    Measurement measurement("us an object", 1e6, 0);
    measurement.BoundByReference(1.5);
    DrawFrames(p_state, Objects, false, Against::OneInstancedDraw, measurement);
}
BENCHMARK(DrawOneShape)->Name("draws with OpenGL, 1e5 of one shape")->UseManualTime()->Iterations(9);

void DrawMixed(benchmark::State& p_state) {
    Measurement measurement("us an object", 1e6, 0);
    measurement.BoundByReference(1);
    DrawFrames(p_state, Objects / 10, true, Against::PlainCalls, measurement);
}
BENCHMARK(DrawMixed)->Name("draws with OpenGL, 1e4 mixed")->UseManualTime()->Iterations(5);

// ------------------------------------------------------------------------------------- with a driver that does nothing

/// Mesa reads this once a process: then the driver does nothing, and what is left is the cost of the calls.
constexpr char const* NoOperation = "GALLIUM_NOOP";

/// Measures in a process of its own, where the driver does nothing.
void InOwnProcess(benchmark::State& p_state, std::string const& p_name) {
    std::string const command = std::string(NoOperation) + "=true '" +
        std::filesystem::read_symlink("/proc/self/exe").string() + "' --json '--benchmark_filter=^" + p_name + "/'";
    std::string answer;
    if (FILE* const pipe = popen(command.c_str(), "r")) {
        for (int character = std::fgetc(pipe); character != EOF; character = std::fgetc(pipe))
            answer += static_cast<char>(character);
        pclose(pipe);
    }
    auto const line = nlohmann::json::parse(answer, nullptr, false);
    if (line.is_discarded() || line.contains("error")) {
        p_state.SkipWithError(line.is_object() ? line["error"].get<std::string>().c_str() : "the process gave nothing");
        return;
    }
    for (auto _ : p_state)
        p_state.SetIterationTime(1);
    for (char const* const counter : {"figure", "bound", "reference", "ratio"})
        p_state.counters[counter] = line.at(counter).get<double>();
    p_state.SetLabel(line["unit"].get<std::string>() + "|" + line["against"].get<std::string>());
}

void DrawWithoutDriver(
    benchmark::State& p_state, std::string const& p_name, bool p_isMixed, Measurement const& p_measurement) {
    if (std::getenv(NoOperation) == nullptr) {
        InOwnProcess(p_state, p_name);
        return;
    }
    DrawFrames(p_state, Objects, p_isMixed, Against::PlainCalls, p_measurement);
}

constexpr char const* OneShapeWithoutDriver = "draws, driver does nothing, 1e5 of one shape";
void DrawOneShapeWithoutDriver(benchmark::State& p_state) {
    DrawWithoutDriver(p_state, OneShapeWithoutDriver, false, Measurement("ns an object", 1e9, 150));
}
BENCHMARK(DrawOneShapeWithoutDriver)->Name(OneShapeWithoutDriver)->UseManualTime()->Iterations(15);

constexpr char const* MixedWithoutDriver = "draws, driver does nothing, 1e5 mixed";
void DrawMixedWithoutDriver(benchmark::State& p_state) {
    Measurement measurement("ns an object", 1e9, 0);
    measurement.BoundByReference(1);
    DrawWithoutDriver(p_state, MixedWithoutDriver, true, measurement);
}
BENCHMARK(DrawMixedWithoutDriver)->Name(MixedWithoutDriver)->UseManualTime()->Iterations(15);

} // namespace

} // namespace Bench
