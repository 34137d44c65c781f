// The element a validation check stands on, read against the loaded scheme:
// for each attribute the scheme lists, the element's own values and those of
// its nearest ancestor that declares the attribute (with values or without),
// which rules 2 and 3 compare with. The chain of ancestors is kept from one
// element to the next: a pre-order walk reaches each element from the chain
// it left, so an element costs one borrowed read of its values.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"
#include "schemes/ValuePath.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace voka {

class ValidationPath {
public:
    using Views = std::span<const std::string_view>;

    // A declared attribute of the element that the scheme lists.
    struct Checked {
        int slot = 0;
        std::string name;  // as the element's definition declares it
    };
    struct Reference {
        bool found = false;  // an ancestor declares the attribute
        ValuePath::Values values;
    };

    // Readies the path for elements of `doc`; the scheme must neither change
    // nor move while the path is in use.
    void prepare(const ValidationScheme& scheme, Handle doc);

    // Makes `element` the one read, with its chain of ancestors; false when
    // it is gone.
    bool reach(Host& host, Handle element);

    // The element reached: whether its attribute list is empty; the listed
    // attributes it declares, in declaration order; whether two of them fall
    // on one listed name (then only the first is read here, and the caller
    // reads the element's attributes whole).
    bool declaresNothing() const { return facts_ == nullptr || !facts_->declaresAny; }
    const std::vector<Checked>& checked() const { return facts_->checked; }
    bool needsWholeRead() const { return facts_ != nullptr && facts_->shared; }

    // Of the element reached, by slot: its own values and the reference.
    Views own(int slot) const { return path_.values(path_.own(slot).values); }
    Reference reference(int slot) const;
    Views values(const ValuePath::Values& values) const { return path_.values(values); }

    // The slot of a listed attribute name, or -1; the scheme's entry for it.
    int slotOf(std::string_view name) const;
    const ValidationRule& rule(int slot) const { return *rules_[static_cast<std::size_t>(slot)]; }
    bool emptyAllowed(int slot) const { return emptyAllowed_[static_cast<std::size_t>(slot)] != 0; }
    bool exact() const { return exact_; }

private:
    struct DefinitionFacts {
        bool read = false;
        bool declaresAny = false;
        bool shared = false;
        std::vector<Checked> checked;
    };

    bool push(Host& host, Handle element);
    void pop();
    void clear();
    bool rebuildTo(Host& host, Handle element);
    const DefinitionFacts& facts(Host& host, Handle definition);

    Handle doc_ = kNoObject;
    bool exact_ = true;
    std::size_t slots_ = 0;
    std::vector<const ValidationRule*> rules_;  // per slot: the first entry of that name
    std::vector<char> emptyAllowed_;            // per slot: "<no value>" is listed
    ValuePath path_;
    std::vector<Handle> chain_;     // the elements on the path, root first
    std::vector<Reference> rows_;   // per element on the path and slot: the nearest declaring one at or above it
    std::unordered_map<Handle, DefinitionFacts> definitions_;
    Handle lastDefinition_ = kNoObject;
    const DefinitionFacts* lastFacts_ = nullptr;  // of lastDefinition_
    const DefinitionFacts* facts_ = nullptr;      // of the element reached
    std::vector<Handle> scratch_;
};

}  // namespace voka
