// The elements from a document's root down to the one a walk stands on, each
// with the values a scheme compares for a fixed list of attribute names, and
// what each passes on to its descendants: the values of the nearest element
// on the path that has some, and whether any element on it has the attribute
// at all. Colouring, filtering and validation walk in pre-order, so the path
// only ever grows by a child, moves to a sibling or drops its last element.
//
// Values are views: into the host's strings (a borrowed read), into the
// definitions' declared defaults, or into a caller's list. Reading an element
// allocates nothing once the path has grown to the document's depth.
#pragma once

#include "host/Host.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace voka {

// How a scheme reads values: names, and values against its words, compared
// exactly or ignoring case; EDD defaults for attributes without a value;
// values split at blanks.
struct ValueOptions {
    bool exactNames = true;
    bool exactValues = true;
    bool eddDefaults = false;
    bool spaceDelimited = false;
};

class ValuePath {
public:
    // Values of one name on one element: a range of the path's views, and
    // which of the path's words (see setWords) are among them.
    struct Values {
        std::uint32_t first = 0;
        std::uint32_t count = 0;
        std::uint64_t words = 0;
        bool empty() const { return count == 0; }
    };
    struct Own {
        bool has = false;  // the element's definition declares the name
        Values values;
    };
    struct Inherited {
        bool seen = false;  // some ancestor declares the name
        Values values;      // of the nearest ancestor that has values
    };

    // Starts over for `doc` with the names to read; clears the path.
    void prepare(Handle doc, const std::vector<std::string>& names, const ValueOptions& options);

    // The words a scheme compares values with (at most kMaxWords, else none
    // are kept): each element's values then carry a bit per word they equal,
    // so a comparison is a bit test. Call after prepare.
    static constexpr std::size_t kMaxWords = 64;
    bool setWords(const std::vector<std::string>& words);
    bool hasWords() const { return !words_.empty(); }

    // True when the definition has a tag (elements without one are skipped by walks).
    bool tagged(Host& host, Handle definition);

    // The path from the root to `element`, reusing what it holds when it
    // already ends there. False when the element is gone.
    bool reach(Host& host, Handle element);
    // Adds a child of the last element (or a root to an empty path).
    bool enter(Host& host, Handle element);
    // Replaces the last element by its sibling.
    bool moveAcross(Host& host, Handle sibling);
    void leave();  // drops the last element
    void clear();

    // The last element on the path, with the values the caller gives instead
    // of the host's; the caller keeps `attributes` alive while it is used.
    void enterGiven(Handle element, const Attributes& attributes);

    Handle last() const { return frames_.empty() ? kNoObject : frames_.back().element; }
    // The last element's definition, as read with its values.
    Handle lastDefinition() const { return frames_.empty() ? kNoObject : frames_.back().definition; }
    std::size_t depth() const { return frames_.size(); }
    // The last element's own values and what it inherits, by name slot.
    const Own& own(int slot) const { return own_[(frames_.size() - 1) * slots_ + static_cast<std::size_t>(slot)]; }
    const Inherited& inherited(int slot) const;
    std::span<const std::string_view> values(const Values& values) const {
        return {views_.data() + values.first, values.count};
    }

private:
    struct Definition {
        int tagged = -1;  // not read yet
        bool read = false;
        AttributeDefinitions declared;  // for the names and the defaults
        std::vector<int> position;      // per slot: the first declared attribute of that name, -1 none
    };
    struct Frame {
        Handle element;
        std::uint32_t viewsBegin;
        Handle definition = kNoObject;
    };

    Definition& definition(Host& host, Handle handle);
    Definition& cached(Handle handle);
    void readDefinition(Host& host, Definition& definition, Handle handle);
    void push(Handle element);
    bool readTop(Host& host);  // the last frame's own values and what it passes on
    void passOn();
    void appendWords(std::string_view value);
    // `stable`: the view is into the host's or a definition's strings, which
    // outlive the walk unchanged, so its bits may be remembered by address.
    void appendView(std::string_view view, bool stable);
    std::uint64_t wordBits(std::string_view view) const;
    std::uint64_t stableWordBits(std::string_view view);

    Handle doc_ = kNoObject;
    std::vector<std::string> names_;
    ValueOptions options_;
    std::size_t slots_ = 0;
    std::unordered_map<Handle, Definition> definitions_;
    Handle lastHandle_ = kNoObject;  // most elements share their neighbour's definition
    Definition* lastDefinition_ = nullptr;
    std::vector<Frame> frames_;
    std::vector<Own> own_;              // frames_.size() * slots_
    std::vector<Inherited> passedOn_;   // frames_.size() * slots_: what each frame's children inherit
    std::vector<std::string_view> views_;
    std::vector<std::string> words_;
    std::unordered_map<std::string_view, std::uint64_t> wordIndex_;  // exact values: word -> its bit
    std::uint64_t appendedBits_ = 0;  // of the views appended since the last reset
    // The host hands out the same strings element after element: their bits
    // by address, so a value seen before costs no hashing of its text.
    struct KnownView {
        const char* data = nullptr;
        std::size_t size = 0;
        std::uint64_t bits = 0;
    };
    std::vector<KnownView> known_;  // direct-mapped, kKnownViews entries
    std::vector<std::span<const std::string>> borrowed_;  // scratch of the host's read
    std::vector<Handle> chain_;                           // scratch of reach()
};

}  // namespace voka
