#include "tests/framework/ogl/referee/ContactSheet.h"
#include "tests/framework/ogl/referee/Generator.h"
#include "tests/framework/ogl/referee/Program.h"
#include "tests/framework/ogl/referee/Report.h"
#include "tests/framework/ogl/referee/Table.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>

// Programs, played on Agl in both kinds of contexts and on fixed-function OpenGL. Set QOR_REFEREE_REPORT to a folder to have
// the figures and the contact sheet written there.

namespace Qor::Chart::Ogl::Referee {
namespace {

// What the sanitizers look for shows in a few programs as well.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t Share = 10;
#else
constexpr std::size_t Share = 1;
#endif

/// How two pictures compare in the pixels that either of them shows something in.
struct Comparison {
    int drawn = 0; ///< pixels that differ from the background in either picture
    int agreeing = 0; ///< drawn pixels whose four channels differ by at most 2 of 255

    bool IsDrawnEnough() const { return 5 * drawn >= Program::Size * Program::Size; }
    double Agreement() const { return drawn == 0 ? 1 : static_cast<double>(agreeing) / drawn; }
};

QRgb Background(Program const& p_program) {
    auto const clear = std::ranges::find(p_program.calls, "ClearColor", &Call::name);
    if (clear == p_program.calls.end())
        return qRgb(0, 0, 0);
    auto const channel = [&](std::size_t p_index) { return static_cast<float>(clear->arguments[p_index]); };
    return QColor::fromRgbF(channel(0), channel(1), channel(2), channel(3)).rgba();
}

/// Compares pictures of the program.
Comparison Compare(QImage const& p_a, QImage const& p_b, Program const& p_program) {
    QRgb const background = Background(p_program);
    auto const isNear = [](int p_x, int p_y) { return std::abs(p_x - p_y) <= 2; };
    Comparison result;
    for (int i = 0; i < p_a.width() * p_a.height(); ++i) {
        QRgb const a = p_a.pixel(i % p_a.width(), i / p_a.width());
        QRgb const b = p_b.pixel(i % p_a.width(), i / p_a.width());
        if (a == background && b == background)
            continue;
        bool const isAgreeing = isNear(qRed(a), qRed(b)) && isNear(qGreen(a), qGreen(b)) &&
            isNear(qBlue(a), qBlue(b)) && isNear(qAlpha(a), qAlpha(b));
        ++result.drawn;
        result.agreeing += isAgreeing ? 1 : 0;
    }
    return result;
}

class PixelReferee : public testing::Test {
public:
    struct Result {
        unsigned seed = 0;
        std::array<Comparison, 2> comparisons; ///< core and compatibility context

        double Agreement() const { return std::min(comparisons[0].Agreement(), comparisons[1].Agreement()); }
    };

    void SetUp() override {
        UseFastShaderCompiler();
        try {
            core = std::make_unique<AglPlayer>(Context::Profile::Core);
            compatibility = std::make_unique<AglPlayer>(Context::Profile::Compatibility);
        } catch (ContextError const& error) {
            GTEST_SKIP() << "There are no contexts to compare: " << error.what();
        }
    }

    Result Compared(Program const& p_program, Played const& p_expected, unsigned p_seed = 0) const {
        Result result{p_seed, {}};
        for (std::size_t i = 0; i < 2; ++i) {
            Played const played = (i == 0 ? core : compatibility)->Draw(p_program);
            EXPECT_EQ(played.errors.empty(), p_expected.errors.empty()) << played.errors;
            result.comparisons[i] = Compare(played.picture, p_expected.picture, p_program);
        }
        return result;
    }
    /// Plays random programs; those that draw on less than a fifth of the picture are passed over.
    std::vector<Result> PlayRandomPrograms(Content p_content, std::size_t p_count) const {
        std::vector<Result> results;
        for (unsigned seed = 1; results.size() < p_count; ++seed) {
            Program const program = MakeRandomProgram(seed, p_content);
            Played const expected = DrawOnOpenGl(program);
            if (Compare(expected.picture, expected.picture, program).IsDrawnEnough())
                results.push_back(Compared(program, expected, seed));
        }
        return results;
    }

