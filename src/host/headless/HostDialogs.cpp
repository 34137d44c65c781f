// Dialogs: resources opened by name, modal and modeless runs, items, and the
// dialog as a user sees and handles it (HostDialogUser).
#include "host/headless/Handles.h"
#include "host/headless/HeadlessHost.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace voka::headless {

namespace {

bool listLike(const DialogItem& item) { return item.kind == "popup" || item.kind == "scrolllist"; }

bool stateFits(const DialogItem& item, int state) {
    if (listLike(item)) return state >= -1 && state < static_cast<int>(item.labels.size());
    if (item.kind == "checkbox" || item.kind == "radio") return state >= 0 && state <= 2;
    return true;
}

// Items that show text: their lines make up what a status dialog displays.
bool showsText(const DialogItem& item) { return item.kind == "label" || item.kind == "text"; }

DialogItem* itemByNumber(DialogObject& dialog, int number) {
    auto it = std::lower_bound(dialog.items.begin(), dialog.items.end(), number,
                               [](const DialogItem& item, int n) { return item.number < n; });
    return it == dialog.items.end() || it->number != number ? nullptr : &*it;
}

}  // namespace

// What a user can do with a dialog of the host. It holds the handle, not the
// dialog, so that it notices when the plug-in closes the dialog under it.
class HostDialogUser : public DialogUser {
public:
    HostDialogUser(HeadlessHost& host, Handle dialog) : host_(host), dialog_(dialog) {}

    std::string name() const override { return dialog() ? dialog()->name : std::string(); }
    std::string title() const override { return dialog() ? dialog()->title : std::string(); }
    bool isUp() const override { return dialog() && dialog()->shown; }
    std::string text(int item) const override { return find(item) ? find(item)->text : std::string(); }
    std::string label(int item) const override { return find(item) ? find(item)->label : std::string(); }
    int state(int item) const override { return find(item) ? find(item)->state : 0; }
    std::vector<std::string> labels(int item) const override {
        return find(item) ? find(item)->labels : std::vector<std::string>();
    }
    bool sensitive(int item) const override { return find(item) && find(item)->sensitive; }

    bool type(int item, const std::string& text) override {
        DialogItem* i = usable(item);
        if (!i) return false;
        i->text = text;
        host_.reportDialogText(*dialog());
        return true;
    }

    bool choose(int item, int state) override {
        DialogItem* i = usable(item);
        if (!i || !stateFits(*i, state)) return false;
        i->state = state;
        return host_.pressItem(dialog_, item);
    }

    bool press(int item) override { return usable(item) && host_.pressItem(dialog_, item); }

    bool doubleClick(int item, int state) override {
        DialogItem* i = usable(item);
        if (!i || !stateFits(*i, state)) return false;
        i->state = state;
        return host_.pressItem(dialog_, item, kEventDoubleClick);
    }

    void cancel() override {
        DialogObject* d = dialog();
        if (!d || !d->shown) return;
        bool keptUp = false;
        host_.deliverDialogEvent(*d, dialog_, kDialogEventClose, keptUp);
        d = dialog();
        if (d && !keptUp) d->shown = false;
    }

private:
    DialogObject* dialog() const {
        const std::uint32_t id = handleId(dialog_);
        if (objectType(dialog_) != kDialogResourceObject || id == 0 || id > host_.dialogs_.size()) return nullptr;
        return host_.dialogs_[id - 1].get();
    }
    DialogItem* find(int item) const { return dialog() ? itemByNumber(*dialog(), item) : nullptr; }
    DialogItem* usable(int item) const {
        DialogItem* i = find(item);
        return i && i->sensitive && dialog()->shown ? i : nullptr;
    }

    HeadlessHost& host_;
    Handle dialog_;
};

