// Runs the tests in a display of their own where there is none.
#include <QApplication>
#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

int ShowWithoutOpenGl(int p_argc, char** p_argv);

namespace {

/// A display without a screen that ends with this program.
class OwnDisplay {
public:
    OwnDisplay() {
        std::array<int, 2> pipe{};
        if (::pipe(pipe.data()) != 0)
            return;
        _server = fork();
        if (_server == 0) {
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            close(pipe[0]);
            std::string const writeTo = std::to_string(pipe[1]);
            std::freopen("/dev/null", "w", stderr);
            execlp("Xvfb", "Xvfb", "-displayfd", writeTo.c_str(), "-screen", "0", "1280x1024x24", "+extension", "GLX",
                "-nolisten", "tcp", nullptr);
            _exit(1);
        }
        close(pipe[1]);
        std::string number;
        for (char sign = 0; read(pipe[0], &sign, 1) == 1 && sign != '\n';)
            number += sign;
        close(pipe[0]);
        if (!number.empty())
            setenv("DISPLAY", (":" + number).c_str(), 1);
    }
    ~OwnDisplay() {
        if (_server > 0) {
            kill(_server, SIGTERM);
            waitpid(_server, nullptr, 0);
        }
    }
    OwnDisplay(OwnDisplay const&) = delete;
    OwnDisplay& operator=(OwnDisplay const&) = delete;

private:
    pid_t _server = -1;
};

/// The keyboard library of the window system reads texts in a way that strict checks of strings take for an error: starts
/// the program again without them.
void LeaveOutStrictStringChecks(char** p_argv) {
    char const* const given = std::getenv("ASAN_OPTIONS");
    std::string options = given ? given : "";
    std::string const strict = "strict_string_checks=1";
    std::size_t const at = options.find(strict);
    if (at == std::string::npos)
        return;
    setenv("ASAN_OPTIONS", options.replace(at, strict.size(), "strict_string_checks=0").c_str(), 1);
    execv("/proc/self/exe", p_argv);
}

} // namespace

int main(int p_argc, char** p_argv) {
    if (p_argc == 2 && std::string_view(p_argv[1]) == "--without-opengl")
        return ShowWithoutOpenGl(p_argc, p_argv);
    LeaveOutStrictStringChecks(p_argv);
    testing::InitGoogleMock(&p_argc, p_argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    std::optional<OwnDisplay> display;
    if (!std::getenv("DISPLAY"))
        display.emplace();
    if (!std::getenv("DISPLAY"))
        return RUN_ALL_TESTS(); // they skip themselves
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    QApplication const application(p_argc, p_argv);
    return RUN_ALL_TESTS();
}
