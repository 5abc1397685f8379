#include "controls/image_viewer/image_viewer_window.h"

#include <utility>

#include "controls/image_viewer/viewer_window.h"

namespace zyr {

struct ImageViewerWindow::Impl {
  std::shared_ptr<ViewerWindow> window = std::make_shared<ViewerWindow>();

  ~Impl() { window->Detach(); }
};

ImageViewerWindow::ImageViewerWindow() : impl_(std::make_unique<Impl>()) {}
ImageViewerWindow::~ImageViewerWindow() = default;

void ImageViewerWindow::Attach(HWND window) { impl_->window->Attach(window, nullptr); }

void ImageViewerWindow::AttachFullScreen(HWND window, std::function<void()> leave) {
  impl_->window->Attach(window, std::move(leave));
}

CKIPImageViewerControl& ImageViewerWindow::viewer() { return impl_->window->viewer(); }

}  // namespace zyr