    qordebug::CaptureScope silence{Utility::GetLogger()};
    std::unique_ptr<AglPlayer> core;
    std::unique_ptr<AglPlayer> compatibility;
};

/// Reports the figures, and gives the share of all drawn pixels that agree.
double Summarize(std::string const& p_name, std::vector<PixelReferee::Result> const& p_results) {
    std::ostringstream text;
    text
        << "| context | programs | pixels drawn | of these agree | programs that agree in 99 % or more | all pixels |\n"
        << "|---|---|---|---|---|---|\n";
    Comparison both;
    for (std::size_t side = 0; side < 2; ++side) {
        Comparison total;
        for (auto const& result : p_results) {
            total.drawn += result.comparisons[side].drawn;
            total.agreeing += result.comparisons[side].agreeing;
        }
        auto const count = [&](double p_low) {
            return std::ranges::count_if(
                p_results, [&](auto const& p_result) { return p_result.comparisons[side].Agreement() >= p_low; });
        };
        text << "| " << (side == 0 ? "core" : "compatibility") << " | " << p_results.size() << " | " << total.drawn
             << " | " << 100 * total.Agreement() << " % | " << count(0.99) << " | " << count(1) << " |\n";
        both.drawn += total.drawn;
        both.agreeing += total.agreeing;
    }
    auto const worst = std::ranges::min_element(p_results, {}, &PixelReferee::Result::Agreement);
    text << "\nThe least: seed " << worst->seed << ", " << 100 * worst->Agreement() << " %.\n\n";
    Report(p_name, text.str());
    return both.Agreement();
}

TEST_F(PixelReferee, randomProgramsOfPolygonsLookTheSame) {
    auto const results = PlayRandomPrograms(Content::Polygons, 160 / Share);
    for (Result const& result : results)
        EXPECT_GE(result.Agreement(), 0.99) << "seed " << result.seed;
    Summarize("pixels-polygons", results);
}

TEST_F(PixelReferee, randomProgramsWithLinesAndPointsLookTheSame) {
    EXPECT_GE(Summarize("pixels-lines", PlayRandomPrograms(Content::LinesAndPoints, 120 / Share)), 0.97);
}

// Drivers cut dashes in their own way; see docs/referee.md.
TEST_F(PixelReferee, randomProgramsWithDashedLinesLookAlike) {
    EXPECT_GE(Summarize("pixels-dashes", PlayRandomPrograms(Content::DashedLines, 40 / Share)), 0.7);
}

TEST_F(PixelReferee, everyPrimitiveStateAndShapeLooksTheSame) {
    ContactSheet sheet(*core);
    for (TableRow const& row : StateTable()) {
        Played const expected = DrawOnOpenGl(row.program);
        Result const result = Compared(row.program, expected);
        EXPECT_TRUE(result.comparisons[0].IsDrawnEnough()) << row.label;
        EXPECT_GE(result.Agreement(), row.agreement) << row.label;
        sheet.Add(row.label, core->Draw(row.program).picture, expected.picture);
    }
    sheet.AddLibrary();
    QString const file = QString::fromStdString(ReportFolder() + "/contact-sheet.png");
    EXPECT_TRUE(ReportFolder().empty() || sheet.Render().save(file));
}

// If this agreed, nothing above would mean anything.
TEST_F(PixelReferee, aWrongPictureIsNoticed) {
    auto const table = StateTable();
    auto const lit = std::ranges::find(table, "light, positional", &TableRow::label);
    ASSERT_NE(lit, table.end());
    Played const expected = DrawOnOpenGl(lit->program);
    Program wrong = lit->program;
    wrong.calls.insert(wrong.calls.begin(), {"Light", {Tokens::AGL_LIGHT0, Tokens::AGL_AMBIENT, 0.03, 0.03, 0.03, 1}});
    EXPECT_LT(Compared(wrong, expected).Agreement(), 0.5);
    wrong.calls.front() = {"Translate", {0.03, 0, 0}};
    EXPECT_LT(Compared(wrong, expected).Agreement(), 0.95);
}

} // namespace
} // namespace Qor::Chart::Ogl::Referee
