#include "host/EventDispatcher.h"

#include "framework/model/EventDelegate.h"
#include "framework/model/ModelNode.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"
#include "framework/utility/Readable.h"
#include "render/core/Vis.h"

#include <algorithm>
#include <limits>
#include <sstream>

namespace Qor::Chart::Host {

namespace {

constexpr std::uint64_t NanosecondsPerMillisecond = 1'000'000;

/// 1, 10, 100 and so on.
bool IsPowerOfTen(std::uint64_t p_count) {
    while (p_count >= 10 && p_count % 10 == 0)
        p_count /= 10;
    return p_count == 1;
}

std::string TextOf(Render::Vis const& p_node, std::string const& p_text) {
    std::ostringstream text;
    text << static_cast<Core::Node const&>(p_node) << ": " << p_text;
    std::string result = text.str();
    while (!result.empty() && result.back() == '\n')
        result.pop_back();
    return result;
}

std::string KeyOf(Report const& p_report) {
    return p_report.text + '\n' + p_report.location;
}

} // namespace

EventDispatcher::EventDispatcher() = default;
EventDispatcher::~EventDispatcher() = default;

boost::shared_ptr<Render::EventDispatcher> EventDispatcher::DispatcherOf(Core::WeakPtr<Render::Vis> const&) {
    return {this, [](Render::EventDispatcher*) {}};
}

void EventDispatcher::ReportException(std::string const& p_text, std::string const& p_location) {
    Take({Report::Kind::Exception, 2, Utility::Readable(p_text), p_location, 1});
}

void EventDispatcher::ReportWarning(
    Render::Vis const& p_node, std::string const& p_text, std::string const& p_location, int p_level) {
    Take({Report::Kind::Warning, p_level, Utility::Readable(TextOf(p_node, p_text)), p_location, 1});
}

void EventDispatcher::Take(Report p_report) {
    ++_reportCount;
    std::string key = KeyOf(p_report);
    auto const known = _reportsByText.find(key);
    if (known != _reportsByText.end()) {
        Report& report = *known->second;
        ++report.count;
        _reports.splice(_reports.end(), _reports, known->second);
        if (IsPowerOfTen(report.count))
            Write(report);
        return;
    }
    if (_reports.size() == MaxReports) {
        _reportsByText.erase(KeyOf(_reports.front()));
        _reports.pop_front();
    }
    _reports.push_back(std::move(p_report));
    _reportsByText.emplace(std::move(key), std::prev(_reports.end()));
    Write(_reports.back());
}

void EventDispatcher::Write(Report const& p_report) const {
    std::string text = p_report.text;
    if (p_report.count > 1)
        text += " (" + std::to_string(p_report.count) + " times so far)";
    if (!p_report.location.empty())
        text += " [" + p_report.location + "]";
    if (p_report.kind == Report::Kind::Exception)
        Utility::GetLogger().error(text);
    else
        Utility::GetLogger().warning(text);
}

void EventDispatcher::ClearReports() {
    _reports.clear();
    _reportsByText.clear();
    _reportCount = 0;
}

void EventDispatcher::DispatchEvent(
    Core::WeakPtr<Model::ModelNode> const& p_node, std::shared_ptr<Model::Events::Event const> p_event) {
    if (QOR_ENSURE(p_event))
        _events.emplace_back(p_node, std::move(p_event));
}

std::size_t EventDispatcher::DeliverEvents() {
    auto const events = std::exchange(_events, {});
    std::size_t delivered = 0;
    for (auto const& [weakNode, event] : events) {
        Core::Ptr<Model::ModelNode> const node = weakNode.Lock();
        if (!node)
            continue;
        ++delivered;
        if (node->Delegate().HasSubscribers()) {
            _updateRequested = true;
            node->Delegate().Raise(*event);
        }
    }
    return delivered;
}

void EventDispatcher::RequestRedraw(int p_milliseconds) {
    auto const delay = static_cast<std::uint64_t>(std::max(p_milliseconds, 0));
    std::uint64_t const due = qordebug::now() + delay * NanosecondsPerMillisecond;
    if (_redrawDue && *_redrawDue <= due)
        return;
    _redrawDue = due;
    if (_wakeUp)
        _wakeUp(static_cast<int>(delay));
}

void EventDispatcher::RequestUpdate() {
    _updateRequested = true;
    RequestRedraw(0);
}

std::optional<int> EventDispatcher::RedrawDueIn() const noexcept {
    if (!_redrawDue)
        return std::nullopt;
    std::uint64_t const now = qordebug::now();
    if (*_redrawDue <= now)
        return 0;
    std::uint64_t const left = (*_redrawDue - now + NanosecondsPerMillisecond - 1) / NanosecondsPerMillisecond;
    return static_cast<int>(std::min<std::uint64_t>(left, std::numeric_limits<int>::max()));
}

bool EventDispatcher::TakeRedrawRequest() noexcept {
    bool const isDue = _redrawDue && *_redrawDue <= qordebug::now();
    if (isDue)
        _redrawDue.reset();
    return isDue;
}

} // namespace Qor::Chart::Host
