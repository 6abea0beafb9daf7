#include "apps/qorview/Program.h"

#include "apps/qorview/MainWindow.h"
#include "apps/qorview/PictureFile.h"
#include "apps/qorview/ProgressLine.h"
#include "apps/qorview/TreePrinter.h"
#include "apps/qorview/UsageError.h"
#include "framework/model/Statistics.h"
#include "framework/qordebug/highrestimer.h"
#include "host/HostError.h"
#include "host/Picker.h"
#include "host/WindowPixels.h"
#include "render/pick/Selector.h"

#include <exception>
#include <iostream>
#include <list>
#include <new>
#include <string>
#include <utility>

namespace Qor::Chart::QorView {

namespace {

int Complain(int p_code, char const* p_sentence) noexcept {
    try {
        std::cerr << "qorview: " << p_sentence << std::endl;
    } catch (...) { // standard error is gone: the exit code has to do
    }
    return p_code;
}

/// The pixel of a picture that has its origin in the lower left corner.
Types::Pos FramebufferPixel(Types::Pos const& p_pixel, Types::Size const& p_size) {
    return Host::WindowPixels{p_size, 1.0}.ToFramebuffer(p_pixel.x + 0.5, p_pixel.y + 0.5);
}

} // namespace

int Program::Main(int p_argc, char const* const* p_argv) noexcept {
    try {
        if (std::optional<Options> options = Options::Parse(p_argc, p_argv)) {
            if (options->OpensWindow())
                return MainWindow::Run(*options);
            Program(std::move(*options)).Run();
        }
        if (!std::cout.flush())
            return Complain(Failure, "Standard output cannot be written to; give it a place that has room.");
        return Success;
    } catch (UsageError const& error) {
        return Complain(Misuse, error.what());
    } catch (std::bad_alloc const&) {
        return Complain(Failure, "There is not enough memory for this; try a smaller picture or a smaller file.");
    } catch (std::exception const& error) {
        return Complain(Failure, error.what());
    } catch (...) {
        return Complain(
            Failure, "Something failed and did not say what; run it again with --backend recorder to see where.");
    }
}

Program::Program(Options p_options) : _options(std::move(p_options)) {}

void Program::Run() {
    std::optional<PictureFile> picture;
    if (!_options.png.empty())
        picture.emplace(_options.png);
    _offscreen = std::make_unique<Host::Offscreen>(_options.size, _options.samples, _options.device);
    SetUp();

    // The importer keeps the files in memory until the first frame has taken them up.
    Host::Importer importer(_offscreen->GetScene().Symbols());
    for (std::string const& file : _options.files)
        ImportFile(importer, file);
    if (_options.panes || _options.hover)
        Prepare();
    DrawFrames(picture ? &*picture : nullptr);
    if (_options.pick)
        Pick();
    Tell();
}

void Program::SetUp() {
    Types::Schema& schema = _offscreen->GetScene().Schema();
    schema.clearColor = _options.background;
    schema.pointSize = 5;
    schema.lineWidth = 1.5F;
    _offscreen->Driver().SetShowBounds(_options.bounds);
    Host::Camera& camera = _offscreen->GetCamera();
    camera.SetProjectionMode(_options.projection);
    camera.SetUpAxis(_options.up);
    camera.Look(_options.azimuth, _options.elevation);
    if (_options.panes)
        _panes = std::make_unique<PaneGrid>(_offscreen->GetScene(), _options);
    if (!_options.statistics)
        return;
    Core::Ptr<Model::Statistics> const statistics = Core::MakeNode<Model::Statistics>();
    statistics->SetInterval(0);
    _offscreen->GetScene().Add(statistics);
}

void Program::ImportFile(Host::Importer& p_importer, std::string const& p_file) {
    qordebug::highrestimer<2> const time;
    ProgressLine line("Reading " + p_file);
    Host::Importer::Result const result = p_importer.Import(p_file, [&line](double p_part) {
        line.Show(p_part);
        return true;
    });
    if (_panes)
        _panes->Content().Add(result.root);
    else
        _offscreen->GetScene().Add(result.root);
    _summary.files.push_back({p_file, result.groups, result.objects, result.styles, result.triangles, result.lines,
        result.points, result.dropped, static_cast<double>(time.elapsed()) / 1000});
}

/// What must know the scene's boxes before the first frame.
void Program::Prepare() {
    _offscreen->Fit();
    _prepared = _offscreen->Driver().Statistics();
    if (_panes)
        _panes->Fit(_offscreen->Viewport());
    if (!_options.hover)
        return;
    _input = std::make_unique<Host::InputDispatcher>(_offscreen->GetScene());
    _input->SetView(_offscreen->GetCamera(), _offscreen->Viewport());
    _input->PointerMoved(FramebufferPixel(*_options.hover, _options.size));
}

void Program::Orbit(double p_degrees) {
    if (_panes)
        _panes->Orbit(p_degrees);
    _offscreen->GetCamera().Orbit(p_degrees, 0);
}

void Program::DrawFrames(PictureFile const* p_picture) {
    for (unsigned frame = 1; frame <= _options.frames; ++frame) {
        if (frame > 1 && _options.spin)
            Orbit(360.0 / _options.frames);
        _offscreen->Frame();
        Render::FrameStatistics statistics = _offscreen->Driver().Statistics();
        if (frame == 1) {
            statistics.visited += _prepared.visited;
            statistics.updated += _prepared.updated;
            statistics.updateMilliseconds += _prepared.updateMilliseconds;
            statistics.pathMilliseconds += _prepared.pathMilliseconds;
        }
        _summary.frames.push_back(statistics);
    }
    if (p_picture) {
        if (_options.statistics && _options.frames == 1) // figures are those of the frame before
            _offscreen->Frame();
        p_picture->Write(_offscreen->Read());
        _summary.picture = _options.png;
    }
}

void Program::Pick() {
    Host::Picker picker(_offscreen->GetScene());
    PickReport report;
    report.pixel = *_options.pick;
    report.hits = picker.Pick(
        _offscreen->GetCamera(), _offscreen->Viewport(), {FramebufferPixel(*_options.pick, _options.size), {1, 1}});
    report.visited = picker.Visited();
    report.tested = picker.Tested();
    for (Render::HitRecord const& hit : report.hits) {
        std::list<Render::SelectRecord> const records = Render::Selector::RecordsOf(hit);
        if (!records.empty()) {
            report.selection = records.front();
            break;
        }
    }
    _summary.pick = std::move(report);
}

void Program::Tell() {
    Host::Scene& scene = _offscreen->GetScene();
    if (_options.tree)
        TreePrinter(std::cout).Print(scene.Visual());
    _summary.nodes = TreePrinter::Count(scene.Visual());
    _summary.reports = scene.Dispatcher().ReportCount();
    _summary.device = _offscreen->DeviceName();
    _summary.size = _options.size;
    _summary.listFrames = _options.listFrames;
    if (_options.json)
        _summary.WriteJson(std::cout);
    else
        _summary.WriteText(std::cout);
}

} // namespace Qor::Chart::QorView
