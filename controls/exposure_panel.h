// The panel that calls for the X-ray exposure, to be read from across the room.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

namespace zyr {

// A control of a dialog template: its window class is there while an object lives. The window's
// text is shown large, in bold Arial, as large as the window allows. User-interface thread only.
class ExposurePanel {
 public:
  ExposurePanel();
  ~ExposurePanel();
  ExposurePanel(const ExposurePanel&) = delete;
  ExposurePanel& operator=(const ExposurePanel&) = delete;

  // Takes over a window of the class, which must not outlive this object.
  void Attach(HWND window);
  void SetText(const std::string& text);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace zyr
