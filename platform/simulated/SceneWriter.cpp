#include "WindowEngine/support/JsonWriter.hpp"
#include "platform/simulated/SceneNames.hpp"

namespace quillo::simulated {
namespace {

void writeRect(JsonWriter& writer, std::string_view key, const Rect& rect) {
    writer.key(key);
    writer.beginArray();
    for (const double part : {rect.x, rect.y, rect.width, rect.height}) writer.number(part);
    writer.endArray();
}

void writeSize(JsonWriter& writer, std::string_view key, const Size& size) {
    writer.key(key);
    writer.beginArray();
    writer.number(size.width);
    writer.number(size.height);
    writer.endArray();
}

void writeText(JsonWriter& writer, std::string_view key, std::string_view text) {
    if (text.empty()) return;
    writer.key(key);
    writer.text(text);
}

void writeFlag(JsonWriter& writer, std::string_view key, bool value, bool usual) {
    if (value == usual) return;
    writer.key(key);
    writer.boolean(value);
}

void writeNumber(JsonWriter& writer, std::string_view key, double value, double usual) {
    if (value == usual) return;
    writer.key(key);
    writer.number(value);
}

void writeTexts(JsonWriter& writer, std::string_view key, const std::vector<std::string>& texts) {
    if (texts.empty()) return;
    writer.key(key);
    writer.beginArray();
    for (const std::string& text : texts) writer.text(text);
    writer.endArray();
}

void write(JsonWriter& writer, const SceneDisplay& display) {
    writer.beginObject();
    writeText(writer, "id", display.id);
    writeRect(writer, "frame", display.frame);
    if (display.visibleFrame != display.frame) writeRect(writer, "visibleFrame", display.visibleFrame);
    writeNumber(writer, "scale", display.scale, SceneDisplay{}.scale);
    writeNumber(writer, "desktops", static_cast<double>(display.desktops), 1);
    writeNumber(writer, "shownDesktop", static_cast<double>(display.shownDesktop), 0);
    writer.endObject();
}

void write(JsonWriter& writer, const SceneWindow& window) {
    const SceneWindow usual;
    writer.beginObject();
    writeText(writer, "title", window.title.value_or(""));
    if (window.subrole != usual.subrole) writeText(writer, "subrole", window.subrole);
    writeText(writer, "document", window.document.value_or(""));
    writeRect(writer, "frame", window.frame);
    writeFlag(writer, "minimized", window.minimized, usual.minimized);
    writeFlag(writer, "fullscreen", window.fullscreen, usual.fullscreen);
    writeText(writer, "display", window.display);
    writeNumber(writer, "desktop", static_cast<double>(window.desktop), 0);
    writeFlag(writer, "listed", window.listed, usual.listed);
    if (window.minimumSize != usual.minimumSize) writeSize(writer, "minimumSize", window.minimumSize);
    if (window.maximumSize) writeSize(writer, "maximumSize", *window.maximumSize);
    if (window.cell != usual.cell) writeSize(writer, "cell", window.cell);
    writeNumber(writer, "opensAfter", window.opensAfter, 0);
    writeNumber(writer, "closesAfter", window.closesAfter, 0);
    writeText(writer, "tabGroup", window.tabGroup);
    writeFlag(writer, "unsaved", window.unsaved, usual.unsaved);
    writeTexts(writer, "tabs", window.tabs);
    writeFlag(writer, "private", window.privateBrowsing, usual.privateBrowsing);
    writeFlag(writer, "toolbar", window.toolbar, usual.toolbar);
    writeNumber(writer, "addressFieldDepth", static_cast<double>(window.addressFieldDepth),
                static_cast<double>(usual.addressFieldDepth));
    writer.endObject();
}

void write(JsonWriter& writer, const SceneApplication& application);
void write(JsonWriter& writer, const Fault& fault);

template <class T>
void writeList(JsonWriter& writer, std::string_view key, const std::vector<T>& values) {
    if (values.empty()) return;
    writer.key(key);
    writer.beginArray();
    for (const T& value : values) write(writer, value);
    writer.endArray();
}

void write(JsonWriter& writer, const SceneApplication& application) {
    writer.beginObject();
    writeText(writer, "identifier", application.identifier);
    writeText(writer, "name", application.name);
    writeText(writer, "policy", nameOf(application.policy, NameTable<ActivationPolicy>(policyNames)));
    writeFlag(writer, "installed", application.installed, true);
    writeFlag(writer, "running", application.running, true);
    writeFlag(writer, "hidden", application.hidden, false);
    writeNumber(writer, "launchSeconds", application.launchSeconds, SceneApplication{}.launchSeconds);
    writeList(writer, "windows", application.windows);
    writeList(writer, "reopens", application.reopens);
    writeNumber(writer, "documentSeconds", application.documentSeconds, SceneApplication{}.documentSeconds);
    if (application.language != "en") writeText(writer, "language", application.language);
    writer.endObject();
}

void write(JsonWriter& writer, const Fault& fault) {
    writer.beginObject();
    writeText(writer, "kind", nameOf(fault.kind, NameTable<FaultKind>(faultNames)));
    writeText(writer, "application", fault.application);
    writeText(writer, "title", fault.title);
    writeText(writer, "value", fault.value);
    writeNumber(writer, "after", fault.after, 0);
    writeNumber(writer, "seconds", fault.seconds, 0);
    writeFlag(writer, "onWrite", fault.onWrite, false);
    writeFlag(writer, "onScript", fault.onScript, false);
    writer.endObject();
}

}  // namespace

std::string writeScene(const Scene& scene) {
    JsonWriter writer;
    writer.beginObject();
    writeFlag(writer, "trusted", scene.trusted, true);
    writeList(writer, "displays", scene.displays);
    writeList(writer, "applications", scene.applications);
    writeList(writer, "faults", scene.faults);
    writeTexts(writer, "missingFolders", scene.missingFolders);
    writer.endObject();
    return *std::move(writer).finish();  // every number of a scene came from a document and is finite
}

}  // namespace quillo::simulated
