// Operations on the list items of dialogs, called from dialog events: add,
// move, delete and rename entries, keeping the selection on the entry.
#include "frame/Alerts.h"
#include "frame/Dialogs.h"

#include <algorithm>

namespace voka {

namespace {

struct ListItem {
    Handle item = kNoObject;
    std::vector<std::string> labels;
    int selected = -1;  // -1 when nothing (or something out of range) is selected
};

ListItem readList(Host& host, Handle dialog, int itemNumber) {
    ListItem list;
    list.item = host.dialogItem(dialog, itemNumber);
    if (list.item == kNoObject) return list;
    list.labels = host.itemLabels(dialog, list.item);
    list.selected = host.itemState(dialog, list.item);
    if (list.selected < 0 || list.selected >= static_cast<int>(list.labels.size())) list.selected = -1;
    return list;
}

void writeList(Host& host, Handle dialog, const ListItem& list, int selection) {
    host.setItemLabels(dialog, list.item, list.labels);
    host.setItemState(dialog, list.item, selection);
}

int indexOf(const std::vector<std::string>& labels, const std::string& text) {
    auto it = std::find(labels.begin(), labels.end(), text);
    return it == labels.end() ? -1 : static_cast<int>(it - labels.begin());
}

// The entry an index, the selection or a text names, as edit and remove choose it.
int chosenEntry(const ListItem& list, int index, const std::string& text) {
    int chosen = index >= 0 ? index : (text.empty() ? list.selected : indexOf(list.labels, text));
    if (chosen < 0 || chosen >= static_cast<int>(list.labels.size())) return -1;
    return chosen;
}

// After a removal at `at`: the entry now there, or the new last, or none.
int selectionAfterRemoval(int at, int size) { return size == 0 ? -1 : std::min(at, size - 1); }

}  // namespace

int listAdd(Host& host, Handle dialog, const std::string& prompt, bool allowDuplicates) {
    ListItem list = readList(host, dialog, kListItem);
    if (list.item == kNoObject) return -1;
    std::string answer;
    if (host.promptString(prompt, "{...}", answer) != 0 || answer.empty()) return -1;
    if (!allowDuplicates && indexOf(list.labels, answer) >= 0) {
        showPlainWarning(host, "This item already exists");
        return -1;
    }
    list.labels.push_back(answer);
    const int added = static_cast<int>(list.labels.size()) - 1;
    writeList(host, dialog, list, added);
    return added;
}

int listMove(Host& host, Handle dialog, int code) {
    ListItem list = readList(host, dialog, kListItem);
    const int size = static_cast<int>(list.labels.size());
    const int at = list.selected;
    if (list.item == kNoObject || at < 0) return -1;
    if (code == kMoveDelete) {
        list.labels.erase(list.labels.begin() + at);
        writeList(host, dialog, list, selectionAfterRemoval(at, size - 1));
        return at;
    }
    const int step = code == kMoveUp ? -1 : (code == kMoveDown ? 1 : 0);
    const int to = at + step;
    if (step == 0 || size < 2 || to < 0 || to >= size) return -1;
    std::swap(list.labels[at], list.labels[to]);
    writeList(host, dialog, list, to);
    return to;
}

int listRename(Host& host, Handle dialog, const std::string& prompt, bool allowDuplicates) {
    ListItem list = readList(host, dialog, kListItem);
    const int at = list.selected;
    if (list.item == kNoObject || at < 0) return -1;
    std::string answer;
    if (host.promptString(prompt, list.labels[at], answer) != 0) return -1;
    if (answer.empty() || answer == list.labels[at]) return -1;
    if (!allowDuplicates && indexOf(list.labels, answer) >= 0) {
        showPlainWarning(host, "This item already exists");
        return -1;
    }
    list.labels[at] = answer;
    writeList(host, dialog, list, at);
    return at;
}

int listEditEntry(Host& host, Handle dialog, int item, int index, const std::string& text, bool replace,
                  bool warn) {
    ListItem list = readList(host, dialog, item);
    const int at = chosenEntry(list, index, text);
    if (list.item == kNoObject || at < 0) return -1;
    std::string answer;
    if (host.promptString("Edit item...", list.labels[at], answer) != 0 || answer.empty()) return -1;
    const int duplicate = indexOf(list.labels, answer);
    if (duplicate >= 0 && !replace) {
        if (warn && duplicate != at) showPlainWarning(host, "This item is already in the list.");
        return -1;
    }
    list.labels[at] = answer;
    host.setItemLabels(dialog, list.item, list.labels);
    return at;
}

int listRemoveEntry(Host& host, Handle dialog, int item, int index, const std::string& text) {
    ListItem list = readList(host, dialog, item);
    const int at = chosenEntry(list, index, text);
    if (list.item == kNoObject || at < 0) return -1;
    list.labels.erase(list.labels.begin() + at);
    host.setItemLabels(dialog, list.item, list.labels);
    const bool bySelection = index < 0 && text.empty();
    if (bySelection) {
        host.setItemState(dialog, list.item, selectionAfterRemoval(at, static_cast<int>(list.labels.size())));
    }
    return at;
}

int listMoveBetween(Host& host, Handle dialog, int fromItem, int toItem, bool sort) {
    ListItem from = readList(host, dialog, fromItem);
    ListItem to = readList(host, dialog, toItem);
    if (from.item == kNoObject || to.item == kNoObject || from.selected < 0) return -1;
    const std::string entry = from.labels[from.selected];
    from.labels.erase(from.labels.begin() + from.selected);
    to.labels.push_back(entry);
    if (sort) {
        std::sort(from.labels.begin(), from.labels.end());
        std::sort(to.labels.begin(), to.labels.end());
    }
    host.setItemLabels(dialog, from.item, from.labels);
    const int remaining = static_cast<int>(from.labels.size());
    host.setItemState(dialog, from.item, selectionAfterRemoval(from.selected, remaining));
    host.setItemLabels(dialog, to.item, to.labels);
    return sort ? indexOf(to.labels, entry) : static_cast<int>(to.labels.size()) - 1;
}

}  // namespace voka
