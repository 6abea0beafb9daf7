#include "render/loops/UpdateNodePathLoop.h"
#include "tests/render/support/PlainTree.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <random>
#include <sstream>

namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;

enum class Op {
    Update,
    Add,
    AddUnknown,
    Remove,
    Move,
    Adopt,
    Link,
    Readd,
    Clear,
    Forget,
    Enable,
    ResetEnabled,
    Rename,
    OwnBox,
    LayerOf,
    Fail,
    Repair,
    FirstModel,
    Factory,
    Toggle,
    Parts,
    Grow,
    Symbol,
    ChangeSymbol
};
constexpr char const* OpNames[] = {"Update", "Add", "AddUnknown", "Remove", "Move", "Adopt", "Link", "Readd", "Clear",
    "Forget", "Enable", "ResetEnabled", "Rename", "OwnBox", "LayerOf", "Fail", "Repair", "FirstModel", "Factory",
    "Toggle", "Parts", "Grow", "Symbol", "ChangeSymbol"};

/// One edit. The numbers are taken modulo what there is to choose from, so that any part of a sequence is a sequence.
struct Edit {
    Op op = Op::Update;
    unsigned node = 0, other = 0, value = 0;
};
using Edits = std::vector<Edit>;

std::ostream& operator<<(std::ostream& p_stream, Edit const& p_edit) {
    return p_stream << "    {Op::" << OpNames[static_cast<int>(p_edit.op)] << ", " << p_edit.node << ", "
                    << p_edit.other << ", " << p_edit.value << "},\n";
}

/// What may happen in a sequence beside the rest. A hook that changes the model in the middle of an update must not reach
/// visual nodes that the traversal has passed already, so there a model node has one place and stays in it.
enum class Mode { Moving, Sharing, Growing };
constexpr char const* ModeNames[] = {"Moving", "Sharing", "Growing"};

/// Edits a model in step with the plain tree, and compares after each update.
class Editor {
public:
    /// @param p_mode  nodes may have several parents, and then no node grows children
    explicit Editor(Mode p_mode) : _mode(p_mode) {
        Make(Core::MakeNode<ScriptModel>(0), true);
        for (std::size_t i = 0; i < _plain.symbols.size(); ++i)
            _symbols.push_back(Core::MakeNode<SymbolModel>());
    }

    /// What went wrong; empty when all is well.
    std::string Run(Edits const& p_edits) {
        for (Edit const& edit : p_edits) {
            if (edit.op != Op::Update)
                Apply(edit);
            else if (std::string wrong = Update(); !wrong.empty())
                return wrong;
        }
        return {};
    }

private:
    static constexpr std::size_t MostNodes = 30, MostVisuals = 120;

    void Make(Core::Ptr<ScriptModel> const& p_model, bool p_isKnown) {
        _models[p_model->number] = p_model;
        _held[p_model->number] = p_model;
        PlainModel& plain = _plain.models[p_model->number];
        plain.script = p_model->script;
        plain.isKnown = p_isKnown;
    }
    static Script RandomScript(unsigned p_value) {
        std::minstd_rand random(p_value + 1);
        Script script;
        script.flags = random() % 9 == 0 ? Vis::VisFlagSelfManaged : random() % 8 == 0 ? Vis::VisFlagContextRoot : 0;
        for (int callback = HandledUpdate; callback <= HandledRefreshUpdateContext; ++callback) {
            if (random() % (callback == HandledUpdate ? 8 : 3) == 0)
                script.handled &= static_cast<std::uint16_t>(~(1U << callback));
        }
        script.low = static_cast<double>(random() % 50);
        script.high = script.low + static_cast<double>(random() % 5) - 1;
        script.layer = static_cast<int>(random() % 3);
        script.parts = static_cast<int>(random() % 3);
        return script;
    }
    bool MayLink(int p_parent, int p_child) {
        return _mode != Mode::Growing && !_plain.IsBelow(p_parent, p_child) &&
            _plain.Expanded(0) + _plain.Expanded(p_child) <= MostVisuals;
    }
    /// One of the model nodes that live and are no grown ones. What mends a node chooses among those that need it, as far
    /// as there are any, so that trees do not wither.
    int Choose(unsigned p_number, Op p_op = Op::Update) const {
        std::vector<int> candidates, needy;
        for (auto const& [number, model] : _plain.models) {
            if (!model.isAlive || number >= 100)
                continue;
            candidates.push_back(number);
            if (p_op == Op::Repair ? model.script.answers != Script().answers
                                   : p_op == Op::ResetEnabled && !model.isEnabled)
                needy.push_back(number);
        }
        std::vector<int> const& chosen = needy.empty() ? candidates : needy;
        return chosen[p_number % chosen.size()];
    }
    Core::Ptr<ScriptModel> Model(int p_number) { return _models.at(p_number).Lock(); }
    void RemoveReal(int p_parent, int p_child) {
        Core::Ptr<ScriptModel> const parent = Model(p_parent);
        Core::Ptr<Model::ModelNode> found;
        for (Core::Ptr<Model::ModelNode> const& child : *parent) {
            if (static_cast<ScriptModel const&>(*child).number == p_child)
                found = child;
        }
        parent->Remove(found);
    }

