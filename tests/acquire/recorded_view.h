// A view of the capture dialog that shows nothing and keeps what it was told.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "acquire/capture_dialog/capture_dialog.h"
#include "acquire/capture_dialog/capture_dialog_view.h"
#include "platform/host/messages.h"
#include "tests/acquire/recorded_image_view.h"
#include "tests/acquire/recorded_selection.h"
#include "tests/settings/recorded_pages.h"

namespace zyr::test {

struct StatusLine {
  StatusKind kind;
  std::string title;
  std::string text;
  bool operator==(const StatusLine&) const = default;
};

// What the user does in the modal dialogs of a view. Runs while they stand.
struct ModalAnswers {
  // The row in which a sensor is chosen; null for Cancel.
  std::function<std::optional<size_t>(const std::vector<SensorRow>&)> sensor;
  std::function<std::optional<ThumbnailGridSize>(ThumbnailGridSize present)> grid;
  std::function<void(ImageDialog& dialog)> image;  // ends it; null for Cancel
  std::function<void(OptionsDialog& dialog, RecordedOptionsView& view)> options;
};

// Outlives the view, so that a test can look at it after the dialog is gone.
struct ViewRecord {
  bool canBeMade = true;
  int viewsMade = 0;
  ModalAnswers answers;
  int selectionsShown = 0;
  int optionsShown = 0;
  std::function<void(const StatusLine&)> onStatus;  // after each line and each change of one
  std::weak_ptr<CaptureDialog> dialog;
  platform::Window window = nullptr;
  bool shown = false;
  std::atomic<bool> goes = false;    // the window is being destroyed
  std::map<uint32_t, bool> enabled;  // by command
  std::map<uint32_t, bool> visible;
  std::map<uint32_t, std::string> captions;
  std::map<uint32_t, std::string> tips;
  std::vector<StatusLine> lines;
  CapturePanel panel = CapturePanel::kStatus;
  bool stopIcon = false;
  bool split = false;
  std::string exposureText;
  ThumbnailGridSize grid;
  int refreshes = 0;
  std::optional<uint32_t> returnTimer;  // milliseconds, while it runs

  bool windowAlive() const { return platform::IsWindowAlive(window); }
  // What the user and the system do; nothing happens once the window is gone.
  void Press(uint32_t command) {
    if (const auto target = Target()) target->OnCommand(command);
  }
  void FireTimer() {
    const auto target = Target();
    if (target != nullptr && returnTimer) target->OnReturnTimer();
  }

 private:
  std::shared_ptr<CaptureDialog> Target() const { return windowAlive() ? dialog.lock() : nullptr; }
};

class RecordedView : public CaptureDialogView {
 public:
  explicit RecordedView(std::shared_ptr<ViewRecord> record) : record_(std::move(record)) {}
  ~RecordedView() override { Close(); }

  bool Create(CaptureDialog* dialog, platform::Window) override {
    if (!record_->canBeMade) return false;
    Forget();
    const auto record = record_;
    const auto target = dialog->weak_from_this();
    window_.emplace(
        [record, target](uint32_t message, uintptr_t wParam, intptr_t lParam) -> intptr_t {
          const auto held = target.lock();
          if (message == platform::host::kDestroyMessage) record->goes = true;
          if (held == nullptr) return 0;
          if (message != platform::host::kDestroyMessage) {
            return held->OnMessage(message, wParam, lParam);
          }
          held->OnWindowGone();
          return 0;
        });
    ++record_->viewsMade;
    record_->dialog = target;
    record_->window = window_->window();
    return true;
  }
  platform::Window window() const override { return window_ ? window_->window() : nullptr; }
  void Show() override { record_->shown = true; }
  void Close() override { platform::DestroyWindowOf(window()); }

  void SetButtonEnabled(uint32_t command, bool enabled) override {
    record_->enabled[command] = enabled;
  }
  void SetButtonVisible(uint32_t command, bool visible) override {
    record_->visible[command] = visible;
  }
  void SetButtonCaption(uint32_t command, const std::string& caption) override {
    record_->captions[command] = caption;
  }
  void SetButtonTip(uint32_t command, const std::string& tip) override {
    record_->tips[command] = tip;
  }

  void SetStopIcon(bool stop) override { record_->stopIcon = stop; }
  void SetSplitLayout(bool split) override { record_->split = split; }
  void ShowPanel(CapturePanel panel) override { record_->panel = panel; }
  void SetExposureText(const std::string& text) override { record_->exposureText = text; }

  void ClearStatus() override { record_->lines.clear(); }
  int32_t AddStatus(StatusKind kind, const std::string& title, const std::string& text) override {
    record_->lines.push_back({kind, title, text});
    Tell(record_->lines.size() - 1);
    return static_cast<int32_t>(record_->lines.size()) - 1;
  }
  void SetStatus(int32_t line, const std::string& title, const std::string& text) override {
    const auto index = static_cast<size_t>(line);
    if (index >= record_->lines.size()) return;
    record_->lines[index].title = title;
    record_->lines[index].text = text;
    Tell(index);
  }
  void SetLastStatusText(const std::string& text) override {
    if (record_->lines.empty()) return;
    record_->lines.back().text = text;
    Tell(record_->lines.size() - 1);
  }

  void SetThumbnailGrid(ThumbnailGridSize size) override { record_->grid = size; }
  void RefreshThumbnails() override { ++record_->refreshes; }

  std::unique_ptr<SensorSelectionView> MakeSensorSelectionView() override {
    auto view = std::make_unique<RecordedSelection>();
    view->user = [record = record_, seen = view.get()](SensorSelection& selection) {
      ++record->selectionsShown;
      seen->selected = record->answers.sensor ? record->answers.sensor(seen->rows) : std::nullopt;
      if (seen->selected) selection.OnOK();
    };
    return view;
  }
  std::unique_ptr<ImageDialogView> MakeImageDialogView() override {
    auto view = std::make_unique<RecordedImageView>();
    view->user = record_->answers.image;
    return view;
  }
  std::unique_ptr<OptionsDialogView> MakeOptionsDialogView() override {
    auto view = std::make_unique<RecordedOptionsView>();
    view->user = [record = record_, seen = view.get()](OptionsDialog& dialog) {
      ++record->optionsShown;
      if (record->answers.options) record->answers.options(dialog, *seen);
    };
    return view;
  }
  std::unique_ptr<DirectorySelectionView> MakeDirectorySelectionView() override { return nullptr; }
  std::optional<ThumbnailGridSize> AskForThumbnailGrid(ThumbnailGridSize present) override {
    return record_->answers.grid ? record_->answers.grid(present) : std::nullopt;
  }

  void StartReturnTimer(uint32_t milliseconds) override { record_->returnTimer = milliseconds; }
  void StopReturnTimer() override { record_->returnTimer.reset(); }

 private:
  // What a view before this one has left.
  void Forget() {
    record_->shown = record_->goes = record_->stopIcon = record_->split = false;
    record_->enabled.clear();
    record_->visible.clear();
    record_->captions.clear();
    record_->tips.clear();
    record_->lines.clear();
    record_->panel = CapturePanel::kStatus;
    record_->returnTimer.reset();
  }
  void Tell(size_t line) const {
    if (record_->onStatus) record_->onStatus(StatusLine(record_->lines[line]));
  }

  std::shared_ptr<ViewRecord> record_;
  std::optional<platform::host::FakeWindow> window_;
};

inline CaptureDialogViewFactory RecordIn(std::shared_ptr<ViewRecord> record) {
  return [record] { return std::make_unique<RecordedView>(record); };
}

}  // namespace zyr::test
