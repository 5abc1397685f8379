// A window for the image viewer that shows nothing but behaves like one: scroll bars that take room
// come and go, scrolling moves what is painted, and only what was invalidated is painted again.
#pragma once

#include <algorithm>
#include <vector>

#include "imaging/viewer/image_viewer_control.h"
#include "platform/global_memory.h"

namespace zyr {

class RecordedViewerView : public ImageViewerView {
 public:
  static constexpr int32_t kBar = 5;
  static constexpr uint32_t kBackground = 0x404040;

  ViewSize ClientSize() const override { return client_; }
  ViewPoint ClientOrigin() const override { return {100, 200}; }
  void SetScroll(ViewSize content, ViewPoint position) override {
    MovePainted(position.x - scroll.x, position.y - scroll.y);
    this->content = content;
    scroll = position;
    PlaceBars();
  }
  void Invalidate() override { std::fill(painted_.begin(), painted_.end(), false); }
  void InvalidateRect(const ViewRect& r) override {
    for (int32_t y = std::max(r.top, 0); y < std::min(r.bottom, client_.height); ++y) {
      for (int32_t x = std::max(r.left, 0); x < std::min(r.right, client_.width); ++x) {
        painted_[y * client_.width + x] = false;
      }
    }
  }
  void PaintNow() override { BringUpToDate(); }
  void SetCursor(ViewerCursor c) override { cursor = c; }
  void CaptureMouse(bool capture) override {
    const bool lost = captured && !capture;
    captured = capture;
    if (lost) control->OnCaptureLost();
  }
  void CopyToClipboard(platform::GlobalHandle packedDib) override {
    ++copies;
    platform::FreeBlock(packedDib);
  }
  uint32_t TrackOperationsPopup() override { return popupChoice; }
  void TrackSpotPopup() override { ++spotPopups; }
  bool OpenFullScreen() override { return ++fullScreens > 0; }
  void CloseFullScreen() override { --fullScreens; }

  void Resize(int32_t width, int32_t height) {
    window_ = {width, height};
    PlaceBars();
    control->OnSize();
  }
  // Paints what is invalid; true if the whole is what painting everything gives.
  bool BringUpToDate() {
    const std::vector<uint32_t> all = PaintAll();
    for (size_t i = 0; i < all.size(); ++i) {
      if (!painted_[i]) pixels_[i] = all[i];
    }
    std::fill(painted_.begin(), painted_.end(), true);
    return pixels_ == all;
  }
  std::vector<uint32_t> PaintAll() const {
    return PaintPart({0, 0, client_.width, client_.height});
  }
  std::vector<uint32_t> PaintPart(const ViewRect& clip) const {
    std::vector<uint32_t> part((clip.right - clip.left) * (clip.bottom - clip.top), 0xBADBAD);
    control->Paint(clip, kBackground, part.data());
    return part;
  }
  size_t InvalidCount() const { return std::count(painted_.begin(), painted_.end(), false); }

  CKIPImageViewerControl* control = nullptr;
  ViewSize content;
  ViewPoint scroll;
  ViewerCursor cursor = ViewerCursor::kArrow;
  bool captured = false;
  uint32_t popupChoice = 0;
  int copies = 0;
  int spotPopups = 0;
  int fullScreens = 0;

 private:
  void PlaceBars() {
    const auto bar = [](int32_t content, int32_t room) { return content > room ? kBar : 0; };
    const int32_t lower = bar(content.width, window_.width);
    const int32_t right = bar(content.height, window_.height - lower);
    const ViewSize client{std::max(window_.width - right, 0),
                          std::max(window_.height - bar(content.width, window_.width - right), 0)};
    if (client == client_) return;
    client_ = client;
    painted_.assign(size_t(client_.width) * client_.height, false);
    pixels_.assign(painted_.size(), 0);
    control->OnSize();
  }
  void MovePainted(int64_t byX, int64_t byY) {
    if (byX == 0 && byY == 0) return;
    const std::vector<uint32_t> pixels = pixels_;
    const std::vector<bool> painted = painted_;
    for (int64_t i = 0; i < int64_t(pixels.size()); ++i) {
      const int64_t x = i % client_.width + byX, y = i / client_.width + byY;
      const bool seen = x >= 0 && x < client_.width && y >= 0 && y < client_.height;
      pixels_[i] = seen ? pixels[y * client_.width + x] : 0;
      painted_[i] = seen && painted[y * client_.width + x];
    }
  }

  ViewSize window_;
  ViewSize client_;
  std::vector<bool> painted_;
  std::vector<uint32_t> pixels_;
};

}  // namespace zyr
