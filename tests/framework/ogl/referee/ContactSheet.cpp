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
#include "tests/framework/ogl/referee/Report.h"
#include "tests/framework/ogl/referee/Textures.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <functional>

namespace Qor::Chart::Ogl::Referee {

namespace {

using namespace Tokens;

constexpr int Columns = 9;
constexpr int Side = Program::Size;
constexpr int CellWidth = 2 * Side + 12;
constexpr int CellHeight = Side + 22;

Types::Viewport<0> Pixels(int p_x, int p_y, int p_width, int p_height) {
    return {
        static_cast<float>(p_x), static_cast<float>(p_y), static_cast<float>(p_width), static_cast<float>(p_height)};
}

void UsePixels(Agl& p_agl, int p_width, int p_height, Types::Color4f const& p_background) {
    p_agl.ClearColor(p_background);
    p_agl.Clear(AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT);
    p_agl.MatrixMode(AGL_PROJECTION);
    p_agl.Ortho2D(Pixels(0, 0, p_width, p_height));
    p_agl.MatrixMode(AGL_MODELVIEW);
}

std::shared_ptr<Text> MakeText(Agl& p_agl, float p_size) {
    return p_agl.GenFont(Assets::Resource().FontSet(""), p_size);
}

void DrawImage(Agl& p_agl, QImage const& p_image, Types::Viewport<0> const& p_rectangle) {
    Utility::Scoped<Agl> scope{Utility::Unscoped<Agl>(p_agl)};
    Library::TexturedQuad(p_rectangle).Draw(p_agl, Library::Texture(p_image, scope));
}

class LibraryCells {
public:
    LibraryCells(ContactSheet& p_sheet, AglPlayer const& p_player) : _sheet(p_sheet), _player(p_player) {}

    void AddAll() {
        Texts();
        Boxes();
        Cell("textured quad", [](Agl& p_agl) { DrawImage(p_agl, TestTextures()[3]->Image(), Pixels(10, 10, 76, 76)); });
        for (int const sixteenths : {2, 8, 13}) {
            Cell("pattern " + std::to_string(sixteenths) + "/16", [sixteenths](Agl& p_agl) {
                p_agl.Enable(AGL_POLYGON_STIPPLE);
                p_agl.PolygonStipple(Library::Pattern::PolygonStipplePattern(sixteenths).data());
                p_agl.Color(0.9F, 0.8F, 0.3F);
                p_agl.Begin(AGL_QUADS);
                for (auto const& [x, y] : {std::pair(8, 8), {88, 8}, {88, 88}, {8, 88}})
                    p_agl.Vertex(x, y);
                p_agl.End();
            });
        }
        for (std::string const& name : Library::ColorMap::Names()) {
            Cell("color map " + name, [&name](Agl& p_agl) {
                DrawImage(p_agl, Library::ColorMap::Named(name)->Bar(80, 16), Pixels(8, 24, 80, 48));
            });
        }
    }

private:
    /// Draws with pixels as coordinates, and expects that something is to be seen.
    void Cell(std::string const& p_label, std::function<void(Agl&)> const& p_draw) {
        QImage const picture = AglPlayer::Picture(_player.GetBackend(), Side, Side, [&](Agl& p_agl) {
            UsePixels(p_agl, Side, Side, Types::Color4f(0.13F, 0.13F, 0.16F));
            p_draw(p_agl);
            EXPECT_EQ(p_agl.CheckError(), "") << p_label;
        });
        QImage empty = picture;
        empty.fill(picture.pixelColor(0, 0));
        EXPECT_NE(picture, empty) << p_label;
        _sheet.Add(p_label, picture);
    }
    void Texts() {
        using H = HorizontalAlignment;
        using V = VerticalAlignment;
        auto const cell = [this](std::string const& p_label, H p_horizontal, V p_vertical, std::string_view p_text) {
            Cell(p_label, [&](Agl& p_agl) {
                Library::Box(QColor(90, 90, 100)).Draw(p_agl, Pixels(6, 6, 83, 83));
                auto const font = MakeText(p_agl, 13);
                font->SetColor(Types::Color4f(1, 1, 1));
                font->SetHorizontalAlignment(p_horizontal);
                font->SetVerticalAlignment(p_vertical);
                font->Draw(p_agl, p_text, Pixels(8, 8, 80, 80));
            });
        };
        for (auto const& [vertical, v] : {std::pair("top", V::Top), {"center", V::Center}, {"bottom", V::Bottom}}) {
            for (auto const& [horizontal, h] : {std::pair("Left", H::Left), {"Center", H::Center}, {"Right", H::Right}})
                cell(std::string("text ") + horizontal + ' ' + vertical, h, v,
                    std::string(horizontal) + '\n' + vertical);
        }
        cell("text start", H::Start, V::Top, "Start\nשלום");
        cell("text lines", H::Left, V::Top, "Broken into several lines where words end");
        cell("text ellipsis", H::Left, V::Top, "Too long to fit in the rectangle that it has got, so it is cut");
    }
    void Boxes() {
        auto const turned = [](Agl& p_agl) {
            p_agl.Translate(48, 48, 0);
            p_agl.Scale(34, 34, 0.3);
            p_agl.Rotate(35, {1, 0.3, 0});
            p_agl.Rotate(30, {0, 1, 0});
            return Types::BoundingBox_Base<double>({-0.7, -0.7, -0.7}, {0.7, 0.7, 0.7});
        };
        QColor const line(250, 210, 60);
        Cell("box, pixels",
            [&](Agl& p_agl) { Library::Box(line, QColor(40, 70, 110)).Draw(p_agl, Pixels(12, 20, 70, 50)); });
        Cell("box, wide", [&](Agl& p_agl) {
            Library::Box box(line);
            box.SetLineWidth(6);
            box.Draw(p_agl, Pixels(12, 20, 70, 50));
        });
        Cell("box, twelve edges", [&](Agl& p_agl) {
            auto const box = turned(p_agl);
            Library::Box(line).Draw(p_agl, box);
        });
        Cell("filled box", [&](Agl& p_agl) {
            Library::FilledBox(line, QColor(60, 160, 220, 140)).Draw(p_agl, Pixels(12, 20, 70, 50));
        });
        Cell("filled box, hatched", [&](Agl& p_agl) {
            Library::FilledBox(line, QColor(60, 160, 220), Library::FilledBox::Mode::Hatched)
                .Draw(p_agl, Pixels(12, 20, 70, 50));
        });
        Cell("filled box, hatched 3D", [&](Agl& p_agl) {
            auto const box = turned(p_agl);
            Library::FilledBox(line, QColor(60, 160, 220), Library::FilledBox::Mode::Hatched).Draw(p_agl, box);
        });
    }

