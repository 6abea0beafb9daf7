#include "host/Scene.h"

#include "framework/core/Exceptions.h"
#include "framework/core/Reference.h"
#include "framework/model/Light.h"
#include "framework/model/SceneGraph.h"
#include "framework/utility/Unscoped.h"
#include "host/CameraVis.h"
#include "host/HostError.h"
#include "render/nodes/NodeFactories.h"
#include "render/core/SelectsBelow.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <bitset>
#include <span>
#include <utility>

namespace Qor::Chart::Host {

namespace {

/// The shader of the scene lights by itself while no light is in force.
std::bitset<2> const ShaderOptions = std::bitset<2>().set(Ogl::GenericShader::State::Headlight);

} // namespace

/// Stands for a light in the visual tree, so that a light which leaves the model or is disabled stops shining. The frame
/// driver puts its light into force for the whole scene; the node itself draws nothing.
class Scene::LightVis : public Render::Vis, public Render::SelectsBelow {
public:
    explicit LightVis(Core::Ptr<Model::ModelNode> const& p_model) : _model(*this, "model") { _model.Attach(p_model); }

    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return _model.Get(); }
    Core::Ptr<Model::Light> Light() const { return _model.Get().Lock(); }

protected:
    ~LightVis() override = default;

private:
    Core::WeakRef<Model::Light> _model;
};

Scene::Scene(std::unique_ptr<Ogl::Backend> p_backend)
    : _agl(std::make_unique<Ogl::Agl>(std::move(p_backend)))
    , _unitDatabase(boost::make_shared<UnitConverter>())
    , _units(Core::MakeNode<Render::UnitSystemConverter>())
    , _highlight(boost::make_shared<Ogl::Highlight>())
    , _lights(std::make_shared<LightList>()) {
    _units->RegisterConverter(_unitDatabase);
    _generator.Register<Model::Light>([lights = _lights](Core::Ptr<Model::ModelNode> const& p_model) {
        std::erase_if(*lights, [](Core::WeakPtr<Render::Vis> const& p_light) { return p_light.Expired(); });
        Core::Ptr<Render::Vis> light(new LightVis(p_model));
        lights->emplace_back(light);
        return light;
    });
    _generator.Register<CameraNode>(
        [](Core::Ptr<Model::ModelNode> const& p_model) { return Core::Ptr<Render::Vis>(new CameraVis(p_model)); });
    Render::RegisterNodeFactories(_generator);
    Core::Ptr<Model::SceneGraph> const root = Core::MakeNode<Model::SceneGraph>();
    root->SetName("scene");
    SetModel(root);
}

Scene::~Scene() = default;

void Scene::SetModel(Core::Ptr<Model::ModelNode> p_root) {
    if (!p_root)
        throw HostError("A scene needs a model node as its root; give one, such as a Model::SceneGraph.");
    Core::Ptr<Render::Vis> visual = Generate(p_root);
    visual->SetActive(true);
    _visual = std::move(visual);
    _model = std::move(p_root);
    _dispatcher.RequestUpdate();
}

Core::Ptr<Render::Vis> Scene::Generate(Core::Ptr<Model::ModelNode> const& p_root) const {
    std::string const name = p_root->TypeName() + " \"" + p_root->Name() + "\"";
    if (!_generator.IsRegistered(p_root))
        throw HostError("The node " + name +
            " cannot be the root of a scene, because its class has no factory; register one with Scene::Factories.");
    try {
        return _generator(p_root);
    } catch (Core::CyclicDependencyFoundExcept const& error) {
        throw HostError("The model below " + name + " contains itself: " + error.what());
    } catch (Core::TreeTooDeepExcept const& error) {
        throw HostError("The model below " + name + " cannot be shown: " + error.what());
    }
}

std::vector<Core::Ptr<Model::Light>> Scene::Lights() const {
    std::vector<Core::Ptr<Model::Light>> shining;
    for (Core::WeakPtr<Render::Vis> const& weak : *_lights) {
        Core::Ptr<Render::Vis> const vis = weak.Lock();
        if (!vis || !vis->TakesPartIn(*_visual))
            continue;
        if (Core::Ptr<Model::Light> light = static_cast<LightVis const&>(*vis).Light())
            shining.push_back(std::move(light));
    }
    return shining;
}

std::vector<Types::BoundingBox_Base<double>> Scene::PartsOf(Render::Vis const& p_root) {
    constexpr std::size_t enough = 4096;
    std::vector<Types::BoundingBox_Base<double>> parts;
    std::vector<Render::Vis const*> level{&p_root};
    while (!level.empty()) {
        std::vector<Render::Vis const*> below;
        for (Render::Vis const* const node : level) {
            bool const isGroup = node->HasActiveChildren() && !node->IsHandled(Render::HandledBoundingBox);
            bool const goesOn = isGroup && parts.size() + level.size() + below.size() + node->Size() < enough;
            if (!goesOn && node->BoundingBox().IsDefined())
                parts.push_back(node->BoundingBox());
            for (Render::ActiveIterator child = node->ActiveBegin(); goesOn && child != node->ActiveEnd(); ++child) {
                if (!(*child)->IsFlagged(Render::Vis::VisFlagContextRoot))
                    below.push_back(child->Get());
            }
        }
        level = std::move(below);
    }
    return parts;
}

Render::UpdateContext Scene::MakeUpdateContext() {
    return {Utility::Unscoped<Ogl::Agl>(*_agl), _resource, _images, _schema, _numberFormat, _registrar, _geometry,
        _symbols, _generator, _dispatcher, _units, _verbosity, _capabilities};
}

Render::DrawContext Scene::MakeDrawContext(Render::DrawContext::DrawMode p_mode) {
    return {Utility::Unscoped<Ogl::Agl>(*_agl), _resource, _images, _dispatcher, _schema, _numberFormat, _geometry,
        p_mode, ShaderOptions, _verbosity, _capabilities, _highlight};
}

} // namespace Qor::Chart::Host