    void Apply(Edit const& p_edit) {
        int const node = Choose(p_edit.node, p_edit.op);
        int const other = Choose(p_edit.other);
        PlainModel& plain = _plain.models.at(node);
        std::vector<int> const children = plain.children;
        Core::Ptr<ScriptModel> const model = Model(node);
        switch (p_edit.op) {
        case Op::Update:
            break;
        case Op::Add:
        case Op::AddUnknown:
            if (_models.size() < MostNodes && _plain.Expanded(0) < MostVisuals) {
                int const number = static_cast<int>(_models.size());
                bool const isKnown = p_edit.op == Op::Add;
                Script const script = RandomScript(p_edit.value);
                Make(isKnown ? Core::MakeNode<ScriptModel>(number, script)
                             : Core::Ptr<ScriptModel>(Core::MakeNode<UnknownModel>(number, script)),
                    isKnown);
                model->Add(Model(number));
                _plain.Add(node, number);
            }
            break;
        case Op::Remove:
            if (!children.empty()) {
                int const child = children[p_edit.value % children.size()];
                RemoveReal(node, child);
                _plain.Remove(node, child);
            }
            break;
        case Op::Readd:
            if (!children.empty()) {
                int const child = children[p_edit.value % children.size()];
                if (child < 100) {
                    Core::Ptr<ScriptModel> const kept = Model(child);
                    model->Remove(kept);
                    model->Add(kept);
                    bool const wasHeld = std::exchange(_plain.models.at(child).isHeld, true);
                    _plain.Remove(node, child);
                    _plain.Add(node, child);
                    _plain.models.at(child).isHeld = wasHeld;
                }
            }
            break;
        case Op::Move:
            if (auto const parents = _plain.models.at(other).parents; !parents.empty() && MayLink(node, other)) {
                Core::Ptr<ScriptModel> const kept = Model(other);
                int const from = parents[p_edit.value % parents.size()];
                if (from != node) {
                    Model(from)->Remove(kept);
                    model->Add(kept);
                    bool const wasHeld = std::exchange(_plain.models.at(other).isHeld, true);
                    _plain.Remove(from, other);
                    _plain.Add(node, other);
                    _plain.models.at(other).isHeld = wasHeld;
                }
            }
            break;
        case Op::Adopt:
            if (other != 0 && MayLink(node, other)) {
                model->Adopt(Model(other));
                _plain.Adopt(node, other);
            }
            break;
        case Op::Link:
            if (other != 0 && MayLink(node, other) &&
                (_mode == Mode::Sharing || _plain.models.at(other).parents.empty())) {
                model->Add(Model(other));
                _plain.Add(node, other);
            }
            break;
        case Op::Clear:
            model->Clear();
            _plain.Clear(node);
            break;
        case Op::Forget:
            if (other != 0) {
                _held.erase(other);
                _plain.Forget(other);
            }
            break;
        case Op::Enable: {
            bool const isOn = p_edit.value % 2 == 0;
            bool const isChange = !plain.isEnabledSet || plain.isEnabled != isOn;
            plain.isEnabledSet = true;
            plain.isEnabled = isOn;
            model->SetEnabled(isOn);
            if (isChange)
                _plain.Changed(node);
            break;
        }
        case Op::ResetEnabled:
            model->Reset(Model::ModelNode::EnabledProperty);
            if (std::exchange(plain.isEnabledSet, false)) {
                plain.isEnabled = true;
                _plain.Changed(node);
            }
            break;
        case Op::Rename:
            if (std::string const name = "m" + std::to_string(p_edit.value % 3); name != model->Name()) {
                model->SetName(name);
                _plain.Changed(node);
            }
            break;
        case Op::OwnBox:
            Script_(node, [&](Script& p_script) {
                p_script.low = p_edit.value % 40;
                p_script.high = p_script.low + static_cast<double>(p_edit.value / 40 % 4) - 1;
            });
            break;
        case Op::LayerOf: {
            static constexpr int layers[] = {0, 1, 2, -1, 32000, 30001, 30002, -30000, -32000};
            Script_(node, [&](Script& p_script) { p_script.layer = layers[p_edit.value % std::size(layers)]; });
            break;
        }
        case Op::Fail: {
            static constexpr Hook hooks[] = {HookUpdateModel, HookUpdate, HookRefresh, HookBox, HookPost};
            static constexpr Answer answers[] = {Answer::Throw, Answer::ThrowInt, Answer::Invalid, Answer::Pending};
            Hook const hook = hooks[p_edit.other % std::size(hooks)];
            bool const isNeverSeen = hook == HookPost && !Has(plain.script.handled, HandledUpdate);
            if (!isNeverSeen) {
                Answer const answer = answers[p_edit.value % (hook <= HookUpdate ? 4 : 2)];
                Script_(node, [&](Script& p_script) { p_script.answers[hook] = answer; });
            }
            break;
        }
        case Op::FirstModel:
            Script_(node, [&](Script& p_script) { p_script.firstModel = static_cast<Answer>(p_edit.value % 4); });
            break;
        case Op::Repair:
            Script_(node, [&](Script& p_script) {
                p_script.answers = {};
                p_script.firstModel = Answer::Ok;
            });
            break;
        case Op::Factory:
            if (_root) {
                Script_(node, [&](Script& p_script) {
                    p_script.answers[HookFactory] = p_edit.value % 2 == 0 ? Answer::Throw : Answer::ThrowInt;
                });
            }
            break;
        case Op::Toggle: {
            int const callback = 1 + static_cast<int>(p_edit.value % HandledRefreshUpdateContext);
            if (callback != 12) {
                _plain.Toggle(node, static_cast<HandledCallbacks>(callback));
                model->script.handled ^= static_cast<std::uint16_t>(1U << callback);
                for (ScriptVis* const use : std::vector<ScriptVis*>(model->uses))
                    use->Toggle(static_cast<HandledCallbacks>(callback));
            }
            break;
        }
        case Op::Parts:
            Script_(node, [&](Script& p_script) { p_script.parts = static_cast<int>(p_edit.value % 4); });
            break;
        case Op::Grow:
            if (_mode == Mode::Growing)
                Script_(node, [&](Script& p_script) { p_script.grown = static_cast<int>(p_edit.value % 4); });
            break;
        case Op::Symbol: {
            int const symbol = static_cast<int>(p_edit.value % (_symbols.size() + 1)) - 1;
            if (symbol != plain.symbol) {
                plain.symbol = symbol;
                model->symbol.Attach(symbol < 0 ? Core::Ptr<SymbolModel>() : _symbols[symbol]);
                _plain.Changed(node);
            }
            break;
        }
        case Op::ChangeSymbol: {
            std::size_t const symbol = p_edit.value % _symbols.size();
            ++_symbols[symbol]->size;
            ++_plain.symbols[symbol];
            _symbols[symbol]->Touch();
            _plain.SymbolChanged(static_cast<int>(symbol));
            break;
        }
        }
    }
    template <class Change>
    void Script_(int p_node, Change const& p_change) {
        p_change(Model(p_node)->script);
        p_change(_plain.models.at(p_node).script);
        Model(p_node)->Changed();
        _plain.Changed(p_node);
    }

