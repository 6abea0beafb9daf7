#pragma once

#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/Context.h"
#include "host/InputDispatcher.h"
#include "host/Offscreen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <vector>

namespace Qor::Chart::Host {

/// A colour that is to be seen at a pixel, counted from the lower left corner.
struct Sample {
    int x, y;
    QColor color;
};

inline QColor ColorAt(QImage const& p_image, int p_x, int p_y) {
    return p_image.pixelColor(p_x, p_image.height() - 1 - p_y);
}
inline bool AreAlike(QColor const& p_a, QColor const& p_b, int p_tolerance = 4) {
    return std::max({std::abs(p_a.red() - p_b.red()), std::abs(p_a.green() - p_b.green()),
               std::abs(p_a.blue() - p_b.blue())}) <= p_tolerance;
}
inline void ExpectSamples(QImage const& p_image, std::vector<Sample> const& p_samples, int p_tolerance = 4) {
    for (auto const& [x, y, expected] : p_samples) {
        QColor const color = ColorAt(p_image, x, y);
        EXPECT_TRUE(AreAlike(color, expected, p_tolerance)) << x << ", " << y << ": " << color.name().toStdString();
    }
}

/// A picture with OpenGL of a black pane that fills it, for whoever adds it; the test is skipped on a machine without.
struct PictureTest : testing::Test {
    void SetUp() override {
        try {
            Make({300, 300});
        } catch (Ogl::ContextError const& error) {
            GTEST_SKIP() << error.what();
        }
    }
    void Make(Types::Size const& p_size, int p_samples = 0) {
        input.reset();
        picture.emplace(p_size, p_samples);
        picture->GetScene().Capabilities().animations = false;
        input.emplace(picture->GetScene());
        pane = Core::MakeNode<Model::Pane>();
        pane->SetBackgroundColor(Qt::black);
    }
    /// Shows a node in the pane.
    void Show(Core::Ptr<Model::ModelNode> const& p_node) {
        pane->Add(p_node);
        picture->GetScene().Add(pane);
        Frame();
    }
    void Frame() {
        picture->Frame();
        input->SetView(picture->GetCamera(), picture->Viewport());
        input->FrameDone();
    }
    void ExpectColors(std::vector<Sample> const& p_samples) { ExpectSamples(picture->Render(), p_samples); }
    void Drag(Types::Pos const& p_from, Types::Pos const& p_to) {
        Frame();
        input->PointerMoved(p_from);
        input->PointerPressed(p_from);
        input->PointerMoved(p_to);
        input->PointerReleased(p_to);
        Frame();
    }
    void Click(Types::Pos const& p_pos) { Drag(p_pos, p_pos); }

    template <class Node>
    static void Place(Node& p_node, double p_left, double p_bottom) {
        p_node.SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, p_left});
        p_node.SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Bottom, p_bottom});
    }
    static Core::Ptr<Model::SimpleObject> MakeShape(
        Model::SymbolShape p_shape, QColor const& p_color, Types::Vector3_Base<double> const& p_at = {}) {
        auto object = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(p_shape));
        object->SetColor(p_color);
        object->SetTransform(Types::Matrix4::Translation(p_at));
        return object;
    }

    std::optional<Offscreen> picture;
    std::optional<InputDispatcher> input;
    Core::Ptr<Model::Pane> pane;
    Types::Schema const schema;
};

} // namespace Qor::Chart::Host
