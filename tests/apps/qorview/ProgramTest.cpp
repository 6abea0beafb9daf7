// Runs the program as a user does, and looks at exit codes, messages and files.

#include <QImage>
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string const Data = fs::weakly_canonical(std::string(QOR_TEST_DATA) + "/../../examples/data").string() + "/";

struct Outcome {
    int code = -1; ///< 128 and more: ended by a signal
    std::string out;
    std::string err;
};

std::string Content(fs::path const& p_file) {
    std::ifstream file(p_file, std::ios::binary);
    return (std::ostringstream() << file.rdbuf()).str();
}

class QorViewTest : public testing::Test {
protected:
    void SetUp() override {
        std::string folder = (fs::temp_directory_path() / "qorview.XXXXXX").string();
        ASSERT_NE(mkdtemp(folder.data()), nullptr);
        home = folder;
    }
    void TearDown() override { fs::remove_all(home); }

    /// Runs the program with these words in the test's own folder, with more variables in its environment, and its standard
    /// output written elsewhere.
    Outcome Run(
        std::vector<std::string> const& p_words, std::string const& p_environment = "", std::string const& p_out = "") {
        std::string command = "cd '" + home.string() + "' && " + p_environment + " '" QOR_TEST_PROGRAM "'";
        for (std::string const& word : p_words)
            command += " '" + word + "'";
        std::string const out = p_out.empty() ? home.string() + ".out" : p_out;
        std::string const err = home.string() + ".err";
        command += " >'" + out + "' 2>'" + err + "'";
        int const status = std::system(command.c_str());
        Outcome outcome;
        outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        outcome.out = p_out.empty() ? Content(out) : "";
        outcome.err = Content(err);
        if (p_out.empty())
            fs::remove(out);
        fs::remove(err);
        return outcome;
    }

    std::string Write(std::string const& p_name, std::string const& p_content) {
        std::ofstream(home / p_name, std::ios::binary) << p_content;
        return p_name;
    }

    std::size_t FilesInHome() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(home), fs::directory_iterator()));
    }

    /// Whether the machine has OpenGL without a display.
    bool HasOpenGl() { return Run({Data + "bracket.obj", "--png", "probe.png", "--size", "8x8"}).code == 0; }

    fs::path home;
};

/// One line, written by the program, that ends as a sentence does.
auto IsOneSentence() {
    return AllOf(StartsWith("qorview: "), EndsWith(".\n"), Not(ContainsRegex("\n.")));
}

TEST_F(QorViewTest, wrongCommandLinesAreOneSentenceAndExitCode2) {
    std::string const file = Data + "bracket.obj";
    struct Case {
        std::vector<std::string> words;
        std::string named;
    };
    std::vector<Case> cases{{{"--tree"}, "--help"}, {{file, "--spin"}, "--frames"},
        {{file, "--nonsense"}, "--nonsense"}, {{file, "--png", ""}, "--png"}, {{file, "--frames", "-3"}, "--frames"},
        {{file, "--backend", "magic"}, "magic"}, {{file, "--projection", "fisheye"}, "fisheye"},
        {{file, "--view", "0,91"}, "0,91"}, {{file, "--view", "nan,0"}, "nan"}, {{file, "--up", "x"}, "--up"},
        {{file, "--samples", "1000"}, "--samples"}, {{file, "--background", "nocolour"}, "nocolour"},
        {{file, "--tree", "--json"}, "--json"}, {{file, "--backend", "recorder", "--png", "a.png"}, "recorder"}};
    auto const add = [&](std::vector<std::string> const& p_options, std::vector<std::string> const& p_values) {
        for (std::string const& option : p_options)
            for (std::string const& value : p_values)
                cases.push_back({{file, option, value}, option + " \"" + value + "\""});
    };
    add({"--size"}, {"0x0", "-1x5", "16385x1", "1x99999999", "16384x16384", "10x", "10x10x10", "1e3x5", "", " 10x10"});
    add({"--pick", "--hover"}, {"1280,0", "0,800", "-1,5", "5,", "nan,nan", "2147483648,1", "3.5,4", "", "1,2,3"});
    add({"--panes"}, {"0x2", "2", "9x1", "axb", "2x2x2"});
    for (Case const& wrong : cases) {
        Outcome const outcome = Run(wrong.words);
        EXPECT_EQ(outcome.code, 2) << wrong.named;
        EXPECT_THAT(outcome.err, AllOf(IsOneSentence(), HasSubstr(wrong.named)));
        EXPECT_EQ(outcome.out, "");
    }
    EXPECT_EQ(FilesInHome(), 0U);
}

