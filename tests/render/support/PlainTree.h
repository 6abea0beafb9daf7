#pragma once

#include "tests/render/support/Script.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Qor::Chart::Render::Fixtures {

/// What an update is expected to do.
struct Outcome {
    unsigned visited = 0, updated = 0, reports = 0, warnings = 0;
    std::array<unsigned, HookFactory + 1> calls{};
    std::vector<int> events; ///< model nodes whose pending update was completed
};

struct PlainModel {
    Script script;
    bool isKnown = true; ///< has a factory
    std::vector<int> parents, children;
    bool isHeld = true, isAlive = true, isEnabled = true, isEnabledSet = false;
    int grown = 0, symbol = -1;
};

/// An interval along x; without points unless low <= high.
struct Range {
    double low = 1e9, high = -1e9;
    void Add(Range const& p_other) {
        low = std::min(low, p_other.low);
        high = std::max(high, p_other.high);
    }
    bool operator==(Range const&) const = default;
};

struct PlainVis {
    struct Record {
        bool isAdded;
        int model;
    };
    int model = 0, part = -1; ///< part: index of a child that its parent made for itself
    std::vector<std::unique_ptr<PlainVis>> children;
    bool isValid = true, isActive = false, isPending = false, isAttempted = false;
    bool isModified = true, isExplicit = true, onlyCallbacks = false;
    std::vector<Record> records;
    int layer = 0, watched = -1, watchedSize = 0;
    Range own, box;
    bool hasActiveChildren = false;
    std::uint16_t passes = 0; ///< those for which there is work here or below, as bits of their hooks
};

/// The rules of model and update once more, as plain lists and plain recursion: no handles, no hooks, no time stamps.
/// Every change is looked for in the whole tree.
class PlainTree {
public:
    std::map<int, PlainModel> models;
    std::vector<int> symbols = std::vector<int>(3, 0);
    std::unique_ptr<PlainVis> root;

    bool IsBelow(int p_node, int p_root) const {
        if (p_node == p_root)
            return true;
        auto const& children = models.at(p_root).children;
        return std::any_of(children.begin(), children.end(), [&](int p_child) { return IsBelow(p_node, p_child); });
    }
    /// Number of visual nodes that a model subtree comes to at most.
    std::size_t Expanded(int p_node) const {
        std::size_t sum = 1;
        for (int const child : models.at(p_node).children)
            sum += Expanded(child);
        return sum;
    }

    bool HasArmedFactory(int p_node) const {
        PlainModel const& model = models.at(p_node);
        if (!model.isKnown || IsSelfManaged(p_node))
            return model.isKnown && model.script.answers[HookFactory] != Answer::Ok;
        return model.script.answers[HookFactory] != Answer::Ok ||
            std::any_of(model.children.begin(), model.children.end(), [&](int p_c) { return HasArmedFactory(p_c); });
    }

    void Add(int p_parent, int p_child) {
        std::vector<int>& children = models[p_parent].children;
        if (std::find(children.begin(), children.end(), p_child) != children.end())
            return;
        children.push_back(p_child);
        models[p_child].parents.push_back(p_parent);
        Changed(p_parent, {{true, p_child}});
    }
    void Remove(int p_parent, int p_child) {
        Detach(p_parent, {p_child});
        Release(p_child);
    }
    void Move(int p_from, int p_to, int p_child) {
        Detach(p_from, {p_child});
        Add(p_to, p_child);
    }
    void Adopt(int p_parent, int p_child) {
        for (int const other : std::vector<int>(models[p_child].parents)) {
            if (other != p_parent)
                Detach(other, {p_child});
        }
        Add(p_parent, p_child);
    }
    void Clear(int p_parent) {
        std::vector<int> const children = models[p_parent].children;
        if (!children.empty())
            Detach(p_parent, children);
        for (int const child : children)
            Release(child);
    }
    void Forget(int p_node) {
        models[p_node].isHeld = false;
        Release(p_node);
    }
    /// The model node itself changed, or lost and won children.
    void Changed(int p_node, std::vector<PlainVis::Record> const& p_records = {}) {
        std::set<int> above;
        CollectAbove(p_node, above);
        if (root)
            Spread(*root, p_node, above, p_records);
    }
    void SymbolChanged(int p_symbol) {
        for (auto const& [number, model] : models) {
            std::set<int> above{number};
            CollectAbove(number, above);
            if (model.isAlive && model.symbol == p_symbol && root)
                Spread(*root, -1, above, {});
        }
    }
    void Toggle(int p_node, HandledCallbacks p_callback) {
        models[p_node].script.handled ^= Bit(p_callback);
        if (root)
            SpreadToggle(*root, p_node, p_callback <= HandledBoundingBox);
    }

