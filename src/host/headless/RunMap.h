// Runs over byte offsets: the value at key k holds up to the next key. An
// interval map kept as one sorted array with a gap in it. Writes move the gap
// to where they happen, so a walk that sets values in increasing offsets, as
// colouring does, costs amortised O(1) a write however many runs lie ahead.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace voka::headless {

template <class Value>
class RunMap {
    static_assert(std::is_trivially_copyable_v<Value>, "runs are moved as bytes");

public:
    void assign(std::uint32_t begin, std::uint32_t end, const Value& value);
    const Value& at(std::uint32_t offset) const;
    // Apply f to the value over [begin, end), splitting runs at the edges.
    template <class F> void update(std::uint32_t begin, std::uint32_t end, F f);
    void clear() {
        runs_.clear();
        gapBegin_ = gapEnd_ = 0;
    }
    void shift(std::uint32_t from, std::int64_t delta);  // after inserting or removing text
    // Moves every key through a non-decreasing map; keys that meet keep the
    // value of the last of them (the run that goes on after a removed range).
    template <class F> void remapKeys(F newKey);
    // Drops keys that repeat the value before them, over the whole map.
    void normalize() { coalesce(0, 0xFFFFFFFFu); }

    // Reading in key order: the runs by position, 0 to size() - 1.
    bool empty() const { return size() == 0; }
    std::size_t size() const { return runs_.size() - (gapEnd_ - gapBegin_); }
    std::uint32_t key(std::size_t i) const { return slot(i).key; }
    const Value& value(std::size_t i) const { return slot(i).value; }
    std::size_t upperBound(std::uint32_t offset) const;  // the first run whose key is above offset
    // The first key above `offset`, or `limit` when that comes first.
    std::uint32_t nextKey(std::uint32_t offset, std::uint32_t limit) const {
        const std::size_t i = upperBound(offset);
        return i == size() ? limit : std::min(key(i), limit);
    }
    template <class F> void forEach(F f) const {  // f(key, value) in key order
        for (std::size_t i = 0; i < gapBegin_; ++i) f(runs_[i].key, runs_[i].value);
        for (std::size_t i = gapEnd_; i < runs_.size(); ++i) f(runs_[i].key, runs_[i].value);
    }

private:
    struct Run {
        std::uint32_t key;
        Value value;
    };
    const Run& slot(std::size_t i) const { return runs_[i < gapBegin_ ? i : i + (gapEnd_ - gapBegin_)]; }
    Run& slot(std::size_t i) { return runs_[i < gapBegin_ ? i : i + (gapEnd_ - gapBegin_)]; }
    void moveGap(std::size_t to);           // the gap then begins before run `to`
    void insert(std::size_t at, const Run& run);
    void erase(std::size_t at);
    std::size_t split(std::uint32_t at);  // the position of the run that then starts at `at`
    void coalesce(std::uint32_t from, std::uint32_t to);
    void coalesceFrom(std::size_t first, std::uint32_t to);
    void closeGap() {
        moveGap(size());
        runs_.resize(gapBegin_);
        gapEnd_ = gapBegin_;
    }

    std::vector<Run> runs_;  // [0, gapBegin_) and [gapEnd_, size) hold the runs
    std::size_t gapBegin_ = 0;
    std::size_t gapEnd_ = 0;
    Value empty_{};
};

template <class Value>
std::size_t RunMap<Value>::upperBound(std::uint32_t offset) const {
    // Most reads and writes land at the gap: try there before searching.
    const bool afterFront = gapBegin_ == 0 || runs_[gapBegin_ - 1].key <= offset;
    const bool beforeBack = gapEnd_ == runs_.size() || runs_[gapEnd_].key > offset;
    if (afterFront && beforeBack) return gapBegin_;
    if (!afterFront) {
        auto it = std::upper_bound(runs_.begin(), runs_.begin() + static_cast<std::ptrdiff_t>(gapBegin_), offset,
                                   [](std::uint32_t o, const Run& r) { return o < r.key; });
        return static_cast<std::size_t>(it - runs_.begin());
    }
    auto it = std::upper_bound(runs_.begin() + static_cast<std::ptrdiff_t>(gapEnd_), runs_.end(), offset,
                               [](std::uint32_t o, const Run& r) { return o < r.key; });
    return static_cast<std::size_t>(it - runs_.begin()) - (gapEnd_ - gapBegin_);
}

template <class Value>
const Value& RunMap<Value>::at(std::uint32_t offset) const {
    const std::size_t i = upperBound(offset);
    return i == 0 ? empty_ : value(i - 1);
}

