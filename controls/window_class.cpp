#include "controls/window_class.h"

#include <map>
#include <string>

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

std::shared_ptr<const WindowClass> SharedWindowClass(const char* name, WNDPROC procedure,
                                                     UINT style) {
  static std::map<std::string, std::weak_ptr<const WindowClass>> classes;
  std::weak_ptr<const WindowClass>& shared = classes[name];
  std::shared_ptr<const WindowClass> used = shared.lock();
  if (used == nullptr) {
    used = std::make_shared<const WindowClass>(name, procedure, style);
    shared = used;
  }
  return used;
}

}  // namespace zyr
