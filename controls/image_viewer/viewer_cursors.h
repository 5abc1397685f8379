// The mouse pointers of the viewer's tools.
#pragma once

#include <windows.h>

#include <map>
#include <memory>

#include "imaging/viewer/image_viewer_view.h"

namespace zyr {

// Draws each when it is first wanted, at the screen's scale. The one that is shown when this object
// goes gives way to the arrow. User-interface thread only.
class ViewerCursors {
 public:
  ViewerCursors() = default;
  ~ViewerCursors();
  ViewerCursors(const ViewerCursors&) = delete;
  ViewerCursors& operator=(const ViewerCursors&) = delete;

  // The system's arrow if it cannot be made; null for the one that hides the pointer.
  HCURSOR Get(ViewerCursor cursor);

 private:
  struct Deleter {
    using pointer = HICON;
    void operator()(HICON icon) const { DestroyIcon(icon); }
  };
  std::map<ViewerCursor, std::unique_ptr<HICON, Deleter>> made_;
};

}  // namespace zyr