void HeadlessHost::deliverDialogEvent(DialogObject& dialog, Handle dialogHandle, int item, bool& keptUp, int modifiers) {
    keptUp = false;
    if (!client_) return;
    const int saved = returnValue_;
    returnValue_ = 0;
    client_->dialogEvent(dialog.number, item, modifiers);
    keptUp = returnValue_ == kReturnDialogStayUp;
    returnValue_ = saved;
}

bool HeadlessHost::pressItem(Handle dialogHandle, int itemNumber, int modifiers) {
    DialogObject* dialog = dialogs_[handleId(dialogHandle) - 1].get();
    const DialogItem* item = itemByNumber(*dialog, itemNumber);
    const bool closes = item->closes && dialog->modal;
    bool keptUp = false;
    deliverDialogEvent(*dialog, dialogHandle, itemNumber, keptUp, modifiers);
    // The plug-in may have closed the dialog during its event.
    dialog = dialogs_[handleId(dialogHandle) - 1].get();
    if (dialog && closes && !keptUp) dialog->shown = false;
    return true;
}

void HeadlessHost::reportDialogText(const DialogObject& dialog) {
    if (!dialog.shown || dialog.modal) return;
    DialogView view{dialog.name, dialog.title, {}};
    for (const DialogItem& item : dialog.items)
        if (showsText(item)) view.lines.push_back(item.text.empty() ? item.label : item.text);
    agent_->modelessDialogChanged(view);
}

Handle HeadlessHost::openDialogResource(const std::string& name) {
    if (name.empty() || name.find_first_of("/\\") != std::string::npos || name.find("..") != std::string::npos)
        return fail(kNoObject);
    auto spec = dialogSpecs_.find(name);
    if (spec == dialogSpecs_.end()) {
        const std::string file = config_.dialogDirectory + "/" + name + ".xml";
        std::error_code error;
        if (!std::filesystem::is_regular_file(file, error)) return fail(kNoObject);
        DialogLoadResult loaded = loadDialogResource(file);
        if (!loaded.ok) {
            agent_->hostMessage(Said::Error, loaded.error);
            return fail(kNoObject);
        }
        if (loaded.spec.name.empty()) loaded.spec.name = name;
        spec = dialogSpecs_.emplace(name, std::move(loaded.spec)).first;
    }
    const std::uint64_t id = dialogs_.size() + 1;
    if (!idFits(id) || !idFits(std::uint64_t(nextItemId_) + spec->second.items.size())) return fail(kNoObject);
    auto dialog = std::make_unique<DialogObject>();
    dialog->name = name;
    dialog->title = spec->second.title;
    dialog->firstItemId = nextItemId_;
    for (const DialogItemSpec& s : spec->second.items)
        dialog->items.push_back(DialogItem{s.number, s.kind, s.label, s.text, s.state, s.choices, s.closes, true});
    nextItemId_ += static_cast<std::uint32_t>(dialog->items.size());
    dialogs_.push_back(std::move(dialog));
    return makeHandle(kDialogResourceObject, static_cast<std::uint32_t>(id));
}

int HeadlessHost::modalDialog(int dialogNumber, Handle dialog) {
    DialogObject* d = liveDialog(dialog);
    if (!d) return -1;
    if (d->shown) return fail(-1);
    d->shown = true;
    d->modal = true;
    d->number = dialogNumber;
    HostDialogUser user(*this, dialog);
    agent_->runModalDialog(user);
    // A dialog the user left up is closed as by its close box.
    if (user.isUp()) user.cancel();
    if (DialogObject* left = dialogs_[handleId(dialog) - 1].get()) left->shown = false;
    return 0;
}

int HeadlessHost::modelessDialog(int dialogNumber, Handle dialog) {
    DialogObject* d = liveDialog(dialog);
    if (!d) return -1;
    d->shown = true;
    d->modal = false;
    d->number = dialogNumber;
    reportDialogText(*d);
    return 0;
}

bool HeadlessHost::closeDialog(Handle dialog) {
    DialogObject* d = liveDialog(dialog);
    if (!d) return false;
    const bool modeless = d->shown && !d->modal;
    const std::string name = d->name;
    dialogs_[handleId(dialog) - 1].reset();
    if (modeless) agent_->modelessDialogClosed(name);
    return true;
}