TEST_F(QorViewTest, unusableFilesAreOneSentenceAndExitCode1) {
    std::string const whole = Content(Data + "demo.glb");
    fs::create_directory(home / "folder.glb");
    std::vector<std::string> const files{"missing.glb", "", "folder.glb", Write("empty.glb", ""),
        Write("noextension", "hello"), Write("half.glb", whole.substr(0, whole.size() / 2)),
        Write("noise.glb", std::string(4000, '\x5A')), Write("text.stl", "solid"),
        Write("text.ply", "ply\nformat ascii 1.0\nelement vertex 4000000000\n"), Write("wrong.gltf", "{\"asset\":{}")};
    std::size_t const before = FilesInHome();
    for (std::string const& file : files) {
        for (char const* const backend : {"recorder", "gl"}) {
            Outcome const outcome = Run({file, "--backend", backend});
            EXPECT_EQ(outcome.code, 1) << file;
            EXPECT_THAT(outcome.err, IsOneSentence()) << file;
            if (std::string(backend) == "recorder") {
                EXPECT_THAT(outcome.err, HasSubstr("\"" + file + "\""));
            }
            EXPECT_EQ(outcome.out, "");
        }
    }
    EXPECT_EQ(FilesInHome(), before);
}

TEST_F(QorViewTest, withoutADisplayThereIsOneSentenceThatNamesAnotherWay) {
    for (char const* const environment : {"env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM",
             "QT_QPA_PLATFORM=offscreen", "DISPLAY=:12345 QT_QPA_PLATFORM=xcb", "QT_QPA_PLATFORM=nonsense"}) {
        Outcome const outcome = Run({Data + "bracket.obj"}, environment);
        EXPECT_EQ(outcome.code, 1) << environment;
        EXPECT_THAT(outcome.err, AllOf(IsOneSentence(), HasSubstr("--png"))) << environment;
        EXPECT_EQ(Run({}, environment).err, outcome.err) << "nor for the empty window";
    }
}

TEST_F(QorViewTest, unwritablePicturesAreOneSentence) {
    fs::create_directory(home / "folder");
    for (char const* const target : {"/nowhere/a.png", "folder", "/proc/a.png", "/dev/null"}) {
        Outcome const outcome = Run({Data + "bracket.obj", "--size", "20x20", "--png", target});
        EXPECT_EQ(outcome.code, 1) << target;
        EXPECT_THAT(outcome.err, IsOneSentence());
    }
    EXPECT_EQ(FilesInHome(), 1U);
}

TEST_F(QorViewTest, aMachineWithoutOpenGlGetsOneSentenceAndCanStillCount) {
    std::string const nothing = "__EGL_VENDOR_LIBRARY_FILENAMES=/nonexistent LIBGL_DRIVERS_PATH=/nonexistent";
    Outcome const drawn = Run({Data + "bracket.obj", "--png", "a.png"}, nothing);
    if (drawn.code == 0)
        GTEST_SKIP() << "OpenGL cannot be hidden from a program here";
    EXPECT_EQ(drawn.code, 1);
    EXPECT_THAT(drawn.err, IsOneSentence());
    EXPECT_EQ(FilesInHome(), 0U);
    EXPECT_EQ(Run({Data + "bracket.obj", "--backend", "recorder"}, nothing).code, 0);
}