template <class Value>
void RunMap<Value>::moveGap(std::size_t to) {
    if (to < gapBegin_) {
        const std::size_t count = gapBegin_ - to;
        std::move_backward(runs_.begin() + static_cast<std::ptrdiff_t>(to),
                           runs_.begin() + static_cast<std::ptrdiff_t>(gapBegin_),
                           runs_.begin() + static_cast<std::ptrdiff_t>(gapEnd_));
        gapBegin_ -= count;
        gapEnd_ -= count;
    } else if (to > gapBegin_) {
        const std::size_t count = to - gapBegin_;
        std::move(runs_.begin() + static_cast<std::ptrdiff_t>(gapEnd_),
                  runs_.begin() + static_cast<std::ptrdiff_t>(gapEnd_ + count),
                  runs_.begin() + static_cast<std::ptrdiff_t>(gapBegin_));
        gapBegin_ += count;
        gapEnd_ += count;
    }
}

template <class Value>
void RunMap<Value>::insert(std::size_t at, const Run& run) {
    if (gapBegin_ == gapEnd_) {
        // Full: reallocate with a gap as large as the runs, opened at `at`.
        const std::size_t count = runs_.size();
        const std::size_t gap = std::max<std::size_t>(count, 16);
        std::vector<Run> grown(count + gap);
        std::copy(runs_.begin(), runs_.begin() + static_cast<std::ptrdiff_t>(at), grown.begin());
        std::copy(runs_.begin() + static_cast<std::ptrdiff_t>(at), runs_.end(),
                  grown.begin() + static_cast<std::ptrdiff_t>(at + gap));
        runs_ = std::move(grown);
        gapBegin_ = at;
        gapEnd_ = at + gap;
    } else {
        moveGap(at);
    }
    runs_[gapBegin_++] = run;
}

template <class Value>
void RunMap<Value>::erase(std::size_t at) {
    moveGap(at);
    ++gapEnd_;
}

template <class Value>
std::size_t RunMap<Value>::split(std::uint32_t at) {
    const std::size_t i = upperBound(at);
    if (i > 0 && key(i - 1) == at) return i - 1;
    insert(i, Run{at, i == 0 ? empty_ : value(i - 1)});
    return i;
}

template <class Value>
void RunMap<Value>::coalesce(std::uint32_t from, std::uint32_t to) {
    std::size_t i = upperBound(from);
    if (i > 0 && key(i - 1) == from) --i;  // the first key at or after `from`
    coalesceFrom(i, to);
}

// From the run before position `first` through the first key above `to`.
template <class Value>
void RunMap<Value>::coalesceFrom(std::size_t first, std::uint32_t to) {
    std::size_t i = first;
    if (i > 0) --i;
    Value previous = i > 0 ? value(i - 1) : empty_;
    while (i < size() && key(i) <= to) {
        if (value(i) == previous) {
            erase(i);
            continue;
        }
        previous = value(i);
        ++i;
    }
    // The run after `to` may now repeat the value before it.
    if (i < size() && value(i) == previous) erase(i);
}

template <class Value>
void RunMap<Value>::assign(std::uint32_t begin, std::uint32_t end, const Value& value) {
    update(begin, end, [&](Value& v) { v = value; });
}

template <class Value>
template <class F>
void RunMap<Value>::update(std::uint32_t begin, std::uint32_t end, F f) {
    if (begin >= end) return;
    const std::size_t first = split(begin);
    const std::size_t last = split(end);  // after `first`: inserting it moved nothing before
    for (std::size_t i = first; i < last; ++i) f(slot(i).value);
    coalesceFrom(first, end);
}

template <class Value>
void RunMap<Value>::shift(std::uint32_t from, std::int64_t delta) {
    if (delta == 0) return;
    if (delta > 0) {
        split(from);
        closeGap();
        for (Run& run : runs_)
            if (run.key >= from) run.key += static_cast<std::uint32_t>(delta);
        coalesce(from, from + static_cast<std::uint32_t>(delta));
        return;
    }
    const std::uint32_t length = static_cast<std::uint32_t>(-delta);
    const std::uint32_t end = from + length;
    const Value after = at(end);
    closeGap();
    // Runs that began inside the removed range go; the one going on after it starts at `from`.
    std::vector<Run> kept;
    kept.reserve(runs_.size() + 1);
    for (const Run& run : runs_)
        if (run.key < from) kept.push_back(run);
    kept.push_back(Run{from, after});
    for (const Run& run : runs_)
        if (run.key > end) kept.push_back(Run{run.key - length, run.value});
    runs_ = std::move(kept);
    gapBegin_ = gapEnd_ = runs_.size();
    coalesce(from, from);
}

template <class Value>
template <class F>
void RunMap<Value>::remapKeys(F newKey) {
    closeGap();
    std::vector<Run> moved;
    moved.reserve(runs_.size());
    for (const Run& run : runs_) {
        const std::uint32_t key = newKey(run.key);
        if (!moved.empty() && moved.back().key == key) moved.back().value = run.value;
        else moved.push_back(Run{key, run.value});
    }
    runs_ = std::move(moved);
    gapBegin_ = gapEnd_ = runs_.size();
    normalize();
}

}  // namespace voka::headless
