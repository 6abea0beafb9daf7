#pragma once

#include "render/context/DrawContext.h"
#include "render/context/EventDispatcher.h"
#include "render/context/SceneCapabilities.h"
#include "render/core/Vis.h"
#include "framework/assets/ImageCache.h"
#include "framework/assets/Resource.h"
#include "framework/library/Geometry.h"
#include "framework/model/Events.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Highlight.h"
#include "framework/ogl/RecorderBackend.h"
#include "framework/types/NumberFormat.h"
#include "framework/types/Schema.h"
#include "framework/utility/Scoped.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// What tests of contexts and traversals draw with: everything real, on the recorder.
namespace Qor::Chart::Render::Fixtures {

/// A dispatcher that keeps what it is told.
class RecordingDispatcher : public EventDispatcher {
public:
    boost::shared_ptr<EventDispatcher> DispatcherOf(Core::WeakPtr<Vis> const& p_node) override {
        asked.push_back(p_node);
        return next ? next : boost::shared_ptr<EventDispatcher>(boost::shared_ptr<void>(), this);
    }
    void ReportException(std::string const& p_text, std::string const& p_location) override {
        exceptions.push_back(p_text);
        locations.push_back(p_location);
        if (throwsOnException)
            throw std::runtime_error("no");
    }
    void ReportWarning(Vis const&, std::string const& p_text, std::string const& p_location, int p_level) override {
        warnings.emplace_back(p_level, p_text);
        warningLocations.push_back(p_location);
    }
    void DispatchEvent(
        Core::WeakPtr<Model::ModelNode> const& p_node, std::shared_ptr<Model::Events::Event const>) override {
        events.push_back(p_node);
    }
    void RequestRedraw(int p_milliseconds) override { redraws.push_back(p_milliseconds); }
    void RequestUpdate() override {}

    boost::shared_ptr<EventDispatcher> next; ///< what it gives for a node; itself when empty
    std::vector<Core::WeakPtr<Vis>> asked;
    std::vector<std::string> exceptions, locations, warningLocations;
    std::vector<std::pair<int, std::string>> warnings;
    std::vector<Core::WeakPtr<Model::ModelNode>> events;
    std::vector<int> redraws;
    bool throwsOnException = false;
};

/// The recorder on a machine whose device may lack a feature.
struct FeatureBackend : Ogl::RecorderBackend {
    using RecorderBackend::RecorderBackend;
    Ogl::DeviceFeatures const& Features() override { return features; }
    Ogl::DeviceFeatures features = RecorderBackend::Features();
};

/// Everything that a draw context refers to.
struct DrawFixture {
    explicit DrawFixture(Ogl::RecorderBackend::Keep p_keep = Ogl::RecorderBackend::Keep::Commands)
        : agl(std::make_unique<FeatureBackend>(p_keep)) {}
    FeatureBackend& Backend() const { return static_cast<FeatureBackend&>(agl.GetBackend()); }

    DrawContext MakeContext(DrawContext::DrawMode p_mode = DrawContext::DrawMode::Draw) {
        return {handle, resource, imageCache, dispatcher, schema, numberFormat, geometry, p_mode, std::bitset<2>(1),
            Core::Verbosity::Quiet, capabilities, highlighter};
    }

    Ogl::Agl agl;
    Utility::Unscoped<Ogl::Agl> handle{agl};
    Assets::Resource resource;
    Assets::ImageCache imageCache;
    RecordingDispatcher dispatcher;
    Types::Schema schema;
    Types::NiceIntervals::NumberFormat numberFormat;
    Library::Geometry geometry;
    SceneCapabilities capabilities;
    boost::shared_ptr<Ogl::Highlight> highlighter = boost::make_shared<Ogl::Highlight>();
};

} // namespace Qor::Chart::Render::Fixtures
