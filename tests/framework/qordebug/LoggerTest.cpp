#include "framework/qordebug/CaptureScope.h"
#include "framework/qordebug/logger.h"
#include "framework/qordebug/sink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <thread>

namespace {

using qordebug::entry;
using qordebug::severity;
using testing::ElementsAre;

/// Something whose formatting is counted.
struct Counted {
    int* formatted;
};
std::ostream& operator<<(std::ostream& p_stream, Counted const& p_counted) {
    ++*p_counted.formatted;
    return p_stream << "counted";
}

class RecordingSink : public qordebug::sink {
public:
    void write(entry const& p_entry) override { entries.push_back(p_entry); }
    std::vector<entry> entries;
};

class ThrowingSink : public qordebug::sink {
public:
    void write(entry const&) override { throw std::runtime_error("disk full"); }
};

class LoggingSink : public qordebug::sink {
public:
    explicit LoggingSink(qordebug::logger& p_logger) : _logger(p_logger) {}
    void write(entry const&) override {
        ++written;
        _logger.error("from within a sink");
    }
    int written = 0;

private:
    qordebug::logger& _logger;
};

TEST(LoggerTest, everyKindOfMessageArrivesWithItsExactText) {
    qordebug::logger logger;
    qordebug::CaptureScope const capture(logger);
    logger.sentry("void f() @line12");
    logger.ensure("\"a == b\" - void f()");
    logger.notimp("mode 3\n");
    logger.warning("w");
    logger.error("");
    logger.debug("only with the nameless channel enabled");
    logger.err("cerr") << "WARNING: " << 7 << std::endl;
    EXPECT_THAT(capture.entries(),
        ElementsAre(entry{severity::sentry, "", "void f() @line12"},
            entry{severity::ensure, "", "\"a == b\" - void f()"}, entry{severity::notimp, "", "mode 3\n"},
            entry{severity::warning, "", "w"}, entry{severity::error, "", ""},
            entry{severity::error, "cerr", "WARNING: 7"}));
    EXPECT_THAT(capture.texts(severity::ensure), ElementsAre("\"a == b\" - void f()"));
    EXPECT_TRUE(capture.contains("RNING"));
}

TEST(LoggerTest, disabledChannelFormatsNothing) {
    qordebug::logger logger;
    qordebug::CaptureScope const capture(logger, {"Other"});
    int formatted = 0;
    qordebug::channel const& handle = logger.get_channel("UpdateLoop");
    logger.out("UpdateLoop") << Counted{&formatted} << std::endl;
    logger.out(handle) << Counted{&formatted};
    logger.out("UpdateLoop").stream() << "discarded";
    EXPECT_FALSE(logger.out("UpdateLoop"));
    EXPECT_FALSE(logger.out(handle));
    EXPECT_EQ(formatted, 0);
    EXPECT_TRUE(capture.empty());
}

TEST(LoggerTest, enabledChannelSendsOneMessagePerFlushAndOneAtTheEnd) {
    qordebug::logger logger;
    qordebug::channel const& handle = logger.get_channel("UpdateLoop");
    qordebug::CaptureScope const capture(logger, {"UpdateLoop"});
    EXPECT_TRUE(handle.enabled());
    {
        auto out = logger.out(handle);
        ASSERT_TRUE(out);
        out << "\ttype-path: " << 1 << std::endl;
        out.stream() << "\tname-path: " << std::hex << 255 << std::flush;
        auto moved = std::move(out);
        EXPECT_FALSE(out); // NOLINT(bugprone-use-after-move): what is left is a disabled stream
        moved << "rest\n";
    }
    EXPECT_THAT(capture.texts("UpdateLoop"), ElementsAre("\ttype-path: 1", "\tname-path: ff", "rest"));
}

TEST(LoggerTest, enablingTwiceNeedsOneDisable) {
    qordebug::logger logger;
    logger.enable("A");
    logger.enable("A");
    logger.disable("A");
    logger.disable("A");
    EXPECT_FALSE(logger.enabled("A"));
    EXPECT_FALSE(logger.out("A"));
    logger.enable("B");
    EXPECT_TRUE(logger.out("B"));
    EXPECT_FALSE(logger.out("A"));
}

TEST(LoggerTest, nestedCapturesCollectInnermostAndRestoreChannelsAndSinks) {
    qordebug::logger logger;
    logger.clear_sinks();
    auto const sink = std::make_shared<RecordingSink>();
    logger.add_sink(sink);
    logger.add_sink(sink);
    {
        qordebug::CaptureScope outer(logger, {"A"});
        {
            qordebug::CaptureScope const inner(logger, {"A", "B"});
            logger.out("B") << "inner";
            EXPECT_THAT(inner.texts(), ElementsAre("inner"));
        }
        EXPECT_TRUE(logger.enabled("A"));
        EXPECT_FALSE(logger.enabled("B"));
        logger.out("A") << "outer";
        EXPECT_THAT(outer.texts(), ElementsAre("outer"));
        outer.clear();
        EXPECT_TRUE(outer.empty());
    }
    EXPECT_FALSE(logger.enabled("A"));
    logger.warning("after");
    EXPECT_THAT(sink->entries, ElementsAre(entry{severity::warning, "", "after"}));
    EXPECT_TRUE(logger.remove_sink(sink));
    EXPECT_FALSE(logger.remove_sink(sink));
    logger.warning("lost");
    EXPECT_EQ(sink->entries.size(), 1U);
}

TEST(LoggerTest, failingSinksNeitherThrowNorKeepMessagesFromOthers) {
    qordebug::logger logger;
    logger.clear_sinks();
    auto const recursive = std::make_shared<LoggingSink>(logger);
    auto const last = std::make_shared<RecordingSink>();
    logger.add_sink(std::make_shared<ThrowingSink>());
    logger.add_sink(recursive);
    logger.add_sink(last);
    logger.add_sink(nullptr);
    logger.ensure("one");
    logger.ensure("two");
    EXPECT_EQ(recursive->written, 2);
    EXPECT_EQ(last->entries.size(), 2U);
}

TEST(LoggerTest, threadsMayLogAndChangeSinksAtOnce) {
    qordebug::logger logger;
    qordebug::CaptureScope const capture(logger);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&logger] {
            auto const sink = std::make_shared<RecordingSink>();
            for (int count = 0; count < 200; ++count) {
                logger.add_sink(sink);
                logger.enable("X");
                logger.out("X") << count;
                logger.warning("w");
                logger.disable("X");
                logger.remove_sink(sink);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(capture.texts(severity::warning).size(), 800U);
    EXPECT_FALSE(logger.out("X"));
}

TEST(LoggerTest, standardErrorGetsWarningsAndWorseButNoDebug) {
    testing::internal::CaptureStderr();
    {
        qordebug::logger logger;
        logger.debug("quiet");
        logger.out("UpdateLoop") << "quiet";
        logger.warning("odd {} %s");
        logger.ensure("\"x\" - f");
        logger.enable("UpdateLoop");
        logger.out("UpdateLoop") << "loud";
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "[warning] odd {} %s\n[error] condition failed: \"x\" - f\n[debug] UpdateLoop: loud\n");
}

} // namespace
