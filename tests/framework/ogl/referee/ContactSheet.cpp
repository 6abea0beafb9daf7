#include "tests/framework/ogl/referee/ContactSheet.h"

#include "framework/assets/Resource.h"
#include "framework/library/Box.h"
#include "framework/library/ColorMap.h"
#include "framework/library/FilledBox.h"
#include "framework/library/Pattern.h"
#include "framework/library/Texture.h"
#include "framework/library/TexturedQuad.h"
#include "framework/ogl/Text.h"
#include "framework/utility/Scoped.h"

#include <gtest/gtest.h>

#include <QPainter>

namespace Qor::Chart::Ogl::Referee {

namespace {

using namespace Tokens;
using Area = Types::Viewport<0>;

constexpr int Columns = 9;
constexpr int Side = Program::Size;
constexpr int CellWidth = 2 * Side + 12;
constexpr int CellHeight = Side + 22;

void UsePixels(Agl& p_agl, int p_width, int p_height, Types::Color4f const& p_background) {
    p_agl.ClearColor(p_background);
    p_agl.Clear(AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT);
    p_agl.MatrixMode(AGL_PROJECTION);
    p_agl.Ortho2D({0, 0, static_cast<float>(p_width), static_cast<float>(p_height)});
    p_agl.MatrixMode(AGL_MODELVIEW);
}

std::shared_ptr<Text> MakeText(Agl& p_agl, float p_size) {
    return p_agl.GenFont(Assets::Resource().FontSet(""), p_size);
}

void DrawImage(Agl& p_agl, QImage const& p_image, Area const& p_rectangle) {
    Utility::Scoped<Agl> scope{Utility::Unscoped<Agl>(p_agl)};
    Library::TexturedQuad(p_rectangle).Draw(p_agl, Library::Texture(p_image, scope));
}

void DrawText(Agl& p_agl, HorizontalAlignment p_horizontal, VerticalAlignment p_vertical, std::string_view p_text) {
    Library::Box(QColor(90, 90, 100)).Draw(p_agl, Area(6, 6, 83, 83));
    auto const font = MakeText(p_agl, 13);
    font->SetColor(Types::Color4f(1, 1, 1));
    font->SetHorizontalAlignment(p_horizontal);
    font->SetVerticalAlignment(p_vertical);
    font->Draw(p_agl, p_text, Area(8, 8, 80, 80));
}

/// Makes the box that it gives to be seen from a corner.
Types::BoundingBox_Base<double> Turned(Agl& p_agl) {
    p_agl.Translate(48, 48, 0);
    p_agl.Scale(34, 34, 0.3);
    p_agl.Rotate(35, {1, 0.3, 0});
    p_agl.Rotate(30, {0, 1, 0});
    return {{-0.7, -0.7, -0.7}, {0.7, 0.7, 0.7}};
}

} // namespace

void ContactSheet::Add(std::string p_label, QImage p_agl, QImage p_openGl) {
    _cells.push_back({std::move(p_label), std::move(p_agl), std::move(p_openGl)});
}

void ContactSheet::AddDrawn(std::string const& p_label, std::function<void(Agl&)> const& p_draw) {
    Played const played = _player.Draw([&](Agl& p_agl) {
        UsePixels(p_agl, Side, Side, Types::Color4f(0.13F, 0.13F, 0.16F));
        p_draw(p_agl);
    });
    EXPECT_EQ(played.errors, "") << p_label;
    QImage empty = played.picture;
    empty.fill(empty.pixelColor(0, 0));
    EXPECT_NE(played.picture, empty) << p_label;
    Add(p_label, played.picture);
}

void ContactSheet::AddLibrary() {
    using H = HorizontalAlignment;
    using V = VerticalAlignment;
    for (auto const& [vertical, v] : {std::pair("top", V::Top), {"center", V::Center}, {"bottom", V::Bottom}}) {
        for (auto const& [horizontal, h] : {std::pair("Left", H::Left), {"Center", H::Center}, {"Right", H::Right}}) {
            AddDrawn(std::string("text ") + horizontal + ' ' + vertical,
                [&, text = std::string(horizontal) + '\n' + vertical](Agl& p) { DrawText(p, h, v, text); });
        }
    }
    for (auto const& [label, h, text] : {std::tuple("text start", H::Start, "Start\nשלום"),
             {"text lines", H::Left, "Broken into several lines where words end"},
             {"text ellipsis", H::Left, "Too long to fit in the rectangle that it has got, so it is cut"}}) {
        AddDrawn(label, [&](Agl& p) { DrawText(p, h, V::Top, text); });
    }
    Area const area(12, 20, 70, 50);
    QColor const line(250, 210, 60);
    QColor const blue(60, 160, 220);
    Library::Box wide(line);
    wide.SetLineWidth(6);
    Library::FilledBox const hatched(line, blue, Library::FilledBox::Mode::Hatched);
    AddDrawn("box, pixels", [&](Agl& p) { Library::Box(line, QColor(40, 70, 110)).Draw(p, area); });
    AddDrawn("box, wide", [&](Agl& p) { wide.Draw(p, area); });
    AddDrawn("box, twelve edges", [&](Agl& p) { Library::Box(line).Draw(p, Turned(p)); });
    AddDrawn("filled box", [&](Agl& p) { Library::FilledBox(line, QColor(60, 160, 220, 140)).Draw(p, area); });
    AddDrawn("filled box, hatched", [&](Agl& p) { hatched.Draw(p, area); });
    AddDrawn("filled box, hatched 3D", [&](Agl& p) { hatched.Draw(p, Turned(p)); });
    AddDrawn("textured quad", [](Agl& p) { DrawImage(p, TestTextures()[3]->Image(), Area(10, 10, 76, 76)); });
    for (int const sixteenths : {2, 8, 13}) {
        AddDrawn("pattern " + std::to_string(sixteenths) + "/16", [sixteenths](Agl& p) {
            p.Enable(AGL_POLYGON_STIPPLE);
            p.PolygonStipple(Library::Pattern::PolygonStipplePattern(sixteenths).data());
            p.Color(0.9F, 0.8F, 0.3F);
            p.Begin(AGL_QUADS);
            for (auto const& [x, y] : {std::pair(8, 8), {88, 8}, {88, 88}, {8, 88}})
                p.Vertex(x, y);
            p.End();
        });
    }
    for (std::string const& name : Library::ColorMap::Names()) {
        QImage const bar = Library::ColorMap::Named(name)->Bar(80, 16);
        AddDrawn("color map " + name, [&](Agl& p) { DrawImage(p, bar, Area(8, 24, 80, 48)); });
    }
}

QImage ContactSheet::Render() const {
    int const rows = (static_cast<int>(_cells.size()) + Columns - 1) / Columns;
    int const width = Columns * CellWidth;
    int const height = rows * CellHeight;
    auto const forEach = [this](auto const& p_use) {
        for (int i = 0; i < static_cast<int>(_cells.size()); ++i)
            p_use(_cells[static_cast<std::size_t>(i)], i % Columns * CellWidth + 4, i / Columns * CellHeight + 18);
    };
    auto const drawLabels = [&](Agl& p_agl) {
        UsePixels(p_agl, width, height, Types::Color4f(0.93F, 0.93F, 0.93F));
        auto const text = MakeText(p_agl, 11);
        text->SetVerticalAlignment(VerticalAlignment::Center);
        forEach([&](Cell const& p_cell, int p_x, int p_y) {
            text->Draw(p_agl, std::string_view(p_cell.label),
                Area(static_cast<float>(p_x), static_cast<float>(height - p_y), CellWidth - 6, 17));
        });
    };
    QImage sheet = _player.Draw(drawLabels, width, height).picture.convertToFormat(QImage::Format_RGB32);
    QPainter painter(&sheet);
    forEach([&](Cell const& p_cell, int p_x, int p_y) {
        painter.drawImage(p_x, p_y, p_cell.agl.convertToFormat(QImage::Format_RGBX8888));
        painter.drawImage(p_x + Side + 2, p_y, p_cell.openGl.convertToFormat(QImage::Format_RGBX8888));
    });
    return sheet;
}

} // namespace Qor::Chart::Ogl::Referee