    std::string Update() {
        if (!_root) {
            if (!_plain.GenerateRoot(0))
                return {};
            _root = _stage.generator(Model(0));
        }
        Outcome const expected = _plain.Update();
        _stage.world.calls = {};
        _stage.dispatcher.exceptions.clear();
        _stage.dispatcher.warnings.clear();
        _stage.dispatcher.events.clear();
        Stage::Counts const counts = _stage.Update(_root);
        UpdateNodePathLoop()(_root);

        Expect("visited", counts.visited, expected.visited);
        Expect("updated", counts.updated, expected.updated);
        for (int hook = 0; hook <= HookFactory; ++hook)
            Expect(("calls of hook " + std::to_string(hook)).c_str(), _stage.world.calls[hook], expected.calls[hook]);
        Expect("reports", _stage.dispatcher.exceptions.size(), expected.reports);
        Expect("warnings", _stage.dispatcher.warnings.size(), expected.warnings);
        std::vector<int> events;
        for (auto const& event : _stage.dispatcher.events)
            events.push_back(static_cast<ScriptModel const*>(event.Peek())->number);
        Expect("completion events", events == expected.events, true);
        for (std::string const& complaint : _stage.world.complaints)
            _wrong << complaint << '\n';
        std::vector<std::int32_t> path;
        ComparePlain(*_root, *_plain.root, path);
        if (_root->IsEnabled() && _root->IsValid() && !_root->IsPending() && !_plain.HasArmedFactory(0))
            CompareFresh();
        Stage::Counts const idle = _stage.Update(_root);
        if (_plain.models.at(0).isEnabled)
            Expect("visited when nothing changed", idle.visited, 1U);
        return _wrong.str();
    }
    template <class Left, class Right>
    void Expect(char const* p_what, Left const& p_actual, Right const& p_expected, std::string const& p_where = {}) {
        if (!(p_actual == p_expected))
            _wrong << p_where << p_what << ": " << p_actual << " instead of " << p_expected << '\n';
    }

