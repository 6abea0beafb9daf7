#pragma once

#include "host/Export.h"
#include "host/Report.h"
#include "render/context/EventDispatcher.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Qor::Chart::Host {

/// What stands between the visual tree and a program. Reports go to the log, each text once and then at its 10th, 100th,
/// 1000th time, so that a node which fails in every frame does not flood it. Events wait until the traversal that raised
/// them is over. Requests for a frame or an update are merged into one.
class QOR_HOST_API EventDispatcher : public Render::EventDispatcher {
public:
    /// How many different reports are remembered; the one that was quiet for longest makes room for a new one.
    static constexpr std::size_t MaxReports = 1000;

    EventDispatcher();
    ~EventDispatcher() override;

    /// One dispatcher serves all context roots.
    boost::shared_ptr<Render::EventDispatcher> DispatcherOf(Core::WeakPtr<Render::Vis> const& p_node) override;
    void ReportException(std::string const& p_text, std::string const& p_location) override;
    void ReportWarning(
        Render::Vis const& p_node, std::string const& p_text, std::string const& p_location, int p_level) override;
    void DispatchEvent(
        Core::WeakPtr<Model::ModelNode> const& p_node, std::shared_ptr<Model::Events::Event const> p_event) override;
    void RequestRedraw(int p_milliseconds) override;
    void RequestUpdate() override;

    /// Hands the events that wait to the event delegates of their nodes, in the order in which they were raised; those of
    /// nodes that are gone are dropped. Events raised meanwhile wait for the next call. Call it when no traversal runs:
    /// what the listeners change in the model is then taken up by the next update. Gives how many were handed over.
    std::size_t DeliverEvents();
    std::size_t WaitingEvents() const noexcept { return _events.size(); }

    /// Whether an update was asked for, or events were delivered, since the last call; asking takes the request back.
    bool TakeUpdateRequest() noexcept { return std::exchange(_updateRequested, false); }
    bool UpdateRequested() const noexcept { return _updateRequested; }

    /// In how many milliseconds the earliest frame that was asked for is due, 0 when it is overdue; nothing when nobody
    /// asked.
    std::optional<int> RedrawDueIn() const noexcept;
    /// Whether a frame is due now; the request is taken back when it is.
    bool TakeRedrawRequest() noexcept;

    /// Called when a request makes the next frame due earlier than before, with the milliseconds until then. A window
    /// sets its timer there; it must not draw at once.
    void SetWakeUp(std::function<void(int)> p_wakeUp) { _wakeUp = std::move(p_wakeUp); }

    /// Everything that was reported, the latest last.
    std::vector<Report> Reports() const { return {_reports.begin(), _reports.end()}; }
    /// How many reports came, repeated ones included.
    std::uint64_t ReportCount() const noexcept { return _reportCount; }
    /// Forgets all reports: the next one of each text goes to the log again.
    void ClearReports();

private:
    using ReportList = std::list<Report>;

    void Take(Report p_report);
    void Write(Report const& p_report) const;

    ReportList _reports;
    std::unordered_map<std::string, ReportList::iterator> _reportsByText;
    std::uint64_t _reportCount = 0;
    std::vector<std::pair<Core::WeakPtr<Model::ModelNode>, std::shared_ptr<Model::Events::Event const>>> _events;
    std::optional<std::uint64_t> _redrawDue; ///< nanoseconds of the process's clock
    bool _updateRequested = false;
    std::function<void(int)> _wakeUp;
};

} // namespace Qor::Chart::Host