    /// False when a factory failed.
    bool GenerateRoot(int p_node) {
        bool failed = false;
        root = Generate(p_node, failed);
        return !failed;
    }
    Outcome Update() {
        _outcome = {};
        if (IsEnabled(*root))
            Visit(*root);
        return _outcome;
    }

private:
    static constexpr std::uint16_t OverlayPasses =
        Bit(HandledHitOverlay) | Bit(HandledDrawOverlay) | Bit(HandledHighlightOverlay);
    static constexpr std::uint16_t AllPasses =
        OverlayPasses | Bit(HandledHit) | Bit(HandledDraw) | Bit(HandledHighlight);

    bool IsSelfManaged(int p_node) const { return (models.at(p_node).script.flags & Vis::VisFlagSelfManaged) != 0; }
    bool Handles(PlainVis const& p_vis, HandledCallbacks p_callback) const {
        return p_vis.part >= 0 ? p_callback == HandledBoundingBox
                               : Has(models.at(p_vis.model).script.handled, p_callback);
    }
    bool IsEnabled(PlainVis const& p_vis) const {
        PlainModel const& model = models.at(p_vis.model);
        return model.isAlive ? model.isEnabled : p_vis.part < 0 && IsSelfManaged(p_vis.model);
    }
    bool IsContextRoot(PlainVis const& p_vis) const {
        return p_vis.part < 0 && (models.at(p_vis.model).script.flags & Vis::VisFlagContextRoot) != 0;
    }
    static bool IsUp(PlainVis const& p_vis) { return p_vis.isValid && !p_vis.isPending; }

    void Unlink(int p_parent, int p_child) {
        std::erase(models[p_parent].children, p_child);
        std::erase(models[p_child].parents, p_parent);
    }
    void Detach(int p_parent, std::vector<int> const& p_children) {
        std::vector<PlainVis::Record> records;
        for (int const child : p_children) {
            Unlink(p_parent, child);
            records.push_back({false, child});
        }
        Changed(p_parent, records);
    }
    /// A model node that nobody holds dies, and lets go of its children.
    void Release(int p_node) {
        PlainModel& model = models[p_node];
        if (!model.isAlive || model.isHeld || !model.parents.empty())
            return;
        model.isAlive = false;
        for (int const child : std::vector<int>(model.children)) {
            Unlink(p_node, child);
            Release(child);
        }
    }
    void CollectAbove(int p_node, std::set<int>& p_above) const {
        for (int const parent : models.at(p_node).parents) {
            p_above.insert(parent);
            CollectAbove(parent, p_above);
        }
    }

    using Records = std::vector<PlainVis::Record>;

    bool Spread(PlainVis& p_vis, int p_node, std::set<int> const& p_above, Records const& p_records) {
        bool isReached = p_vis.part < 0 && p_above.count(p_vis.model) > 0;
        for (auto const& child : p_vis.children)
            isReached = Spread(*child, p_node, p_above, p_records) || isReached;
        bool const isIt = p_vis.part < 0 && p_vis.model == p_node;
        if (isIt)
            Receive(p_vis, 1, false, p_records);
        else if (isReached)
            Receive(p_vis, 2, false, {});
        return isIt || isReached;
    }
    /// Gives the relationship with which the node's parent sees the change; 0 when nothing changed here or below.
    int SpreadToggle(PlainVis& p_vis, int p_node, bool p_isPlain) {
        int seen = 0;
        for (auto const& child : p_vis.children) {
            // a node cannot stand below itself, so what two children report are changes of their own
            if (int const relationship = SpreadToggle(*child, p_node, p_isPlain); relationship > 0) {
                Receive(p_vis, relationship, p_isPlain, {});
                seen = 2;
            }
        }
        if (p_vis.part < 0 && p_vis.model == p_node) {
            Receive(p_vis, 0, p_isPlain, {});
            return IsEnabled(p_vis) ? 1 : 2;
        }
        return seen;
    }
    static void Receive(PlainVis& p_vis, int p_relationship, bool p_isCallback, Records const& p_records) {
        bool const isBack = !IsUp(p_vis);
        if (isBack) {
            p_vis.isAttempted = p_vis.isAttempted || p_vis.isPending;
            p_vis.isValid = true;
            p_vis.isPending = false;
        }
        for (PlainVis::Record const& record : p_records)
            Insert(p_vis, record);
        p_vis.isModified = true;
        p_vis.isExplicit = p_vis.isExplicit || isBack || p_relationship <= 1;
        p_vis.onlyCallbacks = p_vis.onlyCallbacks && p_isCallback && !isBack;
    }
    static void Insert(PlainVis& p_vis, PlainVis::Record const& p_record) {
        auto& records = p_vis.records;
        auto const found = std::find_if(
            records.begin(), records.end(), [&](auto const& p_other) { return p_other.model == p_record.model; });
        bool const cancels = found != records.end() && found->isAdded != p_record.isAdded;
        if (found != records.end())
            records.erase(found);
        if (!cancels)
            records.push_back(p_record);
    }

