#pragma once

#include "apps/qorview/Options.h"
#include "apps/qorview/Summary.h"
#include "host/Importer.h"
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
    void ImportFile(Host::Importer& p_importer, std::string const& p_file);
    void DrawFrames(PictureFile const* p_picture);
    void Tell();

    Options _options;
    std::unique_ptr<Host::Offscreen> _offscreen;
    Summary _summary;
};

} // namespace Qor::Chart::QorView
