// A window class of this module.
#pragma once

#include <windows.h>

#include <memory>

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

}  // namespace zyr
