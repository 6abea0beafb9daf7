#include "framework/model/Pane.h"
#include "framework/model/SymbolShape.h"
#include "framework/model/ValueText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace Qor::Chart::Model {

namespace {

using Types::RelativeLength;
using Viewport = Types::Viewport<1>;
using Vector = Types::Vector3_Base<double>;

template <class T>
void ExpectReads(std::string const& p_text, T const& p_value) {
    EXPECT_EQ(ValueText<T>::Read(p_text), std::optional<T>(p_value)) << '"' << p_text << '"';
}

template <class T>
void ExpectRefuses(std::vector<std::string> const& p_texts) {
    for (std::string const& text : p_texts)
        EXPECT_FALSE(ValueText<T>::Read(text)) << '"' << text << '"';
}

template <class T>
void ExpectComesBack(T const& p_value) {
    ExpectReads(ValueText<T>::Write(p_value), p_value);
}

} // namespace

TEST(ValueTextTest, readsWhatPeopleWrite) {
    ExpectReads(" True\n", true);
    ExpectReads("false", false);
    ExpectReads(" +2.5e-1 ", 0.25);
    ExpectReads("1,2 ,\t-3", Vector(1, 2, -3));
    ExpectReads("ARROW", SymbolShape::Arrow);
    ExpectReads("perspective", Pane::ProjectionMode::Perspective);
    ExpectReads("red", QColor(255, 0, 0));
    ExpectReads(" #80ff0000 ", QColor(255, 0, 0, 128));
    ExpectReads("0 1 0", QColor::fromRgbF(0, 1, 0));
    ExpectReads("none", std::optional<QColor>());
    ExpectReads("transparent", std::optional(QColor(0, 0, 0, 0)));
    ExpectReads(" text ", std::string(" text "));
    ExpectReads("0% 12px 50%-20px 0.25",
        Viewport(RelativeLength::Fraction(0), RelativeLength::Pixels(12), RelativeLength::Fraction(0.5, -20),
            RelativeLength::Fraction(0.25)));
    ExpectReads("-3px+100%, 0%, 1e1px, 1%",
        Viewport(RelativeLength::Pixels(-3, 1), RelativeLength::Fraction(0), RelativeLength::Pixels(10),
            RelativeLength::Fraction(0.01)));
}

TEST(ValueTextTest, refusesWhatIsNoValue) {
    ExpectRefuses<bool>({"", "1", "yes", "truefalse", "true false"});
    ExpectRefuses<double>({"", " ", "x", "1x", "nan", "inf", "-inf", "1e999", "0x10", "1 2", "1,", "+-1", "++1"});
    ExpectRefuses<Vector>({"", "1 2", "1 2 3 4", "1,,2,3", "1 2 3,", ",1 2 3", "1 2 nan", "1;2;3"});
    ExpectRefuses<SymbolShape>({"", "Cub", "Cubes", "1", "-1"});
    ExpectRefuses<QColor>({"", "reddish", "#12", "#gggggg", "0 1", "0 1 2", "-0.1 0 0", "0 0 0 1 1", "nan 0 0"});
    ExpectRefuses<std::optional<QColor>>({"", "nothing"});
    ExpectRefuses<SharedMatrix>({"", "1", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 0",
        "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 inf"});
    ExpectRefuses<Viewport>({"", "0 0 1", "0 0 1 1 1", "0 0 1 1px2px", "0 0 1 1%+2%", "0 0 1 1%+", "0 0 1 px",
        "0 0 1 1 %", "0 0 1 1%+1px+1px", "0 0 1 1em", "0 0 1 nanpx"});
}

TEST(ValueTextTest, whatIsWrittenReadsBackEqual) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> anyNumber(-2, 2);
    std::uniform_int_distribution<int> anyChannel(0, 65535);
    std::bernoulli_distribution coin;
    auto const anyLength = [&] {
        double const fraction = coin(random) ? anyNumber(random) : 0;
        double const pixels = coin(random) ? 100 * anyNumber(random) : 0;
        return coin(random) ? RelativeLength::Fraction(fraction, pixels) : RelativeLength::Pixels(pixels, fraction);
    };
    for (int round = 0; round < 2000; ++round) {
        ExpectComesBack(anyNumber(random) * std::pow(10, 100 * anyNumber(random)));
        ExpectComesBack(Vector(anyNumber(random), anyNumber(random), anyNumber(random)));
        ExpectComesBack(Viewport(anyLength(), anyLength(), anyLength(), anyLength()));
        ExpectComesBack(QColor::fromRgba64(
            QRgba64::fromRgba64(static_cast<quint16>(anyChannel(random)), static_cast<quint16>(anyChannel(random)),
                static_cast<quint16>(anyChannel(random)), static_cast<quint16>(anyChannel(random)))));
        Types::Matrix4 matrix;
        for (int element = 0; element < 16; ++element)
            matrix.Data()[element] = anyNumber(random);
        ExpectComesBack(SharedMatrix(matrix));
    }
    ExpectComesBack(std::numeric_limits<double>::max());
    ExpectComesBack(std::numeric_limits<double>::denorm_min());
    ExpectComesBack(SharedMatrix());
    ExpectComesBack(std::wstring(L"Überblick \U0001F30D"));
    ExpectComesBack(std::optional<QColor>());
    EXPECT_EQ(ValueText<QColor>::Write(QColor(255, 128, 0)), "#ff8000");
    EXPECT_EQ(ValueText<Viewport>::Write(Viewport()), "0% 0% 100% 100%");
    EXPECT_EQ(ValueText<SymbolShape>::Write(static_cast<SymbolShape>(77)), "77");
}

} // namespace Qor::Chart::Model
