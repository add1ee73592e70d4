#include "app/gui/LayoutsPresenter.hpp"

#include <algorithm>

#include "app/gui/Words.hpp"

namespace quillo {
namespace {

constexpr std::size_t mostSizes = 6;  // of one line

QString textOf(const std::vector<DisplaySnapshot>& displays) {
    QStringList sizes;
    for (const DisplaySnapshot& display : displays) {
        if (static_cast<std::size_t>(sizes.size()) == mostSizes) {
            sizes << "…";
            break;
        }
        sizes << QStringLiteral("%1 × %2").arg(display.frame.width).arg(display.frame.height);
    }
    return counted(static_cast<std::int64_t>(displays.size()), "display") + ": " + sizes.join(", ");
}

}  // namespace

LayoutsPresenter::LayoutsPresenter(AppModel& model, Ui& ui, QObject* parent)
    : QObject(parent), model_(model), ui_(ui) {
    connect(&ui, &Ui::pageChanged, this, &LayoutsPresenter::changed);
    connect(&model, &AppModel::workspacesChanged, this, &LayoutsPresenter::changed);
    connect(&model, &AppModel::settingsChanged, this, &LayoutsPresenter::changed);
    connect(&model, &AppModel::busyChanged, this, &LayoutsPresenter::busyChanged);
}

const Workspace* LayoutsPresenter::shown() const {
    const std::optional<Uuid> id = Uuid::parse(ui_.detailId().toStdString());
    const auto& all = model_.workspaces();
    const auto found = id ? std::ranges::find(all, *id, &Workspace::id) : all.end();
    return found == all.end() ? nullptr : &*found;
}

QStringList LayoutsPresenter::sets() const {
    const Workspace* workspace = shown();
    if (!workspace) return {};
    QStringList texts{textOf(workspace->snapshot.displays)};
    for (const DisplayLayout& layout : workspace->snapshot.layouts.value_or(std::vector<DisplayLayout>()))
        texts << textOf(layout.displays);
    return texts;
}

bool LayoutsPresenter::byItself() const {
    const Workspace* workspace = shown();
    return workspace && model_.arrangesByItself(workspace->id);
}

void LayoutsPresenter::setByItself(bool itself) {
    if (const Workspace* workspace = shown()) model_.setArrangesByItself(workspace->id, itself);
}

void LayoutsPresenter::setOffered(bool offered) {
    AppSettings settings = model_.settings();
    settings.offersLayouts = offered;
    model_.setSettings(std::move(settings));
}

void LayoutsPresenter::keep() {
    if (const Workspace* workspace = shown()) model_.keepLayout(*workspace);
}

void LayoutsPresenter::remove(int place) {
    const Workspace* workspace = shown();
    if (!workspace || !workspace->snapshot.layouts || place < 1 ||
        place > std::ssize(*workspace->snapshot.layouts))
        return;
    const DisplayLayout layout = (*workspace->snapshot.layouts)[static_cast<std::size_t>(place - 1)];
    model_.removeLayout(*workspace, layout);
}

}  // namespace quillo
