#include "framework/model/SymbolShape.h"
#include "framework/model/ValueText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace Qor::Chart::Model {

namespace {

using Length = Types::RelativeLength;
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

} // namespace

TEST(ValueTextTest, readsWhatPeopleWrite) {
    ExpectReads(" Right  12px ", Types::XPosition(Types::DefinedAs::Pixels, Types::XEdge::Right, 12));
    ExpectReads("bottom 5%", Types::YPosition(Types::DefinedAs::Fraction, Types::YEdge::Bottom, 0.05));
    ExpectReads(" True\n", true);
    ExpectReads(" +2.5e-1 ", 0.25);
    ExpectReads("1,2 ,\t-3", Vector(1, 2, -3));
    ExpectReads("ARROW", SymbolShape::Arrow);
    ExpectReads(" #80ff0000 ", QColor(255, 0, 0, 128));
    ExpectReads("0 1 0", QColor::fromRgbF(0, 1, 0));
    ExpectReads("none", std::optional<QColor>());
    ExpectReads("transparent", std::optional(QColor(0, 0, 0, 0)));
    ExpectReads(" text ", std::string(" text "));
    ExpectReads("0% 12px 50%-20px 0.25",
        Viewport(Length::Fraction(0), Length::Pixels(12), Length::Fraction(0.5, -20), Length::Fraction(0.25)));
    ExpectReads("-3px+100%, 0%, 1e1px, 1%",
        Viewport(Length::Pixels(-3, 1), Length::Fraction(0), Length::Pixels(10), Length::Fraction(0.01)));
}

TEST(ValueTextTest, refusesWhatIsNoValue) {
    ExpectRefuses<Types::XPosition>({"", "left", "12px", "top 12px", "left 12px 3", "right 5%+3px"});
    ExpectRefuses<bool>({"", "1", "yes", "truefalse", "true false"});
    ExpectRefuses<double>({"", " ", "x", "1x", "nan", "inf", "-inf", "1e999", "0x10", "1 2", "1,", "+-1", "++1"});
    ExpectRefuses<Vector>({"", "1 2", "1 2 3 4", "1,,2,3", "1 2 3,", ",1 2 3", "1 2 nan", "1;2;3"});
    ExpectRefuses<SymbolShape>({"", "Cub", "Cubes", "1", "-1"});
    ExpectRefuses<QColor>({"", "reddish", "#12", "#gggggg", "0 1", "0 1 2", "-0.1 0 0", "0 0 0 1 1", "nan 0 0"});
    ExpectRefuses<std::optional<QColor>>({"", "nothing"});
    ExpectRefuses<std::vector<QColor>>({"", "red;", ";", "red; nothing"});
    ExpectRefuses<SharedMatrix>({"", "1", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 0",
        "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 inf"});
    ExpectRefuses<Viewport>({"", "0 0 1", "0 0 1 1 1", "0 0 1 1px2px", "0 0 1 1%+2%", "0 0 1 1%+", "0 0 1 px",
        "0 0 1 1 %", "0 0 1 1%+1px+1px", "0 0 1 1em", "0 0 1 nanpx"});
}

TEST(ValueTextTest, whatIsWrittenReadsBackEqual) {
    auto const expect = [](auto const& p_value) {
        ExpectReads(ValueText<std::decay_t<decltype(p_value)>>::Write(p_value), p_value);
    };
    std::mt19937 random(7);
    std::uniform_real_distribution<double> number(-2, 2);
    auto const channel = [&] { return static_cast<quint16>(random() % 65536); };
    auto const length = [&] {
        double const fraction = random() % 2 ? number(random) : 0;
        double const pixels = random() % 2 ? 100 * number(random) : 0;
        return random() % 2 ? Length::Fraction(fraction, pixels) : Length::Pixels(pixels, fraction);
    };
    for (int round = 0; round < 2000; ++round) {
        expect(number(random) * std::pow(10, 100 * number(random)));
        expect(Vector(number(random), number(random), number(random)));
        expect(Viewport(length(), length(), length(), length()));
        expect(QColor::fromRgba64(QRgba64::fromRgba64(channel(), channel(), channel(), channel())));
        Types::Matrix4 matrix;
        std::generate_n(matrix.Data(), 16, [&] { return number(random); });
        expect(SharedMatrix(matrix));
    }
    expect(std::numeric_limits<double>::denorm_min());
    expect(SharedMatrix());
    expect(std::wstring(L"Überblick \U0001F30D"));
    expect(std::optional<QColor>());
    expect(std::vector<QColor>());
    expect(std::vector<QColor>{Qt::red, QColor(1, 2, 3, 4)});
    EXPECT_EQ(ValueText<QColor>::Write(QColor(255, 128, 0)), "#ff8000");
}

} // namespace Qor::Chart::Model
