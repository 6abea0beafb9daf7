#include "tests/framework/ogl/referee/Comparison.h"
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
#include <iomanip>
#include <iostream>
#include <numeric>
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

QRgb Background(Program const& p_program) {
    for (Call const& call : p_program.calls) {
        if (call.name == "ClearColor") {
            auto const channel = [&](std::size_t p_index) { return static_cast<float>(call.arguments[p_index]); };
            return QColor::fromRgbF(channel(0), channel(1), channel(2), channel(3)).rgba();
        }
    }
    return qRgb(0, 0, 0);
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

    Result Play(Program const& p_program, Played const& p_expected) const {
        Result result;
        for (std::size_t i = 0; i < 2; ++i) {
            Played const played = (i == 0 ? core : compatibility)->Play(p_program);
            EXPECT_EQ(played.errors.empty(), p_expected.errors.empty()) << played.errors;
            result.comparisons[i] = Compare(played.picture, p_expected.picture, Background(p_program));
        }
        return result;
    }
    /// Plays random programs; those that draw on less than a fifth of the picture are passed over.
    std::vector<Result> PlayRandomPrograms(Content p_content, std::size_t p_count) const {
        std::vector<Result> results;
        for (unsigned seed = 1; results.size() < p_count; ++seed) {
            Program const program = MakeRandomProgram(seed, p_content);
            Played const expected = PlayOnOpenGl(program);
            if (!Compare(expected.picture, expected.picture, Background(program)).IsDrawnEnough())
                continue;
            Result result = Play(program, expected);
            result.seed = seed;
            if (result.Agreement() < 0.99 && WantsDetails())
                std::cout << "seed " << seed << ' ' << result.Agreement() << '\n' << program.Print() << std::endl;
            results.push_back(result);
        }
        return results;
    }

    qordebug::CaptureScope silence{Utility::GetLogger()};
    std::unique_ptr<AglPlayer> core;
    std::unique_ptr<AglPlayer> compatibility;
};

std::string Describe(std::string const& p_title, std::vector<PixelReferee::Result> p_results) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(2);
    text << "| " << p_title << " | core | compatibility |\n|---|---|---|\n";
    auto const row = [&](std::string const& p_label, auto const& p_value) {
        text << "| " << p_label << " | " << p_value(0) << " | " << p_value(1) << " |\n";
    };
    auto const total = [&](int Comparison::*p_member, std::size_t p_side) {
        return std::accumulate(p_results.begin(), p_results.end(), 0L,
            [&](long p_sum, auto const& p_result) { return p_sum + p_result.comparisons[p_side].*p_member; });
    };
    auto const percent = [](double p_share) {
        std::ostringstream number;
        number << std::fixed << std::setprecision(2) << 100 * p_share << " %";
        return number.str();
    };
    row("programs", [&](std::size_t) { return p_results.size(); });
    row("pixels drawn", [&](std::size_t p_side) { return total(&Comparison::drawn, p_side); });
    row("of these agree", [&](std::size_t p_side) {
        return percent(double(total(&Comparison::agreeing, p_side)) / double(total(&Comparison::drawn, p_side)));
    });
    double above = 2;
    for (auto const& [label, share] : {std::pair("programs that agree in all pixels", 1.0),
             {"in 99.9 % or more", 0.999}, {"in 99 % or more", 0.99}, {"in 95 % or more", 0.95}, {"in less", 0.0}}) {
        row(label, [&, low = share](std::size_t p_side) {
            return std::count_if(p_results.begin(), p_results.end(), [&](auto const& p_result) {
                double const agreement = p_result.comparisons[p_side].Agreement();
                return agreement >= low && agreement < above;
            });
        });
        above = share;
    }
    std::sort(p_results.begin(), p_results.end(),
        [](auto const& p_a, auto const& p_b) { return p_a.Agreement() < p_b.Agreement(); });
    text << "\nThe five that agree least: ";
    for (std::size_t i = 0; i < std::min<std::size_t>(5, p_results.size()); ++i)
        text << (i == 0 ? "" : ", ") << "seed " << p_results[i].seed << ' ' << percent(p_results[i].Agreement());
    text << ".\n\n";
    return text.str();
}

TEST_F(PixelReferee, randomProgramsOfPolygonsLookTheSame) {
    auto const results = PlayRandomPrograms(Content::Polygons, 160 / Share);
    for (Result const& result : results)
        EXPECT_GE(result.Agreement(), 0.99) << "seed " << result.seed;
    Report("pixels-polygons", Describe("Filled polygons", results));
}

/// The share of all drawn pixels that agree.
double TotalAgreement(std::vector<PixelReferee::Result> const& p_results) {
    Comparison total;
    for (auto const& result : p_results) {
        for (Comparison const& comparison : result.comparisons) {
            total.drawn += comparison.drawn;
            total.agreeing += comparison.agreeing;
        }
    }
    return total.Agreement();
}

TEST_F(PixelReferee, randomProgramsWithLinesAndPointsLookTheSame) {
    auto const results = PlayRandomPrograms(Content::LinesAndPoints, 120 / Share);
    EXPECT_GE(TotalAgreement(results), 0.97);
    Report("pixels-lines", Describe("With lines and points", results));
}

// Drivers cut dashes in their own way; see docs/referee.md.
TEST_F(PixelReferee, randomProgramsWithDashedLinesLookAlike) {
    auto const results = PlayRandomPrograms(Content::DashedLines, 40 / Share);
    EXPECT_GE(TotalAgreement(results), 0.7);
    Report("pixels-dashes", Describe("With dashed lines", results));
}

TEST_F(PixelReferee, everyPrimitiveStateAndShapeLooksTheSame) {
    ContactSheet sheet;
    for (TableRow const& row : StateTable()) {
        Played const expected = PlayOnOpenGl(row.program);
        Result const result = Play(row.program, expected);
        EXPECT_TRUE(result.comparisons[0].IsDrawnEnough()) << row.label;
        EXPECT_GE(result.Agreement(), row.agreement) << row.label;
        if (WantsDetails()) {
            std::cout << row.label << ' ' << result.Agreement() << '\n';
        }
        sheet.Add(row.label, core->Play(row.program).picture, expected.picture);
    }
    AddLibraryCells(sheet, *core);
    ReportPicture("contact-sheet", sheet, *core);
}

// If this agreed, nothing above would mean anything.
TEST_F(PixelReferee, aWrongPictureIsNoticed) {
    auto const table = StateTable();
    auto const lit = std::ranges::find(table, "light, positional", &TableRow::label);
    ASSERT_NE(lit, table.end());
    Played const expected = PlayOnOpenGl(lit->program);
    Program wrong = lit->program;
    wrong.calls.insert(wrong.calls.begin(), {"Light", {Tokens::AGL_LIGHT0, Tokens::AGL_AMBIENT, 0.03, 0.03, 0.03, 1}});
    EXPECT_LT(Play(wrong, expected).Agreement(), 0.5);
    wrong.calls.front() = {"Translate", {0.03, 0, 0}};
    EXPECT_LT(Play(wrong, expected).Agreement(), 0.95);
}

} // namespace
} // namespace Qor::Chart::Ogl::Referee
