// The window that a data source gets as its parent, and the message loop.
#pragma once

#include <cstdint>

#include "tools/zyracquire/win32/manager.h"

namespace zyr {

class AppWindow {
 public:
  AppWindow();
  ~AppWindow();
  AppWindow(const AppWindow&) = delete;
  AppWindow& operator=(const AppWindow&) = delete;

  // Null if this session can have no windows.
  void* handle() const { return window_; }

  // Runs the message loop and offers each message to the source, until that answers with something
  // to do or `timeoutSeconds` are over; 0: no limit.
  SourceEvent Wait(Manager* manager, TW_IDENTITY* source, Watchdog* watchdog,
                   uint32_t timeoutSeconds);

 private:
  void* window_ = nullptr;
};

}  // namespace zyr
