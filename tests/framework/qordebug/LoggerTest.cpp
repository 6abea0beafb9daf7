#include "framework/qordebug/CaptureScope.h"
#include "framework/qordebug/logger.h"
#include "framework/qordebug/sink.h"

#include <gmock/gmock.h>

#include <thread>

namespace {

using qordebug::entry;
using qordebug::severity;
using testing::ElementsAre;

struct NeverFormatted {};
std::ostream& operator<<(std::ostream& p_stream, NeverFormatted) {
    ADD_FAILURE() << "a disabled channel formats";
    return p_stream;
}

/// A sink that keeps what it gets, then does what else it is told to.
class RecordingSink : public qordebug::sink {
public:
    explicit RecordingSink(std::function<void()> p_then = [] {}) : _then(std::move(p_then)) {}
    void write(entry const& p_entry) override {
        entries.push_back(p_entry);
        _then();
    }
    std::vector<entry> entries;

private:
    std::function<void()> _then;
};

TEST(LoggerTest, everyKindOfMessageArrivesWithItsExactText) {
    qordebug::logger logger;
    qordebug::CaptureScope const capture(logger);
    logger.sentry("void f()\n");
    logger.ensure("\"a == b\" - void f()");
    logger.warning("");
    logger.debug("only with the nameless channel enabled");
    logger.err("cerr") << "WARNING: " << 7 << std::endl;
    EXPECT_THAT(capture.entries(),
        ElementsAre(entry{severity::sentry, "", "void f()\n"}, entry{severity::ensure, "", "\"a == b\" - void f()"},
            entry{severity::warning, "", ""}, entry{severity::error, "cerr", "WARNING: 7"}));
}

TEST(LoggerTest, onlyAnEnabledChannelFormatsAndSendsOneMessagePerFlushAndOneAtTheEnd) {
    qordebug::logger logger;
    qordebug::CaptureScope const capture(logger, {"UpdateLoop"});
    logger.out("Other") << NeverFormatted() << std::endl;
    logger.out("Other").stream() << "discarded";
    {
        auto out = logger.out(logger.get_channel("UpdateLoop"));
        out << "\ttype-path: " << 1 << std::endl;
        out.stream() << "\tname-path: " << std::hex << 255 << std::flush;
        auto moved = std::move(out);
        out << NeverFormatted(); // NOLINT(bugprone-use-after-move): what is left is a disabled stream
        moved << "rest\n";
    }
    EXPECT_THAT(capture.texts(), ElementsAre("\ttype-path: 1", "\tname-path: ff", "rest"));
}

TEST(LoggerTest, failingSinksNeitherThrowNorKeepMessagesFromOthers) {
    qordebug::logger logger;
    logger.clear_sinks();
    auto const recursive = std::make_shared<RecordingSink>([&] { logger.error("from within a sink"); });
    auto const last = std::make_shared<RecordingSink>();
    logger.add_sink(std::make_shared<RecordingSink>([] { throw 1; }));
    logger.add_sink(recursive);
    logger.add_sink(last);
    logger.add_sink(nullptr);
    logger.ensure("one");
    logger.ensure("two");
    EXPECT_EQ(recursive->entries.size(), 2U);
    EXPECT_EQ(last->entries.size(), 2U);
}

TEST(LoggerTest, threadsMayLogAndChangeSinksAtOnce) {
    qordebug::logger logger;
    qordebug::CaptureScope const capture(logger);
    auto const work = [&logger] {
        auto const sink = std::make_shared<RecordingSink>();
        for (int count = 0; count < 200; ++count) {
            logger.add_sink(sink);
            logger.enable("X");
            logger.out("X") << count;
            logger.warning("w");
            logger.disable("X");
            logger.remove_sink(sink);
        }
    };
    { std::jthread const threads[] = {std::jthread(work), std::jthread(work), std::jthread(work), std::jthread(work)}; }
    EXPECT_EQ(capture.texts(severity::warning).size(), 800U);
    EXPECT_FALSE(logger.out("X"));
}

TEST(LoggerTest, standardErrorGetsWarningsAndWorseButNoDebug) {
    testing::internal::CaptureStderr();
    {
        qordebug::logger logger;
        logger.debug("quiet");
        logger.warning("odd {} %s");
        logger.ensure("\"x\" - f");
        logger.enable("UpdateLoop");
        logger.out("UpdateLoop") << "loud";
        logger.disable("UpdateLoop");
        logger.out("UpdateLoop") << "quiet";
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "[warning] odd {} %s\n[error] condition failed: \"x\" - f\n[debug] UpdateLoop: loud\n");
}

} // namespace