std::vector<Handle> HeadlessHost::shownDialogs() const {
    std::vector<Handle> shown;
    for (std::size_t i = 0; i < dialogs_.size(); ++i)
        if (dialogs_[i] && dialogs_[i]->shown)
            shown.push_back(makeHandle(kDialogResourceObject, static_cast<std::uint32_t>(i + 1)));
    return shown;
}

Handle HeadlessHost::shownDialog(const std::string& name) const {
    for (std::size_t i = dialogs_.size(); i-- > 0;)
        if (dialogs_[i] && dialogs_[i]->shown && dialogs_[i]->name == name)
            return makeHandle(kDialogResourceObject, static_cast<std::uint32_t>(i + 1));
    return kNoObject;
}

std::unique_ptr<DialogUser> HeadlessHost::dialogUser(Handle dialog) {
    if (!liveDialog(dialog)) return nullptr;
    return std::make_unique<HostDialogUser>(*this, dialog);
}

Handle HeadlessHost::dialogItem(Handle dialog, int itemNumber) {
    DialogObject* d = liveDialog(dialog);
    if (!d) return kNoObject;
    const DialogItem* item = itemByNumber(*d, itemNumber);
    if (!item) return fail(kNoObject);
    return makeHandle(kDialogItemObject, d->firstItemId + static_cast<std::uint32_t>(item - d->items.data()));
}

std::string HeadlessHost::dialogTitle(Handle dialog) {
    DialogObject* d = liveDialog(dialog);
    return d ? d->title : std::string();
}

bool HeadlessHost::setDialogTitle(Handle dialog, const std::string& title) {
    DialogObject* d = liveDialog(dialog);
    if (!d) return false;
    d->title = title;
    reportDialogText(*d);
    return true;
}

std::string HeadlessHost::itemText(Handle dialog, Handle item) {
    DialogItem* i = liveItem(dialog, item);
    return i ? i->text : std::string();
}

bool HeadlessHost::setItemText(Handle dialog, Handle item, const std::string& text) {
    DialogItem* i = liveItem(dialog, item);
    if (!i) return false;
    i->text = text;
    reportDialogText(*liveDialog(dialog));
    return true;
}

int HeadlessHost::itemState(Handle dialog, Handle item) {
    DialogItem* i = liveItem(dialog, item);
    return i ? i->state : 0;
}

bool HeadlessHost::setItemState(Handle dialog, Handle item, int state) {
    DialogItem* i = liveItem(dialog, item);
    if (!i) return false;
    if (!stateFits(*i, state)) return fail(false);
    i->state = state;
    return true;
}

std::vector<std::string> HeadlessHost::itemLabels(Handle dialog, Handle item) {
    DialogItem* i = liveItem(dialog, item);
    return i ? i->labels : std::vector<std::string>();
}

bool HeadlessHost::setItemLabels(Handle dialog, Handle item, const std::vector<std::string>& labels) {
    DialogItem* i = liveItem(dialog, item);
    if (!i) return false;
    i->labels = labels;
    if (listLike(*i) && i->state >= static_cast<int>(labels.size())) i->state = -1;
    return true;
}

std::string HeadlessHost::itemLabel(Handle dialog, Handle item) {
    DialogItem* i = liveItem(dialog, item);
    return i ? i->label : std::string();
}

bool HeadlessHost::setItemLabel(Handle dialog, Handle item, const std::string& label) {
    DialogItem* i = liveItem(dialog, item);
    if (!i) return false;
    i->label = label;
    reportDialogText(*liveDialog(dialog));
    return true;
}

bool HeadlessHost::setItemSensitive(Handle dialog, Handle item, bool sensitive) {
    DialogItem* i = liveItem(dialog, item);
    if (!i) return false;
    i->sensitive = sensitive;
    return true;
}

}  // namespace voka::headless