    ContactSheet& _sheet;
    AglPlayer const& _player;
};

} // namespace

void ContactSheet::Add(std::string p_label, QImage p_agl, QImage p_openGl) {
    _cells.push_back({std::move(p_label), std::move(p_agl), std::move(p_openGl)});
}

QImage ContactSheet::Render(Backend& p_backend) const {
    int const rows = (static_cast<int>(_cells.size()) + Columns - 1) / Columns;
    int const width = Columns * CellWidth;
    int const height = rows * CellHeight;
    QImage sheet = AglPlayer::Picture(p_backend, width, height, [&](Agl& p_agl) {
        UsePixels(p_agl, width, height, Types::Color4f(0.93F, 0.93F, 0.93F));
        auto const text = MakeText(p_agl, 11);
        text->SetVerticalAlignment(VerticalAlignment::Center);
        for (int i = 0; i < static_cast<int>(_cells.size()); ++i) {
            int const top = height - i / Columns * CellHeight;
            text->Draw(p_agl, std::string_view(_cells[static_cast<std::size_t>(i)].label),
                Pixels(i % Columns * CellWidth + 4, top - 18, CellWidth - 6, 17));
        }
    });
    sheet = sheet.convertToFormat(QImage::Format_RGB32);
    QPainter painter(&sheet);
    for (int i = 0; i < static_cast<int>(_cells.size()); ++i) {
        Cell const& cell = _cells[static_cast<std::size_t>(i)];
        int const x = i % Columns * CellWidth + 4;
        int const y = i / Columns * CellHeight + 18;
        painter.drawImage(x, y, cell.agl.convertToFormat(QImage::Format_RGBX8888));
        painter.drawImage(x + Side + 2, y, cell.openGl.convertToFormat(QImage::Format_RGBX8888));
    }
    return sheet;
}

void AddLibraryCells(ContactSheet& p_sheet, AglPlayer const& p_player) {
    p_player.MakeCurrent();
    LibraryCells(p_sheet, p_player).AddAll();
}

void ReportPicture(std::string const& p_name, ContactSheet const& p_sheet, AglPlayer const& p_player) {
    if (!ReportFolder().empty()) {
        p_player.MakeCurrent();
        QString const file = QString::fromStdString(ReportFolder() + "/" + p_name + ".png");
        EXPECT_TRUE(p_sheet.Render(p_player.GetBackend()).save(file)) << file.toStdString();
    }
}

} // namespace Qor::Chart::Ogl::Referee