    std::unique_ptr<PlainVis> Generate(int p_node, bool& p_failed) {
        PlainModel const& model = models.at(p_node);
        if (!model.isKnown)
            return nullptr;
        ++_outcome.calls[HookFactory];
        if (model.script.answers[HookFactory] != Answer::Ok) {
            p_failed = true;
            return nullptr;
        }
        auto vis = std::make_unique<PlainVis>();
        vis->model = p_node;
        for (int const child : model.children) {
            if (IsSelfManaged(p_node) || p_failed)
                break;
            if (auto made = Generate(child, p_failed))
                vis->children.push_back(std::move(made));
        }
        return p_failed ? nullptr : std::move(vis);
    }

    Answer Call(PlainVis const& p_vis, Hook p_hook) {
        ++_outcome.calls[p_hook];
        return p_vis.part >= 0 ? Answer::Ok : models.at(p_vis.model).script.answers[p_hook];
    }
    bool Fails(PlainVis& p_vis, Answer p_answer) {
        if (p_answer != Answer::Throw && p_answer != Answer::ThrowInt)
            return false;
        ++_outcome.reports;
        p_vis.isValid = false;
        return true;
    }
    void Take(PlainVis& p_vis, Answer p_answer) {
        if (Fails(p_vis, p_answer))
            return;
        p_vis.isValid = p_vis.isValid && p_answer != Answer::Invalid;
        p_vis.isPending = p_vis.isPending || p_answer == Answer::Pending;
    }
    void Activate(PlainVis& p_vis) {
        for (auto const& child : p_vis.children)
            child->isActive = IsEnabled(*child);
    }

