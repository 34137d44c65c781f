#include "schemes/ValuePath.h"

#include "schemes/NameLists.h"

namespace voka {

namespace {

const ValuePath::Inherited kNothingInherited{};
constexpr std::size_t kKnownViews = 251;

}  // namespace

void ValuePath::prepare(Handle doc, const std::vector<std::string>& names, const ValueOptions& options) {
    doc_ = doc;
    names_ = names;
    options_ = options;
    slots_ = names.size();
    definitions_.clear();
    lastHandle_ = kNoObject;
    lastDefinition_ = nullptr;
    words_.clear();
    wordIndex_.clear();
    known_.assign(kKnownViews, KnownView{});
    clear();
}

bool ValuePath::setWords(const std::vector<std::string>& words) {
    words_.clear();
    wordIndex_.clear();
    known_.assign(kKnownViews, KnownView{});
    if (words.size() > kMaxWords) return false;
    words_ = words;
    for (std::size_t i = 0; i < words_.size(); ++i) wordIndex_[words_[i]] |= std::uint64_t{1} << i;
    return true;
}

// One bit per word the view equals: under an exact comparison only the same
// text; ignoring case, any number of words may.
std::uint64_t ValuePath::wordBits(std::string_view view) const {
    if (words_.empty()) return 0;
    if (options_.exactValues) {
        auto found = wordIndex_.find(view);
        return found == wordIndex_.end() ? 0 : found->second;
    }
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < words_.size(); ++i)
        if (namesEqual(view, words_[i], false)) bits |= std::uint64_t{1} << i;
    return bits;
}

std::uint64_t ValuePath::stableWordBits(std::string_view view) {
    if (words_.empty()) return 0;
    const auto address = reinterpret_cast<std::uintptr_t>(view.data());
    KnownView& known = known_[((address >> 3) ^ view.size()) % known_.size()];
    if (known.data != view.data() || known.size != view.size() || known.data == nullptr)
        known = KnownView{view.data(), view.size(), wordBits(view)};
    return known.bits;
}

void ValuePath::appendView(std::string_view view, bool stable) {
    views_.push_back(view);
    appendedBits_ |= stable ? stableWordBits(view) : wordBits(view);
}

void ValuePath::clear() {
    frames_.clear();
    own_.clear();
    passedOn_.clear();
    views_.clear();
}

ValuePath::Definition& ValuePath::cached(Handle handle) {
    if (handle != lastHandle_ || lastDefinition_ == nullptr) {
        lastDefinition_ = &definitions_[handle];  // nodes of the map never move
        lastHandle_ = handle;
    }
    return *lastDefinition_;
}

bool ValuePath::tagged(Host& host, Handle handle) {
    Definition& d = cached(handle);
    if (d.tagged < 0) d.tagged = host.definitionTag(doc_, handle).empty() ? 0 : 1;
    return d.tagged == 1;
}

ValuePath::Definition& ValuePath::definition(Host& host, Handle handle) {
    Definition& d = cached(handle);
    if (!d.read) readDefinition(host, d, handle);
    return d;
}

void ValuePath::readDefinition(Host& host, Definition& d, Handle handle) {
    d.read = true;
    d.declared = host.attributeDefinitions(doc_, handle);
    d.position.assign(slots_, -1);
    for (std::size_t slot = 0; slot < slots_; ++slot) {
        for (std::size_t p = 0; p < d.declared.size(); ++p) {
            if (namesEqual(d.declared[p].name, names_[slot], options_.exactNames)) {
                d.position[slot] = static_cast<int>(p);
                break;
            }
        }
    }
}

const ValuePath::Inherited& ValuePath::inherited(int slot) const {
    if (frames_.size() < 2) return kNothingInherited;
    return passedOn_[(frames_.size() - 2) * slots_ + static_cast<std::size_t>(slot)];
}

void ValuePath::push(Handle element) {
    frames_.push_back(Frame{element, static_cast<std::uint32_t>(views_.size())});
    own_.resize(frames_.size() * slots_);
    passedOn_.resize(frames_.size() * slots_);
}

