#include "app/WorkspaceAddress.hpp"

#include <QUrl>
#include <QUrlQuery>

#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

constexpr std::size_t longestAddress = 2000;
constexpr std::size_t shownCharacters = 60;
constexpr const char* form = "It must be quillo:restore?name=NAME or quillo:restore?id=IDENTIFIER.";

std::unexpected<Error> wrong(const std::string& what) {
    return fail(ErrorKind::invalidArgument, what + " " + form);
}

/// Some programs write the part before the question mark as a host, quillo://restore/.
QString verbOf(const QUrl& url) {
    if (!url.host().isEmpty()) return url.path().isEmpty() || url.path() == "/" ? url.host() : QString();
    return url.path();
}

}  // namespace

bool isWorkspaceAddress(std::string_view text) {
    return text::lowercase(text.substr(0, addressScheme.size())) == addressScheme;
}

std::string addressOfWorkspace(std::string_view name) {
    const QByteArray bytes(name.data(), static_cast<qsizetype>(name.size()));
    return std::string(addressScheme) + "restore?name=" + bytes.toPercentEncoding().toStdString();
}

Result<std::string> workspaceInAddress(std::string_view address) {
    if (address.size() > longestAddress) return wrong("The link is too long.");
    const QUrl url(QString::fromUtf8(address.data(), static_cast<qsizetype>(address.size())));
    if (!isWorkspaceAddress(address) || !url.isValid()) return wrong("The link is none that Quillo reads.");
    if (verbOf(url) != "restore") return wrong("The link asks for something that Quillo does not do.");
    std::string which;
    for (const auto& [key, value] : QUrlQuery(url).queryItems(QUrl::FullyDecoded)) {
        if (key != "name" && key != "id") return wrong("The link has a part that Quillo does not know.");
        if (!which.empty()) return wrong("The link names more than one workspace.");
        which = value.toStdString();
        if (key == "id" && !Uuid::parse(which)) return wrong("The link's id is no identifier.");
    }
    if (which.empty()) return wrong("The link names no workspace.");
    return which;
}

Result<Workspace> workspaceCalled(std::string_view which, std::span<const Workspace> workspaces) {
    const std::optional<Uuid> id = Uuid::parse(which);
    const Workspace* found = nullptr;
    bool several = false;
    for (const Workspace& workspace : workspaces) {
        if (id && workspace.id == *id) return workspace;
        if (!text::equalIgnoringCase(workspace.name, which)) continue;
        several = several || found;
        found = &workspace;
    }
    const std::string shown = "“" + text::clipped(which, shownCharacters) + "”";
    if (several) return fail(ErrorKind::invalidArgument, "Several workspaces are called " + shown + ".");
    if (!found) return fail(ErrorKind::notFound, "No workspace is called " + shown + ".");
    return *found;
}

}  // namespace quillo
