#pragma once

#include "framework/core/Reference.h"
#include "framework/model/ModelNode.h"
#include "host/Scene.h"
#include "render/events/EventHandler.h"
#include "render/events/EventInformation.h"
#include "render/pick/SelectRecord.h"

#include <array>
#include <functional>
#include <list>
#include <map>
#include <set>
#include <string>

namespace Qor::Chart::Host {

inline std::array<char const*, Render::EventHandler::EventCount> const EventNames{"over", "move", "out", "begin",
    "drag", "end", "takes", "dropover", "drop", "click", "double", "scroll", "key", "keyup"};

/// What the nodes of a test are to do, and what they were asked.
struct Script {
    std::string calls;
    std::set<std::string> consumed; ///< such as "A.click"
    std::map<std::string, std::function<void(Render::EventInformation&)>> actions;

    void Note(std::string const& p_text) { calls += (calls.empty() ? "" : " ") + p_text; }
};

class Actor : public Model::ModelNode {
public:
    Types::Viewport<0> rectangle; ///< where it is hit; of each half with a name of its own
    double depth = 0;
    bool isSelectable = true, isSelected = false;
    std::set<std::string> events;
    Script* script = nullptr;
};

class ActorVis : public Render::Vis, public Render::EventHandler {
public:
    using EventInformation = Render::EventInformation;

    explicit ActorVis(Core::Ptr<Actor> const& p_actor)
        : Vis(p_actor->rectangle.IsEmpty() ? VisFlagContextRoot : 0)
        , _model(*this, "model")
        , _script(*p_actor->script) {
        _model.Attach(p_actor);
        RegisterCB(Render::HandledHit);
        RegisterCB(Render::HandledBoundingBox);
        for (int i = 0; i < EventCount; ++i) {
            if (p_actor->events.contains(EventNames[i]))
                Connect(*this, static_cast<EventName>(i));
        }
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return _model.Get(); }

    Render::Event::Result OnMouseOver(EventInformation& p_event) override { return Answer(0, p_event); }
    void OnMouseMove(EventInformation& p_event) override { Answer(1, p_event); }
    void OnMouseOut(EventInformation& p_event) override { Answer(2, p_event); }
    Render::Event::Result OnDragBegin(EventInformation& p_event) override { return Answer(3, p_event, true); }
    void OnDrag(EventInformation& p_event) override { Answer(4, p_event, true); }
    void OnDragEnd(EventInformation& p_event) override { Answer(5, p_event, true); }
    bool NotifyDropTarget(EventInformation& p_event, Render::HitRecord const&) override {
        return Answer(6, p_event) == Render::Event::Consumed;
    }
    void OnDropTargetDragOver(EventInformation& p_event, Render::HitRecord const&, DragOverHint p_hint) override {
        _script.Note(std::array{"enter", "stay", "leave"}[static_cast<std::size_t>(p_hint)]);
        Answer(7, p_event);
    }
    Render::Event::HandlerStatus OnDrop(EventInformation& p_event, Render::HitRecord const&) override {
        return Answer(8, p_event).status;
    }
    Render::Event::Result OnClick(EventInformation& p_event) override { return Answer(9, p_event); }
    Render::Event::Propagation OnDoubleClick(EventInformation& p_event) override {
        return Answer(10, p_event).propagation;
    }
    Render::Event::Propagation OnScroll(EventInformation& p_event) override { return Answer(11, p_event).propagation; }
    Render::Event::Result OnKeyPress(EventInformation& p_event) override { return Answer(12, p_event); }
    void OnKeyRelease(EventInformation& p_event) override { Answer(13, p_event); }

private:
    Types::BoundingBox_Base<double> DoBoundingBox(Types::BoundingBox_Base<double> const&) override {
        return {{-1, -1, -1}, {1, 1, 1}};
    }
    bool DoHit(Render::DrawContext const&, Render::PickPoint const& p_point, Render::HitResult& p_result) override {
        Types::Viewport<0> const& area = _model.Peek()->rectangle;
        auto const meets = [](int p_at, int p_tolerance, float p_from, float p_to) {
            return static_cast<float>(p_at + p_tolerance) >= p_from && static_cast<float>(p_at - p_tolerance) < p_to;
        };
        bool const isRight = static_cast<float>(p_point.position.x) >= area.x + area.width / 2;
        if (meets(p_point.position.x, p_point.tolerance.width, area.x, area.Right()) &&
            meets(p_point.position.y, p_point.tolerance.height, area.y, area.Top()))
            p_result.records.emplace_back(Ogl::HitRecord::NameFirst + (isRight ? 1 : 0), _model.Peek()->depth);
        return true;
    }
    void GetSelectRecords(Render::HitRecord const&, std::list<Render::SelectRecord>& p_records) override {
        if (_model.Peek()->isSelectable)
            p_records.emplace_back(Core::Ptr<Vis>(this), Core::Ptr<Model::ModelNode>(_model.Lock()), GetPath());
    }
    void DoSelect(Render::SelectRecord const&, Core::NodePath const&, bool p_selected) override {
        _model.Lock()->isSelected = p_selected;
    }
    Render::Event::Result Answer(std::size_t p_event, EventInformation& p_event2, bool p_withPlace = false) {
        std::string const call = _model.Get().Lock()->Name() + "." + EventNames[p_event];
        Types::Pos const& place = p_event2.position;
        _script.Note(p_withPlace ? call + "(" + std::to_string(place.x) + "," + std::to_string(place.y) + ")" : call);
        if (auto const action = _script.actions.find(call); action != _script.actions.end())
            action->second(p_event2);
        return _script.consumed.contains(call) ? Render::Event::Consumed : Render::Event::Ignored;
    }

    Core::WeakRef<Actor> _model;
    Script& _script;
};

inline void RegisterActors(Scene& p_scene) {
    p_scene.Factories().Register<Actor>([](Core::Ptr<Model::ModelNode> const& p_model) {
        return Core::Ptr<Render::Vis>(new ActorVis(Core::Ptr<Actor>(static_cast<Actor*>(p_model.Get()))));
    });
}

} // namespace Qor::Chart::Host
