#include "render/loops/UpdateNodePathLoop.h"
#include "tests/render/support/PlainTree.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <sstream>

namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;

class Editor;

/// A kind of edit, and how often it comes among the others.
struct Op {
    char const* name;
    unsigned weight;
    void (Editor::*apply)();
};
/// One edit; an update when it has no kind. The numbers are taken modulo what there is to choose from, so that any part of
/// a sequence is a sequence.
struct Edit {
    Op const* op = nullptr;
    unsigned node = 0, other = 0, value = 0;
};
using Edits = std::vector<Edit>;

/// What may happen in a sequence beside the rest. A hook that changes the model in the middle of an update must not reach
/// visual nodes that the traversal has passed already, so there a model node has one place and stays in it.
enum class Mode { Moving, Sharing, Growing };
constexpr char const* ModeNames[] = {"Moving", "Sharing", "Growing"};

/// Edits a model in step with the plain tree, and compares after each update.
class Editor {
public:
    static Op const Ops[23];

    explicit Editor(Mode p_mode) : _mode(p_mode) {
        Make<ScriptModel>({});
        for (std::size_t i = 0; i < _plain.symbols.size(); ++i)
            _symbols.push_back(Core::MakeNode<SymbolModel>());
    }

    /// What went wrong; empty when all is well.
    std::string Run(Edits const& p_edits) {
        for (Edit const& edit : p_edits) {
            if (edit.op) {
                _node = Choose(edit.node);
                _other = Choose(edit.other);
                _edit = edit;
                (this->*edit.op->apply)();
            } else if (std::string wrong = Update(); !wrong.empty()) {
                return wrong;
            }
        }
        return {};
    }

private:
    static constexpr std::size_t MostNodes = 30, MostVisuals = 120;
    static constexpr std::pair<CallbackType, HandledCallbacks> Passes[] = {{CallbackHit, HandledHit},
        {CallbackDraw, HandledDraw}, {CallbackHighlight, HandledHighlight}, {CallbackHitOverlay, HandledHitOverlay},
        {CallbackDrawOverlay, HandledDrawOverlay}, {CallbackHighlightOverlay, HandledHighlightOverlay}};

