// Common controls in their current look, whatever the program that loaded this module has chosen
// for itself.
#pragma once

#include <windows.h>

namespace zyr {

// Windows that are made while this object lives get the common controls of the module's own
// manifest. To be destroyed in reverse order of construction, on the same thread.
class ActivationContext {
 public:
  ActivationContext();
  ~ActivationContext();
  ActivationContext(const ActivationContext&) = delete;
  ActivationContext& operator=(const ActivationContext&) = delete;

 private:
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

}  // namespace zyr
