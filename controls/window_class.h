// A window class of this module.
#pragma once

#include <windows.h>

#include <memory>

#include "platform/own_module.h"

namespace zyr {

// Registered while the object lives: Windows keeps a DLL's classes after the DLL is gone, with
// window procedures that are no more. Windows of the class must be gone first.
class WindowClass {
 public:
  WindowClass(const char* name, WNDPROC procedure, UINT style = 0);
  ~WindowClass();
  WindowClass(const WindowClass&) = delete;
  WindowClass& operator=(const WindowClass&) = delete;

 private:
  const char* name_;
};

// One object of a class for all who need it at the same time. User-interface thread only.
std::shared_ptr<const WindowClass> SharedWindowClass(const char* name, WNDPROC procedure,
                                                     UINT style = 0);

// The procedure of a class whose windows have a T each in GWLP_USERDATA, for as long as that is to
// get their messages. What a message throws ends there.
template <typename T, LRESULT (T::*kHandle)(UINT message, WPARAM wParam, LPARAM lParam)>
LRESULT CALLBACK GuardedProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const platform::WindowVisit visit;
  auto* const control = reinterpret_cast<T*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (control == nullptr) return DefWindowProcA(window, message, wParam, lParam);
  try {
    return (control->*kHandle)(message, wParam, lParam);
  } catch (...) {  // the system that called this knows no exceptions
    return 0;
  }
}

}  // namespace zyr
