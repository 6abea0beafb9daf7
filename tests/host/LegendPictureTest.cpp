#include "host/InputDispatcher.h"
#include "host/Offscreen.h"
#include "host/Picker.h"

#include "framework/model/Legend.h"
#include "framework/model/Pane.h"
#include "framework/ogl/Context.h"
#include "framework/ogl/HitRecord.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <vector>

namespace Qor::Chart::Host {
namespace {

bool AreAlike(QColor const& p_a, QColor const& p_b) {
    return std::max({std::abs(p_a.red() - p_b.red()), std::abs(p_a.green() - p_b.green()),
               std::abs(p_a.blue() - p_b.blue())}) <= 4;
}

TEST(LegendPictureTest, swatchesShowWhatTheirEntriesStandFor) {
    std::optional<Offscreen> picture;
    try {
        picture.emplace(Types::Size(240, 200), 0);
    } catch (Ogl::ContextError const& error) {
        GTEST_SKIP() << error.what();
    }
    auto const pane = Core::MakeNode<Model::Pane>();
    auto const legend = Core::MakeNode<Model::Legend>();
    auto const hidden = Core::MakeNode<Model::Symbol>();
    hidden->SetVisible(false);
    pane->SetBackgroundColor(Qt::black);
    legend->SetBackgroundColor(QColor(Qt::white));
    legend->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 10});
    legend->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Top, 5});
    auto const add = [&](QColor const& p_color, Model::LegendSwatch p_swatch) {
        auto const entry = Core::MakeNode<Model::LegendEntry>();
        entry->SetColor(p_color);
        entry->SetSwatch(p_swatch);
        legend->Add(entry);
        return entry;
    };
    using enum Model::LegendSwatch;
    add(Qt::red, Color);
    add(Qt::green, Color)->SetTarget(hidden);
    add(Qt::red, Line);
    add(Qt::blue, Point);
    add(Qt::blue, Symbol)->SetSymbol(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Sphere));
    add(Qt::blue, ColorMap)->SetColorMap("viridis");
    pane->Add(legend);
    picture->GetScene().Add(pane);
    picture->Frame();

    /// For each entry, the heights at which the pointer finds it.
    std::array<std::vector<int>, 6> heights;
    for (int y = 0; y < 200; ++y) {
        auto const hits = Picker(picture->GetScene()).Pick(picture->GetCamera(), picture->Viewport(), {{20, y}, {}});
        std::uint64_t const name = hits.empty() ? 0 : hits.front().result.records.front().name;
        if (name >= Ogl::HitRecord::NameFirst)
            heights.at(name - Ogl::HitRecord::NameFirst).push_back(y);
    }
    auto const middleOf = [&](std::size_t p_entry) { return heights[p_entry].at(heights[p_entry].size() / 2); };
    InputDispatcher input(picture->GetScene());
    input.SetView(picture->GetCamera(), picture->Viewport());
    input.PointerMoved({60, middleOf(2)});
    QImage const image = picture->Render();
    auto const at = [&](int p_x, int p_y) { return image.pixelColor(p_x, image.height() - 1 - p_y); };

    struct Sample {
        std::size_t entry;
        int x, dy; ///< from the middle of the entry
        QColor color;
    };
    QColor const lit(255, 233, 195);
    for (Sample const& sample : {
             Sample{0, 9, 0, Qt::black}, {0, 10, 0, Types::Schema().borderColor}, {0, 12, 0, Qt::white}, // the frame
             {0, 20, 0, Qt::red}, {0, 50, 0, Qt::white}, {1, 20, 0, QColor(178, 255, 178)}, // faint
             {2, 20, 0, Qt::red}, {2, 20, 5, lit}, {2, 60, 0, lit}, // under the pointer
             {3, 25, 0, Qt::blue}, {3, 18, 0, Qt::white}, // round
         }) {
        QColor const color = at(sample.x, middleOf(sample.entry) + sample.dy);
        EXPECT_TRUE(AreAlike(color, sample.color))
            << sample.entry << " at " << sample.x << ": " << color.name().toStdString();
    }
    QColor const sphere = at(25, middleOf(4));
    EXPECT_TRUE(sphere.blue() > 150 && sphere.red() < 30) << sphere.name().toStdString();
    int first = 0, last = 0;
    for (int x = 0; x < 240; ++x) {
        for (int const y : heights[5]) {
            first = first == 0 && AreAlike(at(x, y), QColor(68, 1, 84)) ? x : first;
            last = AreAlike(at(x, y), QColor(253, 231, 37)) ? x : last;
        }
    }
    EXPECT_EQ(first, 17) << "inside the frame of the bar";
    EXPECT_GT(last, first + 100);
}

} // namespace
} // namespace Qor::Chart::Host
