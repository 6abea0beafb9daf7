#include "apps/qorview/Options.h"

#include "apps/qorview/UsageError.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <iostream>
#include <map>
#include <string_view>

namespace Qor::Chart::QorView {

namespace {

using Device = Host::Offscreen::Device;
using Render::ProjectionMode;
using UpAxis = Host::Camera::UpAxis;

constexpr unsigned MaxFrames = 1'000'000;
constexpr int MaxSamples = 64;
constexpr int MaxPanes = 8;

std::map<std::string, Device> const Devices{{"gl", Device::OpenGl}, {"recorder", Device::Recorder}};
std::map<std::string, ProjectionMode> const Projections{
    {"perspective", ProjectionMode::Perspective}, {"orthographic", ProjectionMode::Orthographic}};
std::map<std::string, UpAxis> const UpAxes{{"y", UpAxis::Y}, {"z", UpAxis::Z}};

/// A whole text as a number; nothing when anything else is in it.
template <class T>
std::optional<T> Number(std::string_view p_text) {
    T number{};
    auto const [end, error] = std::from_chars(p_text.data(), p_text.data() + p_text.size(), number);
    if (error != std::errc() || end != p_text.data() + p_text.size())
        return std::nullopt;
    return number;
}

/// Two numbers with a sign between them.
template <class T>
std::optional<std::pair<T, T>> Pair(std::string_view p_text, char p_between) {
    std::size_t const at = p_text.find(p_between);
    if (at == std::string_view::npos)
        return std::nullopt;
    std::optional<T> const first = Number<T>(p_text.substr(0, at));
    std::optional<T> const second = Number<T>(p_text.substr(at + 1));
    if (!first || !second)
        return std::nullopt;
    return std::pair(*first, *second);
}

Types::Size ReadSize(std::string const& p_text) {
    constexpr long maxSide = Host::Offscreen::MaxSide;
    auto const sides = Pair<long>(p_text, 'x');
    bool const isGood = sides && sides->first >= 1 && sides->second >= 1 && sides->first <= maxSide &&
        sides->second <= maxSide && sides->first * sides->second <= Host::Offscreen::MaxPixels;
    if (!isGood)
        throw UsageError("--size \"" + p_text + "\" is no picture size; give WIDTHxHEIGHT in pixels, each from 1 to " +
            std::to_string(maxSide) + " and 64 million pixels at most, such as 1280x800.");
    return {static_cast<int>(sides->first), static_cast<int>(sides->second)};
}

Types::Size ReadPanes(std::string const& p_text) {
    auto const cells = Pair<int>(p_text, 'x');
    bool const isGood =
        cells && cells->first >= 1 && cells->second >= 1 && cells->first <= MaxPanes && cells->second <= MaxPanes;
    if (!isGood)
        throw UsageError("--panes \"" + p_text + "\" is no grid; give COLUMNSxROWS, each from 1 to " +
            std::to_string(MaxPanes) + ", such as 2x2.");
    return {cells->first, cells->second};
}

/// A pixel of a picture of that size.
Types::Pos ReadPixel(std::string const& p_option, std::string const& p_text, Types::Size const& p_size) {
    auto const pixel = Pair<int>(p_text, ',');
    bool const isInside = pixel && pixel->first >= 0 && pixel->second >= 0 && pixel->first < p_size.width &&
        pixel->second < p_size.height;
    if (!isInside)
        throw UsageError(p_option + " \"" + p_text +
            "\" is no pixel of the picture; give X,Y in whole pixels from the upper left corner, X from 0 to " +
            std::to_string(p_size.width - 1) + " and Y from 0 to " + std::to_string(p_size.height - 1) + ".");
    return {pixel->first, pixel->second};
}

void ReadView(std::string const& p_text, Options& p_options) {
    if (auto const view = Host::Camera::ViewOf(p_text)) {
        Host::Camera camera;
        camera.Look(*view);
        p_options.azimuth = camera.Azimuth();
        p_options.elevation = camera.Elevation();
        return;
    }
    auto const angles = Pair<double>(p_text, ',');
    bool const isGood = angles && std::isfinite(angles->first) && std::fabs(angles->second) <= 90;
    if (!isGood)
        throw UsageError("--view \"" + p_text +
            "\" is no direction to look from; give AZIMUTH,ELEVATION in degrees, the elevation from -90 to 90, such as "
            "35,27, or front, back, left, right, top, bottom or isometric.");
    p_options.azimuth = angles->first;
    p_options.elevation = angles->second;
}

QColor ReadColor(std::string const& p_text) {
    QColor const color(QString::fromStdString(p_text));
    if (!color.isValid())
        throw UsageError("--background \"" + p_text + "\" is no colour; give a name or a value such as \"#eef2f7\".");
    return color;
}

unsigned ReadCount(std::string const& p_option, std::string const& p_text, unsigned p_least, unsigned p_most) {
    std::optional<unsigned> const count = Number<unsigned>(p_text);
    if (!count || *count < p_least || *count > p_most)
        throw UsageError(p_option + " \"" + p_text + "\" is out of range; give a whole number from " +
            std::to_string(p_least) + " to " + std::to_string(p_most) + ".");
    return *count;
}

template <class T>
T ReadChoice(std::string const& p_option, std::string const& p_text, std::map<std::string, T> const& p_choices) {
    auto const found = p_choices.find(p_text);
    if (found != p_choices.end())
        return found->second;
    std::string names;
    for (auto const& [name, value] : p_choices)
        names += (names.empty() ? "" : " or ") + name;
    throw UsageError(p_option + " \"" + p_text + "\" is not known; give " + names + ".");
}

/// What a parser error says, as one sentence.
std::string Sentence(CLI::ParseError const& p_error) {
    std::string text = p_error.what();
    for (char& sign : text)
        sign = sign == '\n' ? ' ' : sign;
    while (!text.empty() && (text.back() == '.' || text.back() == ' '))
        text.pop_back();
    return text + "; see qorview --help.";
}

void Check(Options const& p_options) {
    if (p_options.files.empty() && !p_options.OpensWindow())
        throw UsageError("No file was given; name at least one model file, or see qorview --help.");
    if (p_options.spin && p_options.png.empty() && !p_options.listFrames)
        throw UsageError(
            "--spin turns the camera while frames are drawn; say how many with --frames, or leave it out.");
    if (!p_options.png.empty() && p_options.device == Device::Recorder)
        throw UsageError("The recorder draws no pixels, so it cannot write --png; leave out --backend recorder.");
    if (p_options.json && p_options.tree)
        throw UsageError("--json and --tree cannot be combined; give one of them.");
}

} // namespace

std::optional<Options> Options::Parse(int p_argc, char const* const* p_argv) {
    Options options;
    std::string size;
    std::string view;
    std::string background;
    std::string samples;
    std::string frames;
    std::string panes;
    std::string pick;
    std::string hover;
    std::string backend = "gl";
    std::string projection = "perspective";
    std::string up = "y";

    CLI::App app(
        "Shows model files (glTF, OBJ, PLY, STL, FBX and more) in a window, or an empty one to drop them on. When a\n"
        "picture is to be written or something printed, no window opens and no display is needed.\n"
        "Exit codes: 0 all is well, 1 something could not be done, 2 the command line makes no sense.",
        "qorview");
    app.add_option("FILE", options.files, "Model files; all are shown in one scene");
    app.add_option("--png", options.png, "Write the picture to this file, and open no window")->type_name("OUT");
    app.add_option("--size", size, "Size of the picture in pixels (1280x800)")->type_name("WxH");
    app.add_option("--samples", samples, "Samples a pixel to smooth edges with, 0 for none (4)")->type_name("N");
    app.add_option("--background", background, "Colour behind the scene, by name or value (#eef2f7)")
        ->type_name("COLOR");
    app.add_option("--view", view,
           "Degrees around the up axis, and above the horizon, to look from (35,27); or front, back, left, right, top, "
           "bottom, isometric")
        ->type_name("A,E");
    app.add_option("--up", up, "Which axis of the files points up: y or z (y)")->type_name("AXIS");
    app.add_option("--projection", projection, "perspective or orthographic (perspective)")->type_name("KIND");
    app.add_option("--frames", frames, "Draw this many frames and print what each one cost")->type_name("N");
    app.add_flag("--spin", options.spin, "Turn the camera once around the scene in these frames");
    app.add_flag("--bounds", options.bounds, "Outline the box of every node");
    app.add_flag("--statistics", options.statistics, "Show the figures of the frames in front of the scene");
    app.add_option("--panes", panes, "Show the scene in so many columns and rows of panes, each seen from elsewhere")
        ->type_name("CxR");
    app.add_option("--pick", pick,
           "Print what lies under this pixel of the picture, best first, and what it selects; counted from the upper "
           "left "
           "corner, as image viewers do")
        ->type_name("X,Y");
    app.add_option("--hover", hover, "Draw with the pointer at this pixel, counted in the same way")->type_name("X,Y");
    app.add_flag("--tree", options.tree, "Print the visual tree");
    app.add_flag("--json", options.json, "Print the summary as JSON");
    app.add_option("--backend", backend, "gl draws with OpenGL, recorder only counts and needs no OpenGL (gl)")
        ->type_name("NAME");
    app.set_version_flag("--version", "qorview " QOR_VERSION);

    try {
        app.parse(p_argc, p_argv);
    } catch (CLI::CallForHelp const&) {
        std::cout << app.help();
        return std::nullopt;
    } catch (CLI::CallForVersion const& version) {
        std::cout << version.what() << '\n';
        return std::nullopt;
    } catch (CLI::ParseError const& error) {
        throw UsageError(Sentence(error));
    }
    if (app.count("--png") > 0 && options.png.empty())
        throw UsageError("--png needs the name of a file to write.");
    if (app.count("--size") > 0)
        options.size = ReadSize(size);
    if (app.count("--view") > 0)
        ReadView(view, options);
    if (app.count("--background") > 0)
        options.background = ReadColor(background);
    if (app.count("--samples") > 0)
        options.samples = static_cast<int>(ReadCount("--samples", samples, 0, MaxSamples));
    if (app.count("--panes") > 0)
        options.panes = ReadPanes(panes);
    if (app.count("--pick") > 0)
        options.pick = ReadPixel("--pick", pick, options.size);
    if (app.count("--hover") > 0)
        options.hover = ReadPixel("--hover", hover, options.size);
    options.listFrames = app.count("--frames") > 0;
    if (options.listFrames)
        options.frames = ReadCount("--frames", frames, 1, MaxFrames);
    options.device = ReadChoice("--backend", backend, Devices);
    options.projection = ReadChoice("--projection", projection, Projections);
    options.up = ReadChoice("--up", up, UpAxes);
    Check(options);
    return options;
}

} // namespace Qor::Chart::QorView