    /// What a node stands for: its model node, or a part of it.
    static int KeyOf(Vis const& p_vis) {
        auto const* const part = dynamic_cast<PartVis const*>(&p_vis);
        auto const model = p_vis.SourceModel();
        return part ? -1 - part->index : model.Expired() ? -100 : static_cast<ScriptModel&>(*model.Peek()).number;
    }
    static std::string Where(Vis const& p_vis) {
        std::ostringstream text;
        p_vis.Dump(text, Core::Verbosity::Normal, 0);
        return text.str() + "    ";
    }
    void ComparePlain(Vis const& p_vis, PlainVis const& p_plain, std::vector<std::int32_t>& p_path) {
        std::string const where = Where(p_vis);
        p_path.push_back(static_cast<std::int32_t>(p_vis.Id()));
        if (_plain.models.at(p_plain.model).isAlive)
            Expect("key", KeyOf(p_vis), p_plain.part < 0 ? p_plain.model : -1 - p_plain.part, where);
        bool const isActive = p_plain.isActive && p_plain.isValid && !p_plain.isPending;
        Expect("active", p_vis.IsActive(), isActive, where);
        Expect("valid", p_vis.IsValid(), p_plain.isValid, where);
        Expect("pending", p_vis.IsPending(), p_plain.isPending, where);
        Expect("attempted", p_vis.IsPendingUpdateAttempt(), p_plain.isAttempted, where);
        Expect("layer", p_vis.GetLayer(), p_plain.layer, where);
        Box const box =
            p_plain.box.low <= p_plain.box.high ? Box({p_plain.box.low, 0, 0}, {p_plain.box.high, 1, 1}) : Box();
        Expect("box", p_vis.BoundingBox(), box, where);
        Expect("path", p_vis.GetPath().Ids() == p_path, true, where);
        Expect("number of children", p_vis.Size(), p_plain.children.size(), where);
        if (p_vis.Size() == p_plain.children.size()) {
            auto plain = p_plain.children.begin();
            for (Core::Ptr<Vis> const& child : p_vis)
                ComparePlain(*child, **plain++, p_path);
        }
        p_path.pop_back();
    }
    void CompareFresh() {
        Core::Ptr<Vis> const fresh = _stage.generator(Model(0));
        _stage.Update(fresh);
        CompareWithFresh(*_root, *fresh);
    }
    void CompareWithFresh(Vis const& p_vis, Vis const& p_fresh) {
        std::string const where = "compared to a fresh tree: " + Where(p_vis);
        Expect("box", p_vis.BoundingBox(), p_fresh.BoundingBox(), where);
        Expect("layer", p_vis.GetLayer(), p_fresh.GetLayer(), where);
        Expect("optimal paths", p_vis.OptimalPaths(), p_fresh.OptimalPaths(), where);
        Expect("handled", p_vis.Handled().Word(), p_fresh.Handled().Word(), where);
        Expect("active children", p_vis.HasActiveChildren(), p_fresh.HasActiveChildren(), where);
        for (Vis::Flags const flag : {Vis::VisFlagContextRoot, Vis::VisFlagSecond, Vis::VisFlagSelfManaged})
            Expect("flag", p_vis.IsFlagged(flag), p_fresh.IsFlagged(flag), where);
        std::map<int, Vis const*> mine, theirs;
        for (Core::Ptr<Vis> const& child : p_vis)
            mine[KeyOf(*child)] = child.Get();
        for (Core::Ptr<Vis> const& child : p_fresh)
            theirs[KeyOf(*child)] = child.Get();
        Expect("number of children", p_vis.Size(), p_fresh.Size(), where);
        Expect("number of different children", mine.size(), theirs.size(), where);
        for (auto const& [key, child] : mine) {
            Expect("has child", theirs.count(key), 1U, where);
            if (theirs.count(key) == 0)
                continue;
            Expect("active", child->IsActive(), theirs[key]->IsActive(), "compared to a fresh tree: " + Where(*child));
            if (child->IsActive() && theirs[key]->IsActive())
                CompareWithFresh(*child, *theirs[key]);
        }
    }

