// The small window that tells of a long operation.
#pragma once

#include <memory>
#include <string>

namespace zyr::platform {

// Stands from construction to destruction; becomes visible when the operation lasts long enough to
// be noticed. Handles no window messages, so the caller is not re-entered. User-interface thread
// only.
class ProgressWindow {
 public:
  explicit ProgressWindow(const std::string& text);
  ~ProgressWindow();
  ProgressWindow(const ProgressWindow&) = delete;
  ProgressWindow& operator=(const ProgressWindow&) = delete;

  // 0 to 1.
  void Advance(double fraction);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace zyr::platform