    template <class Type>
    int Make(Script const& p_script) {
        int const number = static_cast<int>(_models.size());
        Core::Ptr<ScriptModel> const model = Core::MakeNode<Type>(number, p_script);
        _models[number] = model;
        _held[number] = model;
        _plain.models[number].script = p_script;
        _plain.models[number].isKnown = std::is_same_v<Type, ScriptModel>;
        return number;
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
    bool MayLink() {
        return _mode != Mode::Growing && !_plain.IsBelow(_node, _other) &&
            _plain.Expanded(0) + _plain.Expanded(_other) <= MostVisuals;
    }
    /// One of the model nodes that live and are no grown ones; of those in need, as far as there are any.
    int Choose(
        unsigned p_number, bool (*p_isInNeed)(PlainModel const&) = [](PlainModel const&) { return false; }) {
        std::vector<int> candidates, needy;
        for (auto const& [number, model] : _plain.models) {
            if (!model.isAlive || number >= 100)
                continue;
            candidates.push_back(number);
            if (p_isInNeed(model))
                needy.push_back(number);
        }
        std::vector<int> const& chosen = needy.empty() ? candidates : needy;
        return chosen[p_number % chosen.size()];
    }
    Core::Ptr<ScriptModel> Model(int p_number) { return _models.at(p_number).Lock(); }
    Core::Ptr<ScriptModel> Node() { return Model(_node); }
    PlainModel& Plain() { return _plain.models.at(_node); }

    template <class Type>
    void AddNew() {
        if (_models.size() >= MostNodes || _plain.Expanded(0) >= MostVisuals)
            return;
        int const number = Make<Type>(RandomScript(_edit.value));
        Node()->Add(Model(number));
        _plain.Add(_node, number);
    }
    void Remove() {
        if (Plain().children.empty())
            return;
        int const number = Plain().children[_edit.value % Plain().children.size()];
        Core::Ptr<ScriptModel> const parent = Node();
        auto const found = std::find_if(parent->begin(), parent->end(),
            [&](auto const& p_child) { return static_cast<ScriptModel const&>(*p_child).number == number; });
        parent->Remove(Core::Ptr<Model::ModelNode>(*found));
        _plain.Remove(_node, number);
    }
    void Carry(int p_from, int p_to, int p_child) {
        Core::Ptr<ScriptModel> const kept = Model(p_child);
        Model(p_from)->Remove(kept);
        Model(p_to)->Add(kept);
        _plain.Move(p_from, p_to, p_child);
    }
    void Readd() {
        std::vector<int> const& children = Plain().children;
        if (int const child = children.empty() ? 100 : children[_edit.value % children.size()]; child < 100)
            Carry(_node, _node, child);
    }
    void Move() {
        std::vector<int> const& parents = _plain.models.at(_other).parents;
        if (!parents.empty() && MayLink())
            Carry(parents[_edit.value % parents.size()], _node, _other);
    }
    void Adopt() {
        if (_other == 0 || !MayLink())
            return;
        Node()->Adopt(Model(_other));
        _plain.Adopt(_node, _other);
    }
    void Link() {
        bool const isFree = _mode == Mode::Sharing || _plain.models.at(_other).parents.empty();
        if (_other == 0 || !isFree || !MayLink())
            return;
        Node()->Add(Model(_other));
        _plain.Add(_node, _other);
    }
    void Clear() {
        Node()->Clear();
        _plain.Clear(_node);
    }
    void Forget() {
        if (_other == 0)
            return;
        _held.erase(_other);
        _plain.Forget(_other);
    }
    void Enable() {
        bool const isOn = _edit.value % 2 == 0;
        Node()->SetEnabled(isOn);
        bool const wasSet = std::exchange(Plain().isEnabledSet, true);
        if (std::exchange(Plain().isEnabled, isOn) != isOn || !wasSet)
            _plain.Changed(_node);
    }
    void ResetEnabled() {
        _node = Choose(_edit.node, [](PlainModel const& p_model) { return !p_model.isEnabled; });
        Node()->Reset(Model::ModelNode::EnabledProperty);
        Plain().isEnabled = true;
        if (std::exchange(Plain().isEnabledSet, false))
            _plain.Changed(_node);
    }
    void Rename() {
        std::string const name = "m" + std::to_string(_edit.value % 3);
        if (name == Node()->Name())
            return;
        Node()->SetName(name);
        _plain.Changed(_node);
    }

    template <class Change>
    void Rescript(Change const& p_change) {
        p_change(Node()->script);
        p_change(Plain().script);
        Node()->Changed();
        _plain.Changed(_node);
    }
    void OwnBox() {
        Rescript([&](Script& p_script) {
            p_script.low = _edit.value % 40;
            p_script.high = p_script.low + static_cast<double>(_edit.value / 40 % 4) - 1;
        });
    }
    void LayerOf() {
        static constexpr int layers[] = {0, 1, 2, -1, 32000, 30001, 30000, 30002, -29999, -30000, -32000};
        Rescript([&](Script& p_script) { p_script.layer = layers[_edit.value % std::size(layers)]; });
    }
    void Fail() {
        static constexpr Answer answers[] = {Answer::Throw, Answer::ThrowInt, Answer::Invalid, Answer::Pending};
        auto const hook = static_cast<Hook>(_edit.other % (HookPost + 1));
        bool const isNeverSeen = hook == HookPost && !Has(Plain().script.handled, HandledUpdate);
        Answer const answer = answers[_edit.value % (hook <= HookUpdate ? 4 : 2)];
        if (!isNeverSeen)
            Rescript([&](Script& p_script) { p_script.answers[hook] = answer; });
    }
    void FirstModel() {
        Rescript([&](Script& p_script) { p_script.firstModel = static_cast<Answer>(_edit.value % 4); });
    }
    void Repair() {
        _node =
            Choose(_edit.node, [](PlainModel const& p_model) { return p_model.script.answers != Script().answers; });
        Rescript([](Script& p_script) {
            p_script.answers = {};
            p_script.firstModel = Answer::Ok;
        });
    }
    void Factory() {
        Answer const answer = _edit.value % 2 == 0 ? Answer::Throw : Answer::ThrowInt;
        if (_root)
            Rescript([&](Script& p_script) { p_script.answers[HookFactory] = answer; });
    }
    void Toggle() {
        auto const callback = static_cast<HandledCallbacks>(1 + _edit.value % HandledRefreshUpdateContext);
        if (callback == 12)
            return;
        _plain.Toggle(_node, callback);
        Node()->script.handled ^= Bit(callback);
        for (ScriptVis* const use : std::vector<ScriptVis*>(Node()->uses))
            use->Toggle(callback);
    }
    void Parts() {
        Rescript([&](Script& p_script) { p_script.parts = static_cast<int>(_edit.value % 4); });
    }
    void Grow() {
        if (_mode == Mode::Growing)
            Rescript([&](Script& p_script) { p_script.grown = static_cast<int>(_edit.value % 4); });
    }
    void Symbol() {
        int const symbol = static_cast<int>(_edit.value % (_symbols.size() + 1)) - 1;
        if (std::exchange(Plain().symbol, symbol) == symbol)
            return;
        Node()->symbol.Attach(symbol < 0 ? Core::Ptr<SymbolModel>() : _symbols[symbol]);
        _plain.Changed(_node);
    }
    void ChangeSymbol() {
        std::size_t const symbol = _edit.value % _symbols.size();
        ++_symbols[symbol]->size;
        ++_plain.symbols[symbol];
        _symbols[symbol]->Touch();
        _plain.SymbolChanged(static_cast<int>(symbol));
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
        Expect("active children", p_vis.HasActiveChildren(), p_plain.hasActiveChildren, where);
        for (auto const& [type, hook] : Passes)
            Expect("work for a pass", p_vis.OptimalPaths().Has(type), Has(p_plain.passes, hook), where);
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
    Edit _edit; ///< the one in progress, and the model nodes that it chose
    int _node = 0, _other = 0;
    Stage _stage;
    PlainTree _plain;
    std::map<int, Core::WeakPtr<ScriptModel>> _models;
    std::map<int, Core::Ptr<ScriptModel>> _held;
    std::vector<Core::Ptr<SymbolModel>> _symbols;
    Core::Ptr<Vis> _root;
    std::ostringstream _wrong;
};

Op const Editor::Ops[] = {{"Add", 10, &Editor::AddNew<ScriptModel>}, {"AddUnknown", 1, &Editor::AddNew<UnknownModel>},
    {"Remove", 6, &Editor::Remove}, {"Move", 6, &Editor::Move}, {"Adopt", 4, &Editor::Adopt},
    {"Link", 6, &Editor::Link}, {"Readd", 3, &Editor::Readd}, {"Clear", 1, &Editor::Clear},
    {"Forget", 3, &Editor::Forget}, {"Enable", 8, &Editor::Enable}, {"ResetEnabled", 5, &Editor::ResetEnabled},
    {"Rename", 2, &Editor::Rename}, {"OwnBox", 5, &Editor::OwnBox}, {"LayerOf", 5, &Editor::LayerOf},
    {"Fail", 9, &Editor::Fail}, {"Repair", 8, &Editor::Repair}, {"FirstModel", 1, &Editor::FirstModel},
    {"Factory", 2, &Editor::Factory}, {"Toggle", 12, &Editor::Toggle}, {"Parts", 3, &Editor::Parts},
    {"Grow", 2, &Editor::Grow}, {"Symbol", 4, &Editor::Symbol}, {"ChangeSymbol", 3, &Editor::ChangeSymbol}};

/// A tree of a few nodes, then rounds of a few edits.
Edits RandomEdits(unsigned p_seed) {
    std::vector<Op const*> bag;
    for (Op const& op : Editor::Ops)
        bag.insert(bag.end(), op.weight, &op);
    std::mt19937 engine(p_seed);
    auto const random = [&] { return static_cast<unsigned>(engine()); };
    auto const next = [&](Op const* p_op) { return Edit{p_op, random() % 1000, random() % 1000, random() % 100000}; };
    Edits edits;
    for (unsigned nodes = 2 + random() % 12; nodes > 0; --nodes)
        edits.push_back(next(&Editor::Ops[0]));
    edits.emplace_back();
    for (unsigned rounds = 3 + random() % 12; rounds > 0; --rounds) {
        for (unsigned count = 1 + random() % 4; count > 0; --count)
            edits.push_back(next(bag[random() % bag.size()]));
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
            text << "    " << (edit.op ? edit.op->name : "Update") << ' ' << edit.node << ' ' << edit.other << ' '
                 << edit.value << '\n';
        FAIL() << "seed " << seed << ", Mode::" << ModeNames[seed % 3] << ", fails after these edits:\n"
               << text.str() << Play(shrunk, mode) << ::testing::PrintToString(quiet.texts(qordebug::severity::ensure));
    }
}

} // namespace
} // namespace Qor::Chart::Render
