#include "apps/qorview/Summary.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <ostream>

namespace Qor::Chart::QorView {

using Render::FrameStatistics;

namespace {

/// "1 group", "2 groups"; nothing for none of them unless they are always told.
void WriteCount(std::ostream& p_stream, std::size_t p_count, char const* p_name, bool p_always = false) {
    if (p_count > 0 || p_always)
        p_stream << ", " << p_count << ' ' << p_name << (p_count == 1 ? "" : "s");
}

void WriteFile(std::ostream& p_stream, Summary::File const& p_file) {
    p_stream << p_file.path << ": read in " << p_file.milliseconds << " ms";
    WriteCount(p_stream, p_file.groups, "group");
    WriteCount(p_stream, p_file.objects, "object", true);
    WriteCount(p_stream, p_file.styles, "render style");
    WriteCount(p_stream, p_file.triangles, "triangle");
    WriteCount(p_stream, p_file.lines, "line");
    WriteCount(p_stream, p_file.points, "point");
    WriteCount(p_stream, p_file.dropped, "broken part");
    p_stream << (p_file.dropped > 0 ? " left out\n" : "\n");
}

void WriteFrame(std::ostream& p_stream, FrameStatistics const& p_frame) {
    p_stream << "frame " << p_frame.frame << ": visited " << p_frame.visited << ", updated " << p_frame.updated
             << ", drawn " << p_frame.Drawn() << "; update " << p_frame.updateMilliseconds << " ms, paths "
             << p_frame.pathMilliseconds << " ms, draw " << p_frame.DrawMilliseconds() << " ms\n";
}

nlohmann::json JsonOf(Summary::File const& p_file) {
    return {{"path", p_file.path}, {"groups", p_file.groups}, {"objects", p_file.objects}, {"styles", p_file.styles},
        {"triangles", p_file.triangles}, {"lines", p_file.lines}, {"points", p_file.points},
        {"dropped", p_file.dropped}, {"milliseconds", p_file.milliseconds}};
}

nlohmann::json JsonOf(FrameStatistics const& p_frame) {
    return {{"frame", p_frame.frame}, {"visited", p_frame.visited}, {"updated", p_frame.updated},
        {"drawn", p_frame.Drawn()}, {"drawCalls", p_frame.graphics.drawCalls},
        {"primitives", p_frame.graphics.primitives}, {"updateMilliseconds", p_frame.updateMilliseconds},
        {"pathMilliseconds", p_frame.pathMilliseconds}, {"drawMilliseconds", p_frame.DrawMilliseconds()}};
}

template <class List>
nlohmann::json JsonOfAll(List const& p_list) {
    nlohmann::json all = nlohmann::json::array();
    for (auto const& entry : p_list)
        all.push_back(JsonOf(entry));
    return all;
}

} // namespace

void Summary::WriteText(std::ostream& p_stream) const {
    p_stream << std::fixed << std::setprecision(2);
    std::size_t triangles = 0;
    for (File const& file : files) {
        triangles += file.triangles;
        WriteFile(p_stream, file);
    }
    if (listFrames) {
        for (FrameStatistics const& frame : frames)
            WriteFrame(p_stream, frame);
    }
    if (pick)
        pick->WriteText(p_stream);
    FrameStatistics const& first = frames.front();
    p_stream << "nodes       " << nodes << '\n'
             << "triangles   " << triangles << '\n'
             << "visited     " << first.visited << '\n'
             << "updated     " << first.updated << '\n'
             << "drawn       " << first.Drawn() << ", in " << first.graphics.drawCalls << " draw calls\n"
             << "update      " << first.updateMilliseconds << " ms\n"
             << "paths       " << first.pathMilliseconds << " ms\n"
             << "draw        " << first.DrawMilliseconds() << " ms\n"
             << "device      " << device << '\n';
    if (reports > 0)
        p_stream << "reports     " << reports << ", see the messages\n";
    if (!picture.empty())
        p_stream << "picture     " << picture << ", " << size.width << 'x' << size.height << '\n';
}

void Summary::WriteJson(std::ostream& p_stream) const {
    nlohmann::json json{{"files", JsonOfAll(files)}, {"frames", JsonOfAll(frames)}, {"nodes", nodes},
        {"reports", reports}, {"device", device}, {"width", size.width}, {"height", size.height}};
    if (!picture.empty())
        json["picture"] = picture;
    if (pick)
        json["pick"] = pick->Json();
    p_stream << json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

} // namespace Qor::Chart::QorView
