#include "apps/qorview/PickReport.h"

#include <nlohmann/json.hpp>

#include <ostream>
#include <sstream>

namespace Qor::Chart::QorView {

namespace {

std::string NodeText(Core::Ptr<Core::Node> const& p_node) {
    return p_node ? (std::ostringstream() << p_node).str() : std::string();
}

nlohmann::json JsonOf(Types::Vector3_Base<double> const& p_place) {
    return {p_place.x, p_place.y, p_place.z};
}

nlohmann::json JsonOf(Render::HitRecord const& p_hit) {
    nlohmann::json records = nlohmann::json::array();
    for (Ogl::HitRecord const& record : p_hit.result.records)
        records.push_back({{"name", record.name}, {"depth", record.depth}});
    return {{"node", NodeText(p_hit.node.Lock())}, {"location", JsonOf(p_hit.location)},
        {"global", JsonOf(p_hit.global)}, {"pane", NodeText(p_hit.hitRoot.Lock())}, {"records", records}};
}

} // namespace

void PickReport::WriteText(std::ostream& p_stream) const {
    std::ostringstream text; // whatever the format of the numbers around it
    text << "pick " << pixel.x << ',' << pixel.y << " from the upper left: " << hits.size()
         << (hits.size() == 1 ? " hit" : " hits") << ", visited " << visited << ", tested " << tested << '\n';
    Render::HitRecord::Dump("", text, hits);
    text << "selection   ";
    if (selection)
        text << *selection;
    else
        text << "none";
    p_stream << text.str() << '\n';
}

nlohmann::json PickReport::Json() const {
    nlohmann::json all = nlohmann::json::array();
    for (Render::HitRecord const& hit : hits)
        all.push_back(JsonOf(hit));
    nlohmann::json json{
        {"pixel", {pixel.x, pixel.y}}, {"hits", all}, {"visited", visited}, {"tested", tested}, {"selection", nullptr}};
    if (selection)
        json["selection"] = NodeText(selection->Selection().Lock());
    return json;
}

} // namespace Qor::Chart::QorView
