// The pointer that shows that the program is busy.
#pragma once

namespace zyr::platform {

// Shown from construction to destruction, or until something else, a message box for one, sets the
// pointer. One thread, the one that has the windows; may be nested.
class WaitCursor {
 public:
  WaitCursor();
  ~WaitCursor();
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  void* previous_;
};

}  // namespace zyr::platform
