// Markers and cross-references.
#include "host/headless/Handles.h"
#include "host/headless/HeadlessHost.h"

namespace voka::headless {

// --- Markers and cross-references -------------------------------------------------------

Handle HeadlessHost::newMarker(Handle doc, const TextLocation& at) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    Position position;
    if (!resolve(*d, at, position)) return kNoObject;
    if (!idFits(d->markers.size() + 1)) return fail(kNoObject);
    if (!mutationAllowed()) return kNoObject;
    Marker marker;
    marker.flow = position.flow;
    marker.offset = position.offset;
    marker.type = d->markerTypes.empty() ? std::string() : d->markerTypes.front();
    d->addMarker(std::move(marker));
    touch(*d);
    return indexHandle(kMarkerObject, static_cast<Index>(d->markers.size() - 1));
}

bool HeadlessHost::setMarkerType(Handle doc, Handle marker, Handle markerType) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index m = liveMarker(*d, marker);
    const Index t = liveIndex(markerType, kMarkerTypeObject, d->markerTypes.size());
    if (m == kNil || t == kNil || !mutationAllowed()) return false;
    d->markers[m].type = d->markerTypes[t];
    touch(*d);
    return true;
}

bool HeadlessHost::setMarkerText(Handle doc, Handle marker, const std::string& text) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index m = liveMarker(*d, marker);
    if (m == kNil || !mutationAllowed()) return false;
    d->markers[m].text = text;
    touch(*d);
    return true;
}

std::string HeadlessHost::markerText(Handle doc, Handle marker) {
    Document* d = liveDocument(doc);
    if (!d) return {};
    const Index m = liveMarker(*d, marker);
    return m == kNil ? std::string() : d->markers[m].text;
}

Handle HeadlessHost::firstMarker(Handle doc) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    for (std::size_t i = 0; i < d->markers.size(); ++i)
        if (d->markers[i].alive) return indexHandle(kMarkerObject, static_cast<Index>(i));
    return kNoObject;
}

Handle HeadlessHost::nextMarker(Handle doc, Handle marker) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    const Index m = liveMarker(*d, marker);
    if (m == kNil) return kNoObject;
    for (std::size_t i = m + 1; i < d->markers.size(); ++i)
        if (d->markers[i].alive) return indexHandle(kMarkerObject, static_cast<Index>(i));
    return kNoObject;
}

Handle HeadlessHost::firstXRef(Handle doc) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    for (std::size_t i = 0; i < d->xrefs.size(); ++i)
        if (d->xrefs[i].alive) return indexHandle(kXRefObject, static_cast<Index>(i));
    return kNoObject;
}

Handle HeadlessHost::nextXRef(Handle doc, Handle xref) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    const Index x = liveXRef(*d, xref);
    if (x == kNil) return kNoObject;
    for (std::size_t i = x + 1; i < d->xrefs.size(); ++i)
        if (d->xrefs[i].alive) return indexHandle(kXRefObject, static_cast<Index>(i));
    return kNoObject;
}

std::string HeadlessHost::xrefSourceFile(Handle doc, Handle xref) {
    Document* d = liveDocument(doc);
    if (!d) return {};
    const Index x = liveXRef(*d, xref);
    return x == kNil ? std::string() : d->xrefs[x].sourceFile;
}

bool HeadlessHost::setXRefSourceFile(Handle doc, Handle xref, const std::string& path) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index x = liveXRef(*d, xref);
    if (x == kNil || !mutationAllowed()) return false;
    d->xrefs[x].sourceFile = path;
    touch(*d);
    return true;
}

}  // namespace voka::headless