void ValuePath::leave() {
    if (frames_.empty()) return;
    views_.resize(frames_.back().viewsBegin);
    frames_.pop_back();
    own_.resize(frames_.size() * slots_);
    passedOn_.resize(frames_.size() * slots_);
}

// Words are separated by single blanks; runs of blanks count as one.
void ValuePath::appendWords(std::string_view value) {
    std::size_t at = 0;
    while (at < value.size()) {
        const std::size_t begin = value.find_first_not_of(' ', at);
        if (begin == std::string_view::npos) return;
        std::size_t end = value.find(' ', begin);
        if (end == std::string_view::npos) end = value.size();
        appendView(value.substr(begin, end - begin), true);
        at = end;
    }
}

bool ValuePath::readTop(Host& host) {
    Frame& frame = frames_.back();
    if (!host.borrowAttributeValues(doc_, frame.element, borrowed_)) return false;
    const Handle handle = frame.definition = host.elementDefinition(doc_, frame.element);
    const Definition* d = handle == kNoObject ? nullptr : &definition(host, handle);
    Own* own = own_.data() + (frames_.size() - 1) * slots_;
    for (std::size_t slot = 0; slot < slots_; ++slot) {
        const int p = d != nullptr ? d->position[slot] : -1;
        if (p < 0) {
            own[slot] = Own{};
            continue;
        }
        const auto position = static_cast<std::size_t>(p);
        std::span<const std::string> values;
        if (position < borrowed_.size()) values = borrowed_[position];
        // The declared defaults stand in for an attribute without values, paired by position.
        if (values.empty() && options_.eddDefaults && position < d->declared.size())
            values = d->declared[position].defaults;
        const auto first = static_cast<std::uint32_t>(views_.size());
        appendedBits_ = 0;
        for (const std::string& value : values) {
            if (options_.spaceDelimited) appendWords(value);
            else appendView(value, true);
        }
        own[slot] = Own{true, Values{first, static_cast<std::uint32_t>(views_.size() - first), appendedBits_}};
    }
    passOn();
    return true;
}

void ValuePath::passOn() {
    const std::size_t base = (frames_.size() - 1) * slots_;
    for (std::size_t slot = 0; slot < slots_; ++slot) {
        Inherited passed = frames_.size() > 1 ? passedOn_[base - slots_ + slot] : kNothingInherited;
        const Own& own = own_[base + slot];
        if (own.has) {
            passed.seen = true;
            if (!own.values.empty()) passed.values = own.values;
        }
        passedOn_[base + slot] = passed;
    }
}

bool ValuePath::enter(Host& host, Handle element) {
    push(element);
    if (readTop(host)) return true;
    leave();
    return false;
}

bool ValuePath::moveAcross(Host& host, Handle sibling) {
    leave();
    return enter(host, sibling);
}

bool ValuePath::reach(Host& host, Handle element) {
    if (element != kNoObject && last() == element) return true;
    chain_.clear();
    for (Handle at = element; at != kNoObject; at = host.parent(doc_, at)) chain_.push_back(at);
    // Keep the part of the path the new one shares from the root.
    std::size_t kept = 0;
    while (kept < frames_.size() && kept < chain_.size() && frames_[kept].element == chain_[chain_.size() - 1 - kept])
        ++kept;
    while (frames_.size() > kept) leave();
    for (std::size_t i = chain_.size() - kept; i-- > 0;)
        if (!enter(host, chain_[i])) return false;
    return element != kNoObject;
}

void ValuePath::enterGiven(Handle element, const Attributes& attributes) {
    push(element);
    Own* own = own_.data() + (frames_.size() - 1) * slots_;
    for (std::size_t slot = 0; slot < slots_; ++slot) {
        own[slot] = Own{};
        for (const Attribute& attribute : attributes) {
            if (!namesEqual(attribute.name, names_[slot], options_.exactNames)) continue;
            const auto first = static_cast<std::uint32_t>(views_.size());
            appendedBits_ = 0;
            for (const std::string& value : attribute.values) appendView(value, false);
            own[slot] = Own{true, Values{first, static_cast<std::uint32_t>(views_.size() - first), appendedBits_}};
            break;
        }
    }
    passOn();
}

}  // namespace voka
