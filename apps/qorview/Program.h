#pragma once

#include "apps/qorview/Options.h"
#include "apps/qorview/PaneGrid.h"
#include "apps/qorview/Summary.h"
#include "host/Importer.h"
#include "host/InputDispatcher.h"
#include "host/Offscreen.h"

#include <memory>
#include <optional>

namespace Qor::Chart::QorView {

class PictureFile;

/// Imports the files, draws the frames, writes the picture and tells what was done.
class Program {
public:
    static constexpr int Success = 0;
    static constexpr int Failure = 1;
    static constexpr int Misuse = 2;

    /// The whole program: gives the exit code, after one sentence on standard error when it is not 0.
    static int Main(int p_argc, char const* const* p_argv) noexcept;

private:
    explicit Program(Options p_options);

    void Run();
    void SetUp();
    void ImportFile(Host::Importer& p_importer, std::string const& p_file);
    void Prepare();
    void Orbit(double p_degrees);
    void DrawFrames(PictureFile const* p_picture);
    void Pick();
    void Tell();

    Options _options;
    std::unique_ptr<Host::Offscreen> _offscreen;
    std::unique_ptr<Host::InputDispatcher> _input; ///< null without a pointer
    std::unique_ptr<PaneGrid> _panes; ///< null without panes
    Render::FrameStatistics _prepared; ///< of the update before the first frame, when there was one
    Summary _summary;
};

} // namespace Qor::Chart::QorView
