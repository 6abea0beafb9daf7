#include "render/nodes/NodeFactories.h"

#include "render/nodes/Bitmap.h"
#include "render/nodes/ColorPicker.h"
#include "render/nodes/Group.h"
#include "render/nodes/ImageButton.h"
#include "render/nodes/Legend.h"
#include "render/nodes/RenderStyle.h"
#include "render/nodes/SceneVis.h"
#include "render/nodes/SelectionList.h"
#include "render/nodes/SimpleObject.h"
#include "render/nodes/Statistics.h"
#include "render/nodes/TextBox.h"
#include "render/nodes/Toolbar.h"
#include "render/nodes/Viewport.h"
#include "render/loops/Generator.h"

namespace Qor::Chart::Render {

namespace {

template <class Node>
Core::Ptr<Vis> Make(Core::Ptr<Model::ModelNode> const& p_model) {
    Core::Ptr<Node> const node = Core::MakeNode<Node>();
    node->Attach(p_model);
    return node;
}

} // namespace

void RegisterNodeFactories(Generator& p_generator) {
    p_generator.Register<Model::Bitmap>(&Make<Bitmap>);
    p_generator.Register<Model::ColorPicker>(&Make<ColorPicker>);
    p_generator.Register<Model::Group>(&Make<Group>);
    p_generator.Register<Model::ImageButton>(&Make<ImageButton>);
    p_generator.Register<Model::Legend>(&Make<Legend>);
    p_generator.Register<Model::Pane>(&Make<Viewport>);
    p_generator.Register<Model::RenderStyle>(&Make<RenderStyle>);
    p_generator.Register<Model::SceneGraph>(&Make<SceneVis>);
    p_generator.Register<Model::SelectionList>(&Make<SelectionList>);
    p_generator.Register<Model::SimpleObject>(&Make<SimpleObject>);
    p_generator.Register<Model::Statistics>(&Make<Statistics>);
    p_generator.Register<Model::TextBox>(&Make<TextBox>);
    p_generator.Register<Model::Toolbar>(&Make<Toolbar>);
}

} // namespace Qor::Chart::Render