    Mode const _mode;
    Stage _stage;
    PlainTree _plain;
    std::map<int, Core::WeakPtr<ScriptModel>> _models;
    std::map<int, Core::Ptr<ScriptModel>> _held;
    std::vector<Core::Ptr<SymbolModel>> _symbols;
    Core::Ptr<Vis> _root;
    std::ostringstream _wrong;
};

/// A tree of a few nodes, then rounds of a few edits.
Edits RandomEdits(unsigned p_seed) {
    static constexpr std::pair<Op, unsigned> weights[] = {{Op::Add, 10}, {Op::AddUnknown, 1}, {Op::Remove, 6},
        {Op::Move, 6}, {Op::Adopt, 4}, {Op::Link, 6}, {Op::Readd, 3}, {Op::Clear, 1}, {Op::Forget, 3}, {Op::Enable, 8},
        {Op::ResetEnabled, 5}, {Op::Rename, 2}, {Op::OwnBox, 5}, {Op::LayerOf, 5}, {Op::Fail, 9}, {Op::Repair, 8},
        {Op::FirstModel, 1}, {Op::Factory, 2}, {Op::Toggle, 12}, {Op::Parts, 3}, {Op::Grow, 2}, {Op::Symbol, 4},
        {Op::ChangeSymbol, 3}};
    std::mt19937 engine(p_seed);
    auto const random = [&] { return static_cast<unsigned>(engine()); };
    unsigned total = 0;
    for (auto const& [op, weight] : weights)
        total += weight;
    auto const next = [&](Op p_op) { return Edit{p_op, random() % 1000, random() % 1000, random() % 100000}; };
    Edits edits;
    for (unsigned nodes = 2 + random() % 12; nodes > 0; --nodes)
        edits.push_back(next(Op::Add));
    edits.emplace_back();
    for (unsigned rounds = 3 + random() % 12; rounds > 0; --rounds) {
        for (unsigned count = 1 + random() % 4; count > 0; --count) {
            unsigned number = random() % total;
            auto const* entry = weights;
            for (; number >= entry->second; ++entry)
                number -= entry->second;
            edits.push_back(next(entry->first));
        }
        edits.emplace_back();
    }
    return edits;
}

std::string Play(Edits const& p_edits, Mode p_mode) {
    return Editor(p_mode).Run(p_edits);
}

/// Takes edits out, from the end on, as long as the rest still fails.
Edits Shrunk(Edits p_edits, Mode p_mode) {
    for (bool isShorter = true; isShorter;) {
        isShorter = false;
        for (std::size_t i = p_edits.size(); i-- > 0;) {
            Edits fewer = p_edits;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
            if (!Play(fewer, p_mode).empty()) {
                p_edits = std::move(fewer);
                isShorter = true;
            }
        }
    }
    return p_edits;
}

/// QOR_EDITOR_SEQUENCES asks for another number of sequences, QOR_EDITOR_SEED for the seed of the first.
unsigned FromEnvironment(char const* p_name, unsigned p_default) {
    char const* const text = std::getenv(p_name);
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : p_default;
}

#if defined(__SANITIZE_ADDRESS__) || !defined(NDEBUG)
constexpr unsigned DefaultSequences = 3000;
#else
constexpr unsigned DefaultSequences = 12000;
#endif

TEST(RandomEditorTest, anyEditsLeaveTheTreeThatTheModelAsksFor) {
    unsigned const first = FromEnvironment("QOR_EDITOR_SEED", 1);
    unsigned const count = FromEnvironment("QOR_EDITOR_SEQUENCES", DefaultSequences);
    for (unsigned seed = first; seed < first + count; ++seed) {
        qordebug::CaptureScope const quiet(Utility::GetLogger());
        auto const mode = static_cast<Mode>(seed % 3);
        Edits const edits = RandomEdits(seed);
        if (Play(edits, mode).empty() && quiet.texts(qordebug::severity::ensure).empty())
            continue;
        Edits const shrunk = Shrunk(edits, mode);
        std::ostringstream text;
        for (Edit const& edit : shrunk)
            text << edit;
        FAIL() << "seed " << seed << ", Mode::" << ModeNames[seed % 3] << ", fails after these edits:\n"
               << text.str() << Play(shrunk, mode) << ::testing::PrintToString(quiet.texts(qordebug::severity::ensure));
    }
}

} // namespace
} // namespace Qor::Chart::Render