TEST_F(QorViewTest, aPictureOfTheAskedSizeTakesThePlaceOfTheOldOneAndFollowsLinks) {
    if (!HasOpenGl())
        GTEST_SKIP() << "no OpenGL here";
    Write("old.png", "old");
    auto const permissions = fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read;
    fs::permissions(home / "old.png", permissions);
    fs::create_symlink("old.png", home / "link.png");
    Outcome const outcome =
        Run({Data + "wave.ply", "--png", "link.png", "--size", "160x100", "--background", "#102030"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(fs::is_symlink(home / "link.png"));
    QImage const image(QString::fromStdString((home / "old.png").string()));
    ASSERT_EQ(image.size(), QSize(160, 100));
    EXPECT_EQ(image.pixelColor(0, 99).name(), "#102030");
    EXPECT_NE(image.pixelColor(80, 50).name(), "#102030");
    EXPECT_EQ(fs::status(home / "old.png").permissions(), permissions);
    EXPECT_EQ(Run({"missing.glb", "--png", "old.png"}).code, 1);
    EXPECT_EQ(QImage(QString::fromStdString((home / "old.png").string())), image);
    EXPECT_EQ(FilesInHome(), 3U) << "no temporary file is left";
}

TEST_F(QorViewTest, framesOfAnUnchangedTreeCostOneVisit) {
    Outcome const outcome = Run({Data + "demo.glb", "--backend", "recorder", "--frames", "4", "--spin"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out, ContainsRegex("frame 1: visited 180, updated 147, drawn 147"));
    for (char const* const frame : {"2", "3", "4"})
        EXPECT_THAT(outcome.out, HasSubstr(std::string("frame ") + frame + ": visited 1, updated 0, drawn 147"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("frame 5")));
    EXPECT_THAT(
        outcome.out, AllOf(HasSubstr("nodes       180"), HasSubstr("triangles   17356"), HasSubstr("32 groups")));
}

TEST_F(QorViewTest, theTreeShowsHierarchyPathsFlagsBoxesAndPasses) {
    Outcome const outcome = Run({Data + "demo.glb", Data + "bracket.obj", "--backend", "recorder", "--tree"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out, StartsWith("SceneVis \"scene\"  path "));
    EXPECT_THAT(outcome.out,
        ContainsRegex(
            "\n          Group \"bands\"  path [0-9]+/[0-9]+/[0-9]+/[0-9]+/[0-9]+/[0-9]+  layer 0  flags active  "
            "box \\[.*\\]  passes hit,draw\n            SimpleObject \"band 1\""));
    EXPECT_THAT(outcome.out, HasSubstr("Group \"bracket.obj\""));
}

TEST_F(QorViewTest, picksAndHoversTellWhatIsUnderThePixelOfThePicture) {
    std::vector<std::string> const common{Data + "demo.glb", "--backend", "recorder"};
    auto const run = [&](std::vector<std::string> p_more) {
        p_more.insert(p_more.begin(), common.begin(), common.end());
        return Run(p_more).out;
    };
    EXPECT_THAT(run({"--pick", "660,60"}), // the lighthouse is high in the picture, so Y counts from its upper edge
        ContainsRegex(
            "pick 660,60 from the upper left: [1-9] hits?, visited [0-9]+, tested 147\n\\[0\\] \n\tSimpleObject "
            "\"light\""));
    EXPECT_THAT(run({"--pick", "0,0"}), HasSubstr("0 hits, visited 181, tested 147\nselection   none\n"));
    EXPECT_THAT(run({"--pick", "640,400"}), ContainsRegex("\nselection   handler\\(SimpleObject .*path\\("));
    EXPECT_THAT(run({"--pick", "640,400", "--json"}),
        AllOf(StartsWith("{"), EndsWith("}\n"), HasSubstr("\"nodes\": 180"), HasSubstr("\"depth\"")));
    EXPECT_THAT(run({"--hover", "640,400"}), HasSubstr("drawn       148")) << "one object is drawn again, highlighted";
    EXPECT_THAT(run({"--hover", "0,0"}), HasSubstr("drawn       147"));
    std::string const panes = run({"--panes", "3x2", "--pick", "1279,0", "--tree"});
    EXPECT_THAT(panes, ContainsRegex("Viewport \"[^\n]*flags active,context-root"));
    EXPECT_THAT(panes, AllOf(HasSubstr("nodes       1093"), HasSubstr("Viewport")));
}

TEST_F(QorViewTest, helpAndVersionGoToStandardOutput) {
    Outcome const help = Run({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_THAT(help.out, AllOf(HasSubstr("--png"), HasSubstr("--panes")));
    Outcome const version = Run({"--version"});
    EXPECT_EQ(version.code, 0);
    EXPECT_THAT(version.out, ContainsRegex("^qorview [0-9]+\\.[0-9]+"));
    Outcome const full = Run({"--version"}, "", "/dev/full");
    EXPECT_EQ(full.code, 1);
    EXPECT_THAT(full.err, IsOneSentence());
}

} // namespace
