#include "controls/window_class.h"

#include "platform/resources.h"

namespace zyr {

WindowClass::WindowClass(const char* name, WNDPROC procedure, UINT style) : name_(name) {
  WNDCLASSA description = {};
  description.style = style;
  description.lpfnWndProc = procedure;
  description.hInstance = static_cast<HINSTANCE>(platform::OwnResources());
  description.hCursor = LoadCursor(nullptr, IDC_ARROW);
  description.lpszClassName = name;
  RegisterClassA(&description);
}

WindowClass::~WindowClass() {
  UnregisterClassA(name_, static_cast<HINSTANCE>(platform::OwnResources()));
}

}  // namespace zyr