    void Visit(PlainVis& p_vis) {
        ++_outcome.visited;
        if (!IsEnabled(p_vis) || !p_vis.isModified)
            return;
        p_vis.hasActiveChildren = false;
        std::vector<int> toRetry;
        bool isChanged = false;
        if (p_vis.onlyCallbacks) {
            Activate(p_vis); // a child may have come back
        } else {
            ModelStep(p_vis);
            if (p_vis.part >= 0 || !IsSelfManaged(p_vis.model))
                FollowModel(p_vis, toRetry);
            isChanged = UpdateStep(p_vis);
        }
        if (p_vis.isValid && !p_vis.isPending)
            Descend(p_vis, isChanged);
        else if (!p_vis.isPending)
            ++_outcome.warnings;

        if (p_vis.isAttempted && !p_vis.isPending)
            _outcome.events.push_back(p_vis.model);
        p_vis.isAttempted = false;
        std::stable_sort(p_vis.children.begin(), p_vis.children.end(), [](auto const& p_left, auto const& p_right) {
            return std::clamp(p_left->layer, -30000, 30001) < std::clamp(p_right->layer, -30000, 30001);
        });
        p_vis.isModified = p_vis.isExplicit = false;
        p_vis.onlyCallbacks = toRetry.empty();
        p_vis.records.clear();
        for (int const model : toRetry)
            p_vis.records.push_back({true, model});
    }
    void ModelStep(PlainVis& p_vis) {
        if (!IsUp(p_vis) || !Handles(p_vis, HandledUpdateModel))
            return;
        ++_outcome.calls[HookUpdateModel];
        Grow(p_vis.model);
        if (!Fails(p_vis, models.at(p_vis.model).script.firstModel))
            Take(p_vis, Call(p_vis, HookUpdateModel));
    }
    void Grow(int p_node) {
        for (; models[p_node].grown < models[p_node].script.grown; ++models[p_node].grown) {
            int const number = 100 * (p_node + 1) + models[p_node].grown;
            models[number].isHeld = false;
            models[number].script.low = models[number].script.high = 100 + models[p_node].grown;
            Add(p_node, number);
        }
    }
    void FollowModel(PlainVis& p_vis, std::vector<int>& p_toRetry) {
        for (PlainVis::Record const& record : p_vis.records) {
            auto const isIt = [&](auto const& p_child) { return !record.isAdded && p_child->model == record.model; };
            if (std::erase_if(p_vis.children, isIt) > 0)
                p_vis.isExplicit = true;
        }
        for (PlainVis::Record const& record : p_vis.records) {
            if (!record.isAdded || !models.at(record.model).isKnown)
                continue;
            bool failed = false;
            if (auto made = Generate(record.model, failed)) {
                p_vis.children.push_back(std::move(made));
                p_vis.isExplicit = true;
            } else {
                ++_outcome.reports;
                p_toRetry.push_back(record.model);
            }
        }
        Activate(p_vis);
    }
    bool UpdateStep(PlainVis& p_vis) {
        bool const isSelfManaged = p_vis.part < 0 && IsSelfManaged(p_vis.model);
        bool const isWatchedChange = p_vis.watched >= 0 && p_vis.watchedSize != symbols[p_vis.watched];
        bool isChanged = false;
        if (IsUp(p_vis) && (isSelfManaged || p_vis.isExplicit || isWatchedChange) && Handles(p_vis, HandledUpdate)) {
            ++_outcome.updated;
            PlainModel const& model = models.at(p_vis.model);
            p_vis.watched = model.symbol;
            p_vis.watchedSize = model.symbol < 0 ? 0 : symbols[model.symbol];
            Answer const answer = Call(p_vis, HookUpdate);
            Take(p_vis, answer);
            isChanged = answer == Answer::Ok;
            if (isChanged) {
                p_vis.layer = model.script.layer;
                p_vis.own = OwnRange(model, p_vis.watchedSize);
                if (isSelfManaged)
                    MakeParts(p_vis, model.script.parts);
            }
        }
        if (IsUp(p_vis))
            Activate(p_vis);
        return isChanged;
    }
    static Range OwnRange(PlainModel const& p_model, int p_more) {
        return p_model.script.low <= p_model.script.high ? Range{p_model.script.low, p_model.script.high + p_more}
                                                         : Range{};
    }
    static void MakeParts(PlainVis& p_vis, int p_count) {
        while (static_cast<int>(p_vis.children.size()) > p_count)
            p_vis.children.pop_back();
        while (static_cast<int>(p_vis.children.size()) < p_count) {
            p_vis.children.push_back(std::make_unique<PlainVis>());
            p_vis.children.back()->model = p_vis.model;
            p_vis.children.back()->part = static_cast<int>(p_vis.children.size()) - 1;
        }
    }
    void Descend(PlainVis& p_vis, bool p_isChanged) {
        bool const isRefreshFailed =
            Handles(p_vis, HandledRefreshUpdateContext) && Fails(p_vis, Call(p_vis, HookRefresh));
        for (auto const& child : p_vis.children) {
            if (child->isActive && IsUp(*child))
                Visit(*child);
        }
        Range box;
        std::uint16_t passes = p_vis.part >= 0 ? Bit(HandledDraw) : models.at(p_vis.model).script.handled;
        for (auto const& child : p_vis.children) {
            child->isActive = IsUp(*child) && IsEnabled(*child);
            if (!child->isActive)
                continue;
            if (!IsContextRoot(*child))
                box.Add(child->box);
            passes |= child->passes;
            p_vis.hasActiveChildren = true;
        }
        bool const hasOwn = Handles(p_vis, HandledBoundingBox);
        bool const isBoxFailed = hasOwn && Fails(p_vis, Call(p_vis, HookBox));
        if (hasOwn && !isBoxFailed)
            box.Add(OwnOf(p_vis));
        bool const isNew = !(box == p_vis.box);
        p_vis.box = box;
        bool const hasScene = IsContextRoot(p_vis) || p_vis.hasActiveChildren || box.low <= box.high;
        p_vis.passes = passes & (hasScene ? AllPasses : OverlayPasses);
        bool const isPostFailed =
            (p_isChanged || isNew) && Handles(p_vis, HandledPostUpdate) && Fails(p_vis, Call(p_vis, HookPost));
        p_vis.isValid = !isRefreshFailed && !isBoxFailed && !isPostFailed;
    }
    Range OwnOf(PlainVis const& p_vis) const {
        if (p_vis.part >= 0)
            return {200.0 + p_vis.part, 200.0 + p_vis.part};
        return Handles(p_vis, HandledUpdate) ? p_vis.own : OwnRange(models.at(p_vis.model), 0);
    }

    Outcome _outcome;
};

} // namespace Qor::Chart::Render::Fixtures
