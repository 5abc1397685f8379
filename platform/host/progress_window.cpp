#include "platform/host/progress_window.h"

#include <algorithm>
#include <utility>

#include "platform/progress_window.h"

namespace zyr::platform {
namespace {

using host::ProgressRecord;

struct State {
  std::vector<ProgressRecord> records;
  int generation = 0;  // of the records: a window older than a reset has none
  std::function<void(double)> action;
};

State& TheState() {
  static State state;
  return state;
}

}  // namespace

struct ProgressWindow::Impl {
  size_t index;
  int generation;

  ProgressRecord* record() const {
    return generation == TheState().generation ? &TheState().records.at(index) : nullptr;
  }
};

ProgressWindow::ProgressWindow(const std::string& text)
    : impl_(new Impl{TheState().records.size(), TheState().generation}) {
  TheState().records.push_back({text, {}, true});
}

ProgressWindow::~ProgressWindow() {
  if (ProgressRecord* record = impl_->record()) record->alive = false;
}

void ProgressWindow::Advance(double fraction) {
  if (ProgressRecord* record = impl_->record()) record->fractions.push_back(fraction);
  if (const auto action = TheState().action) action(fraction);
}

namespace host {

const std::vector<ProgressRecord>& ProgressWindows() { return TheState().records; }

int LiveProgressWindows() {
  const auto& records = ProgressWindows();
  return static_cast<int>(std::count_if(records.begin(), records.end(),
                                        [](const auto& record) { return record.alive; }));
}

void OnProgress(std::function<void(double fraction)> action) {
  TheState().action = std::move(action);
}

void ResetProgressWindows() { TheState() = {{}, TheState().generation + 1, {}}; }

}  // namespace host
}  // namespace zyr::platform
