// A simulated desktop, what was saved of it, and restores of that.
#pragma once
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "WindowEngine/capture/UndoCapture.hpp"
#include "WindowEngine/records/UndoCoding.hpp"
#include "WindowEngine/restore/LateWindows.hpp"
#include "WindowEngine/restore/RestorePreview.hpp"
#include "WindowEngine/restore/Undo.hpp"
#include "tests/LogWords.hpp"
#include "tests/journeys/JourneyLayer.hpp"

namespace quillo {

class Journey {
  public:
    inline static const std::set<std::string> integrations{"finder", "chromium", "safari"};

    Journey(simulated::Scene scene, std::uint64_t seed)
        : scene_(std::move(scene)),
          desktop_(SimulatedDesktop::create(simulated::writeScene(scene_), "scene", {seed, {}}).value()) {
        settle();  // late windows are there
    }

    Journey(const Journey&) = delete;
    Journey& operator=(const Journey&) = delete;
    ~Journey() {
        for (const std::string& line : desktop_->logLines()) expectOnlyKnownSentences(line);
    }

    WorkspaceSnapshot capture() {
        return run(Capture::snapshot(access_, {.enabledAdapters = integrations, .recoverHidden = true}))
            .value();
    }

    void save() { saved_ = Workspace::create(Uuid{}, "Journey", "", "teal", capture(), Instant{}); }

    RestoreReport restore() {
        return run(Restore::run(access_, saved_, {.enabledAdapters = integrations}, {})).value();
    }

    /// The same with a record of the desktop before, as it is in its file.
    RestoreReport restoreUndoably(CleanSlateMode mode) {
        const Capture::Options capturing{.enabledAdapters = integrations};
        UndoRecord record = run(Capture::undoRecord(access_, capturing, saved_, mode)).value();
        const Restore::KeepRecord keep = [this](const UndoRecord& kept) {
            undo_ = UndoCoding::decode(UndoCoding::encode(kept).value()).value();
        };
        const Restore::Options options{.cleanSlate = mode, .enabledAdapters = integrations};
        return run(Restore::runUndoably(access_, saved_, options, {}, std::move(record), keep)).value();
    }
    /// As restoreUndoably, without a record; `late` is told what is missing.
    RestoreReport restoreExpecting(Restore::LateWindows& late) {
        return run(Restore::run(access_, saved_, {.late = &late}, {})).value();
    }
    RestoreReport undo() {
        return run(Restore::undo(access_, undo_, {.enabledAdapters = integrations}, {})).value();
    }
    const UndoRecord& undoRecord() const { return undo_; }

    /// Empty when the task did not end within ten minutes of the desktop's time.
    template <class T>
    std::optional<T> run(Task<T> task) {
        Job<T> job(desktop_->executor(), std::move(task));
        const bool ended =
            desktop_->executor().runUntil([&] { return job.done(); }, std::chrono::minutes(10));
        return ended ? std::optional(job.result()) : std::nullopt;
    }

    /// Its time counts from now on.
    void lay(simulated::Fault fault) {
        const std::chrono::duration<double> now = desktop_->executor().now().time_since_epoch();
        fault.after += now.count();
        world().add(std::move(fault));
    }
    void settle() { desktop_->executor().runFor(std::chrono::seconds(2)); }

    /// What a restore would do now.
    RestorePreview preview() {
        return run(Restore::preview(access_, saved_.snapshot, {.enabledAdapters = integrations})).value();
    }
    Consequences consequences(const RestorePreview& preview) {
        return Restore::consequences(access_.platform.applications, preview, saved_, CleanSlateMode::keep);
    }

    DesktopAccess& access() { return access_; }
    VirtualExecutor& executor() { return desktop_->executor(); }
    simulated::World& world() { return desktop_->world(); }
    /// What the world has of a display that the engine knows by this identifier.
    const simulated::Display* display(const std::string& id) {
        return world().display(layer_->sceneDisplay(id));
    }
    const simulated::Scene& scene() const { return scene_; }
    const Workspace& saved() const { return saved_; }
    std::string state() { return desktop_->sceneJson(); }

  private:
    simulated::Scene scene_;
    std::unique_ptr<SimulatedDesktop> desktop_;
    std::unique_ptr<JourneyLayer> layer_ = makeJourneyLayer(*desktop_);
    WindowHandleCache handles_;
    DesktopAccess access_{layer_->platform(), handles_};
    Workspace saved_;
    UndoRecord undo_;
};

}  // namespace quillo
