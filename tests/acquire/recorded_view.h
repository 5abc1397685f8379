// A view of the capture dialog that shows nothing and keeps what it was told.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "acquire/capture_dialog/capture_dialog.h"
#include "acquire/capture_dialog/capture_dialog_view.h"
#include "platform/host/messages.h"

namespace zyr::test {

struct StatusLine {
  StatusKind kind;
  std::string title;
  std::string text;
  bool operator==(const StatusLine&) const = default;
};

// Outlives the view, so that a test can look at it after the dialog is gone.
struct ViewRecord {
  bool canBeMade = true;
  int viewsMade = 0;
  std::weak_ptr<CaptureDialog> dialog;
  platform::Window window = nullptr;
  bool shown = false;
  std::map<uint32_t, bool> enabled;  // by command
  std::vector<StatusLine> lines;
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

  bool Create(CaptureDialog* dialog, platform::Window) override {
    if (!record_->canBeMade) return false;
    const auto record = record_;
    window_.emplace([record](uint32_t message, uintptr_t, intptr_t) -> intptr_t {
      const auto target = record->dialog.lock();
      if (target != nullptr && message == CaptureDialog::kMessageRefreshThumbnails) {
        target->OnRefreshThumbnails();
      }
      return 0;
    });
    ++record_->viewsMade;
    record_->dialog = dialog->weak_from_this();
    record_->window = window_->window();
    record_->shown = false;
    record_->enabled.clear();
    record_->lines.clear();
    record_->returnTimer.reset();
    return true;
  }
  platform::Window window() const override { return window_ ? window_->window() : nullptr; }
  void Show() override { record_->shown = true; }
  void Close() override { platform::DestroyWindowOf(window()); }

  void SetButtonEnabled(uint32_t command, bool enabled) override {
    record_->enabled[command] = enabled;
  }
  void ClearStatus() override { record_->lines.clear(); }
  void AddStatus(StatusKind kind, const std::string& title, const std::string& text) override {
    record_->lines.push_back({kind, title, text});
  }
  void SetLastStatusText(const std::string& text) override {
    if (!record_->lines.empty()) record_->lines.back().text = text;
  }
  void StartReturnTimer(uint32_t milliseconds) override { record_->returnTimer = milliseconds; }
  void StopReturnTimer() override { record_->returnTimer.reset(); }

 private:
  std::shared_ptr<ViewRecord> record_;
  std::optional<platform::host::FakeWindow> window_;
};

inline CaptureDialogViewFactory RecordIn(std::shared_ptr<ViewRecord> record) {
  return [record] { return std::make_unique<RecordedView>(record); };
}

}  // namespace zyr::test
