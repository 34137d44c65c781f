// A headless host that fails one chosen mutating call, for tests that make
// every change the plug-in asks for fail in turn and look at what is left.
//
// Mutating calls are those that change a document, a book, an element, its
// attributes, text properties, conditions, colours, formats, markers, menus
// or a file: the list of VOKA_FAILING lines below, and nothing else. Reads,
// opening and closing, the clipboard copy, notification requests, dialogs,
// the user and calls that cannot tell failure (scrollTo, redisplay) are
// passed through uncounted.
//
// The chosen call fails as the host tells failure (0, false, or -1 for the
// calls that return a status) with error number -1, and changes nothing;
// every call after it succeeds again. Calls the headless host makes to
// itself while serving one are not counted.
#pragma once

#include "host/headless/HeadlessHost.h"

#include <string>

namespace voka::test {

class FailingHost : public headless::HeadlessHost {
public:
    using HeadlessHost::HeadlessHost;

    // Restarts the count: the nth mutating call from now fails (1 = the next
    // one); 0 fails none, so a clean run tells how many calls there are.
    void failAt(int nth);
    // Mutating calls since the last failAt.
    int mutatingCalls() const { return calls_; }
    // The name of the call that was made to fail; "" while none has.
    const std::string& failedCall() const { return failed_; }

// Each override either fails or hands the call to the headless host.
#define VOKA_FAILING(Result, name, failure, params, args) \
    Result name params override { return mutate<Result>(#name, failure, [&] { return HeadlessHost::name args; }); }

    VOKA_FAILING(bool, setActiveDocument, false, (Handle doc), (doc))
    VOKA_FAILING(bool, setActiveBook, false, (Handle book), (book))
    VOKA_FAILING(Handle, simpleSave, kNoObject, (Handle d, const std::string& path, bool interactive),
                 (d, path, interactive))
    VOKA_FAILING(bool, setVisible, false, (Handle d, bool onScreen), (d, onScreen))
    VOKA_FAILING(bool, setIntProperty, false, (Handle doc, Handle object, int property, int value),
                 (doc, object, property, value))
    VOKA_FAILING(bool, setStringProperty, false, (Handle doc, Handle object, int property, const std::string& value),
                 (doc, object, property, value))
    VOKA_FAILING(bool, setComponentPath, false, (Handle book, Handle component, const std::string& path),
                 (book, component, path))
    VOKA_FAILING(Handle, newComponent, kNoObject, (Handle book, Handle after, const std::string& path),
                 (book, after, path))
    VOKA_FAILING(int, updateBook, -1, (Handle book), (book))

    VOKA_FAILING(bool, setElementDefinition, false, (Handle doc, Handle element, Handle definition),
                 (doc, element, definition))
    VOKA_FAILING(bool, setAttributes, false, (Handle doc, Handle element, const Attributes& attributes),
                 (doc, element, attributes))
    VOKA_FAILING(Handle, newElement, kNoObject, (Handle doc, Handle definition, const ElementLocation& where),
                 (doc, definition, where))
    VOKA_FAILING(bool, deleteObject, false, (Handle doc, Handle object), (doc, object))
    VOKA_FAILING(bool, addText, false, (Handle doc, const TextLocation& where, const std::string& text),
                 (doc, where, text))
    VOKA_FAILING(bool, setElementSelection, false, (Handle doc, const ElementRange& range), (doc, range))
    VOKA_FAILING(bool, setTextSelection, false, (Handle doc, const TextRange& range), (doc, range))
    VOKA_FAILING(bool, clearSelection, false, (Handle doc), (doc))
    VOKA_FAILING(bool, paste, false, (Handle doc), (doc))
    VOKA_FAILING(int, importElementDefinitions, -1, (Handle target, Handle source, int flags),
                 (target, source, flags))
    VOKA_FAILING(int, importFormats, -1, (Handle target, Handle source, int flags), (target, source, flags))

    VOKA_FAILING(bool, setTextProperty, false, (Handle doc, const TextRange& range, TextProperty property, int value),
                 (doc, range, property, value))
    VOKA_FAILING(Handle, newNamedObject, kNoObject, (Handle doc, ObjectType type, const std::string& name),
                 (doc, type, name))
    VOKA_FAILING(bool, setConditionShown, false, (Handle doc, Handle condition, bool shown), (doc, condition, shown))
    VOKA_FAILING(bool, setTextConditions, false,
                 (Handle doc, const TextRange& range, const std::vector<Handle>& conditions), (doc, range, conditions))
    VOKA_FAILING(bool, setRowConditions, false, (Handle doc, Handle row, const std::vector<Handle>& conditions),
                 (doc, row, conditions))
    VOKA_FAILING(bool, deleteRows, false, (Handle doc, Handle table, Handle first, int count),
                 (doc, table, first, count))
    VOKA_FAILING(Handle, newMarker, kNoObject, (Handle doc, const TextLocation& at), (doc, at))
    VOKA_FAILING(bool, setMarkerType, false, (Handle doc, Handle marker, Handle type), (doc, marker, type))
    VOKA_FAILING(bool, setMarkerText, false, (Handle doc, Handle marker, const std::string& text), (doc, marker, text))
    VOKA_FAILING(bool, setXRefSourceFile, false, (Handle doc, Handle xref, const std::string& path), (doc, xref, path))

    VOKA_FAILING(Handle, defineCommand, kNoObject,
                 (int number, const std::string& tag, const std::string& label, const std::string& shortcut),
                 (number, tag, label, shortcut))
    VOKA_FAILING(Handle, defineMenu, kNoObject, (const std::string& tag, const std::string& label), (tag, label))
    VOKA_FAILING(bool, addCommandToMenu, false, (Handle menu, Handle item), (menu, item))
    VOKA_FAILING(bool, addMenuToMenu, false, (Handle menu, Handle submenu), (menu, submenu))

    VOKA_FAILING(bool, deleteFile, false, (const std::string& path), (path))

#undef VOKA_FAILING

private:
    // True when this call is the one to fail; counts it either way.
    bool failsNow(const char* name);

    template <class Result, class Call>
    Result mutate(const char* name, Result failure, Call&& call) {
        if (serving_) return call();
        if (failsNow(name)) return fail(failure);
        serving_ = true;
        Result result = call();
        serving_ = false;
        return result;
    }

    int calls_ = 0;
    int failAt_ = 0;
    bool serving_ = false;
    std::string failed_;
};

}  // namespace voka::test
