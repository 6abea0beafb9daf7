#include "render/pick/HitRecord.h"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <utility>

namespace Qor::Chart::Render {

HitRecord::HitRecord(Core::WeakPtr<Vis> p_node, HitResult p_result, Types::Vector3_Base<double> const& p_location,
    Types::Vector3_Base<double> const& p_global, Types::Pos const& p_screenPos)
    : node(std::move(p_node))
    , result(std::move(p_result))
    , location(p_location)
    , global(p_global)
    , screenPos(p_screenPos) {}

bool HitRecord::IsBefore(HitRecord const& p_a, HitRecord const& p_b) {
    if (p_a.result.records.empty() || p_b.result.records.empty())
        return false;
    Vis const* const a = p_a.node.Peek();
    Vis const* const b = p_b.node.Peek();
    if (!a != !b)
        return a != nullptr;
    if (a && a->GetLayer() != b->GetLayer())
        return a->GetLayer() > b->GetLayer();
    return p_a.result.records.front().depth < p_b.result.records.front().depth;
}

void HitRecord::Sort(std::vector<HitRecord>& p_found) {
    std::reverse(p_found.begin(), p_found.end());
    std::stable_sort(p_found.begin(), p_found.end(), &IsBefore);
}

void HitRecord::Dump(std::string const& p_prefix, std::ostream& p_stream, HitRecord const& p_record) {
    p_stream << p_prefix;
    Core::Ptr<Vis> const node = p_record.node.Lock();
    if (!node) {
        p_stream << "ERROR: Expired node";
        return;
    }
    p_stream << Core::Ptr<Core::Node>(node);
    p_stream << '\n' << p_prefix << "\tlocation(" << p_record.location << ')';
    p_stream << '\n' << p_prefix << "\tglobal(" << p_record.global << ')';
    p_stream << '\n' << p_prefix << "\tscreenPos(" << p_record.screenPos << ')';
    std::size_t number = 0;
    for (Ogl::HitRecord const& hit : p_record.result.records)
        p_stream << '\n' << p_prefix << "\t\t[" << number++ << "] " << hit;
}

void HitRecord::Dump(std::string const& p_prefix, std::ostream& p_stream, std::vector<HitRecord> const& p_records) {
    std::size_t number = 0;
    for (HitRecord const& record : p_records) {
        p_stream << p_prefix << '[' << number++ << "] \n";
        Dump(p_prefix + '\t', p_stream, record);
        p_stream << '\n';
    }
}

std::ostream& operator<<(std::ostream& p_stream, HitRecord const& p_record) {
    HitRecord::Dump({}, p_stream, p_record);
    return p_stream;
}

std::ostream& operator<<(std::ostream& p_stream, std::vector<HitRecord> const& p_records) {
    HitRecord::Dump({}, p_stream, p_records);
    return p_stream;
}

} // namespace Qor::Chart::Render
