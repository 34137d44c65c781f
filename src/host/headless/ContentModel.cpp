#include "host/headless/ContentModel.h"

#include "host/headless/Model.h"

#include <algorithm>
#include <unordered_map>

namespace voka::headless {

namespace {

// A Thompson automaton: one state per name or split, built from the postfix
// program without recursion, so that a hostile DTD's long groups cost stack
// nothing.
struct Automaton {
    static constexpr std::int32_t kSplit = -1, kMatch = -2, kPass = -3;
    struct State {
        std::int32_t kind;  // a name index, or kSplit, kMatch, kPass
        std::int32_t next = -1, other = -1;
    };
    std::vector<State> states;
    std::int32_t start = -1;
    bool valid = false;
};

// An out-arrow left open: state `state`, its `next` (0) or `other` (1).
struct Hole {
    std::int32_t state;
    int which;
};

struct Fragment {
    std::int32_t start;
    std::vector<Hole> holes;
};

void patch(Automaton& a, const std::vector<Hole>& holes, std::int32_t to) {
    for (const Hole& hole : holes) (hole.which == 0 ? a.states[hole.state].next : a.states[hole.state].other) = to;
}

std::int32_t add(Automaton& a, std::int32_t kind) {
    a.states.push_back({kind});
    return static_cast<std::int32_t>(a.states.size() - 1);
}

Automaton compile(const ContentModel& model) {
    Automaton a;
    std::vector<Fragment> stack;
    for (const std::int32_t op : model.program) {
        if (op >= 0 || op == ContentModel::kNothing) {
            const std::int32_t s = add(a, op >= 0 ? op : Automaton::kPass);
            stack.push_back({s, {{s, 0}}});
            continue;
        }
        const bool binary = op == ContentModel::kSequence || op == ContentModel::kChoice;
        if (stack.size() < (binary ? 2u : 1u)) return a;
        Fragment e = std::move(stack.back());
        stack.pop_back();
        if (op == ContentModel::kSequence || op == ContentModel::kChoice) {
            Fragment first = std::move(stack.back());
            stack.pop_back();
            if (op == ContentModel::kSequence) {
                patch(a, first.holes, e.start);
                stack.push_back({first.start, std::move(e.holes)});
            } else {
                const std::int32_t s = add(a, Automaton::kSplit);
                a.states[s].next = first.start;
                a.states[s].other = e.start;
                first.holes.insert(first.holes.end(), e.holes.begin(), e.holes.end());
                stack.push_back({s, std::move(first.holes)});
            }
            continue;
        }
        const std::int32_t s = add(a, Automaton::kSplit);
        a.states[s].next = e.start;
        if (op == ContentModel::kOptional) {
            e.holes.push_back({s, 1});
            stack.push_back({s, std::move(e.holes)});
        } else if (op == ContentModel::kRepeat) {
            patch(a, e.holes, s);
            stack.push_back({s, {{s, 1}}});
        } else if (op == ContentModel::kOneOrMore) {
            patch(a, e.holes, s);
            stack.push_back({e.start, {{s, 1}}});
        } else {
            return a;
        }
    }
    if (stack.size() != 1) return a;
    const std::int32_t match = add(a, Automaton::kMatch);
    patch(a, stack.back().holes, match);
    a.start = stack.back().start;
    a.valid = true;
    return a;
}

// The states reachable from `from` without reading a child, those that read one or match.
void close(const Automaton& a, std::vector<std::int32_t>& from, std::vector<std::uint32_t>& seen, std::uint32_t mark,
           std::vector<std::int32_t>& out) {
    out.clear();
    while (!from.empty()) {
        const std::int32_t s = from.back();
        from.pop_back();
        if (s < 0 || seen[static_cast<std::size_t>(s)] == mark) continue;
        seen[static_cast<std::size_t>(s)] = mark;
        const Automaton::State& state = a.states[static_cast<std::size_t>(s)];
        if (state.kind == Automaton::kSplit) {
            from.push_back(state.other);
            from.push_back(state.next);
        } else if (state.kind == Automaton::kPass) {
            from.push_back(state.next);
        } else {
            out.push_back(s);
        }
    }
}

bool run(const Automaton& a, const std::vector<std::int32_t>& names) {
    std::vector<std::uint32_t> seen(a.states.size(), 0);
    std::uint32_t mark = 1;
    std::vector<std::int32_t> pending{a.start}, current;
    close(a, pending, seen, mark, current);
    for (const std::int32_t name : names) {
        for (const std::int32_t s : current)
            if (a.states[static_cast<std::size_t>(s)].kind == name && name >= 0)
                pending.push_back(a.states[static_cast<std::size_t>(s)].next);
        close(a, pending, seen, ++mark, current);
        if (current.empty()) return false;
    }
    for (const std::int32_t s : current)
        if (a.states[static_cast<std::size_t>(s)].kind == Automaton::kMatch) return true;
    return false;
}

// A child's tag as a name of the model, -1 when the model does not name it.
std::vector<std::int32_t> nameIndexes(const ContentModel& model, std::span<const std::string_view> tags) {
    std::vector<std::int32_t> names;
    names.reserve(tags.size());
    for (const std::string_view tag : tags) {
        std::int32_t found = -1;
        for (std::size_t i = 0; i < model.names.size() && found < 0; ++i)
            if (model.names[i] == tag) found = static_cast<std::int32_t>(i);
        names.push_back(found);
    }
    return names;
}

}  // namespace

bool childrenFit(const ContentModel& model, std::span<const std::string_view> tags) {
    if (model.kind == ContentModel::Kind::Undeclared || model.kind == ContentModel::Kind::Any) return true;
    if (model.kind == ContentModel::Kind::Empty) return tags.empty();
    const Automaton a = compile(model);
    return !a.valid || run(a, nameIndexes(model, tags));
}

std::vector<std::uint32_t> brokenByDeletions(const Document& doc) {
    // Parents still there that lost a child: the tops of deleted subtrees.
    std::unordered_map<Index, std::pair<std::vector<Index>, std::vector<Index>>> changed;  // children before, after
    for (const Element& e : doc.elements)
        if (!e.alive && e.parent != kNil && e.parent < doc.elements.size() && doc.elements[e.parent].alive)
            changed[e.parent];
    if (changed.empty()) return {};
    for (const Element& e : doc.elements) {
        auto found = e.parent == kNil ? changed.end() : changed.find(e.parent);
        if (found == changed.end()) continue;
        found->second.first.push_back(e.definition);
        if (e.alive) found->second.second.push_back(e.definition);
    }
    // Each model is compiled once, with its names looked up by definition.
    struct Compiled {
        Automaton automaton;
        std::vector<std::int32_t> nameOf;  // by definition index; -1 for a tag the model does not name
    };
    std::unordered_map<Index, Compiled> compiled;
    auto namesOf = [&](const Compiled& c, const std::vector<Index>& definitions) {
        std::vector<std::int32_t> names;
        names.reserve(definitions.size());
        for (const Index d : definitions) names.push_back(d < c.nameOf.size() ? c.nameOf[d] : -1);
        return names;
    };
    std::vector<std::uint32_t> broken;
    for (const auto& [parent, children] : changed) {
        const Index definition = doc.elements[parent].definition;
        if (definition >= doc.definitions.size()) continue;
        const ContentModel& model = doc.definitions[definition].content;
        // ANY and EMPTY hold after any deletion; an undeclared element has no model to break.
        if (model.kind != ContentModel::Kind::Children) continue;
        auto [slot, added] = compiled.try_emplace(definition);
        Compiled& c = slot->second;
        if (added) {
            c.automaton = compile(model);
            c.nameOf.assign(doc.definitions.size(), -1);
            for (std::size_t i = 0; i < model.names.size(); ++i) {
                const auto found = doc.definitionByTag.find(model.names[i]);
                if (found != doc.definitionByTag.end() && found->second < c.nameOf.size())
                    c.nameOf[found->second] = static_cast<std::int32_t>(i);
            }
        }
        if (!c.automaton.valid) continue;
        if (run(c.automaton, namesOf(c, children.first)) && !run(c.automaton, namesOf(c, children.second)))
            broken.push_back(parent);
    }
    std::sort(broken.begin(), broken.end());
    return broken;
}

}  // namespace voka::headless
