// Keys with which commands of a modal dialog are given, wherever in it the keyboard is.
#pragma once

#include <windows.h>

#include <span>

namespace zyr {

// The loop of a modal dialog is the system's own and knows no accelerators. User-interface thread
// only; one object at a time takes part, the newest.
class DialogShortcuts {
 public:
  DialogShortcuts() = default;
  ~DialogShortcuts() { Detach(); }
  DialogShortcuts(const DialogShortcuts&) = delete;
  DialogShortcuts& operator=(const DialogShortcuts&) = delete;

  // From now on the dialog gets WM_COMMAND for these keys.
  void Attach(HWND dialog, std::span<const ACCEL> keys);
  void Detach();

 private:
  static LRESULT CALLBACK Filter(int code, WPARAM wParam, LPARAM lParam);
  bool Translate(MSG& message) const;

  static inline DialogShortcuts* newest_ = nullptr;

  DialogShortcuts* previous_ = nullptr;
  HWND dialog_ = nullptr;
  HACCEL keys_ = nullptr;
  HHOOK hook_ = nullptr;
};

}  // namespace zyr
