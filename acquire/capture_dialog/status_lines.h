// The lines of the status panel, as the dialog and the capture thread write them.
#pragma once

#include <cstdint>
#include <string>

#include "acquire/capture_dialog/capture_dialog_view.h"
#include "acquire/iface/status_sink.h"

namespace zyr {

// User-interface thread only.
class StatusLines {
 public:
  explicit StatusLines(CaptureDialogView& view) : view_(view) {}

  void Clear();
  // Both go to the log too. The number of the line.
  int32_t Add(StatusKind kind, const std::string& title, const std::string& text);
  // One line more in the text of the last line.
  void AddDetail(const std::string& text);
  void Rewrite(int32_t line, const std::string& title, const std::string& text);

 private:
  CaptureDialogView& view_;
  int32_t lastLine_ = kNoStatusLine;
  std::string lastText_;
};

}  // namespace zyr
