// Views of the image dialog that show nothing and keep what they were told.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "acquire/image_dialog/gamma_dialog.h"
#include "acquire/image_dialog/image_dialog.h"
#include "platform/global_memory.h"

namespace zyr::test {

class RecordedViewer : public ImageViewerView {
 public:
  ViewSize ClientSize() const override { return {64, 48}; }
  ViewPoint ClientOrigin() const override { return {}; }
  void SetScroll(ViewSize, ViewPoint) override {}
  void Invalidate() override {}
  void InvalidateRect(const ViewRect&) override {}
  void PaintNow() override {}
  void SetCursor(ViewerCursor) override {}
  void CaptureMouse(bool) override {}
  void CopyToClipboard(platform::GlobalHandle packedDib) override {
    platform::FreeBlock(packedDib);
  }
  uint32_t TrackOperationsPopup() override { return 0; }
  void TrackSpotPopup() override {}
  bool OpenFullScreen() override { return false; }
  void CloseFullScreen() override {}
};

// What is shown, from the top; empty without a picture.
inline std::vector<uint8_t> Shown(const CKIPImage* picture) {
  std::vector<uint8_t> pixels;
  if (picture == nullptr) return pixels;
  for (uint32_t y = 0; y < picture->height(); ++y) {
    pixels.insert(pixels.end(), picture->PictureRow(y), picture->PictureRow(y) + picture->width());
  }
  return pixels;
}

struct RecordedGammaView : GammaDialogView {
  using User = std::function<void(RecordedGammaView& view, GammaDialog& dialog)>;
  explicit RecordedGammaView(User user) : user(std::move(user)) {}

  bool Run(GammaDialog* dialog, platform::Window) override {
    dialog->OnInitDialog();
    if (user) user(*this, *dialog);
    return accepted;
  }
  platform::Window window() const override { return nullptr; }
  void End(bool isAccepted) override { accepted = isAccepted; }
  CKIPImageViewerControl& viewer() override { return control; }
  void SetSliderRange(uint32_t slider, int32_t, int32_t, int32_t at) override {
    positions[slider] = at;
  }
  int32_t SliderPosition(uint32_t slider) const override { return positions.at(slider); }
  void SetSliderLabel(uint32_t slider, const std::string& text) override { labels[slider] = text; }
  void StartTimer(uint32_t milliseconds) override { timer = milliseconds; }
  void StopTimer() override { timer = 0; }

  void Move(GammaDialog& dialog, uint32_t slider, int32_t to) {
    positions[slider] = to;
    dialog.OnSlider();
  }
  void FireTimer(GammaDialog& dialog) {
    if (std::exchange(timer, 0) == 1000) dialog.OnTimer();
  }

  User user;
  RecordedViewer viewerView;
  CKIPImageViewerControl control{viewerView};
  std::map<uint32_t, int32_t> positions;
  std::map<uint32_t, std::string> labels;
  uint32_t timer = 0;  // 0 while it does not run
  bool accepted = false;
};

struct RecordedImageView : ImageDialogView {
  bool Run(ImageDialog* dialog, platform::Window) override {
    dialog->OnInitDialog();
    if (user) user(*dialog);
    return accepted;
  }
  platform::Window window() const override { return nullptr; }
  void End(bool isAccepted) override {
    ++ends;
    accepted = isAccepted;
  }
  CKIPImageViewerControl& viewer() override { return control; }
  void SetItemEnabled(uint32_t command, bool isEnabled) override { enabled[command] = isEnabled; }
  void SetItemDescription(uint32_t command, const std::string& text) override {
    descriptions[command] = text;
  }
  void SetStatus(const std::string& text) override { status = text; }
  bool CopyToClipboard(platform::GlobalHandle packedDib) override {
    const std::unique_ptr<void, void (*)(platform::GlobalHandle)> owned(packedDib,
                                                                        platform::FreeBlock);
    const platform::LockedBlock block(packedDib);
    clipboard.assign(static_cast<const char*>(block.address()), block.size());
    return true;
  }
  std::unique_ptr<GammaDialogView> MakeGammaDialogView() override {
    return std::make_unique<RecordedGammaView>(gammaUser);
  }

  std::vector<uint8_t> shown() const { return Shown(control.displayImage()); }

  std::function<void(ImageDialog& dialog)> user;
  RecordedGammaView::User gammaUser;
  RecordedViewer viewerView;
  CKIPImageViewerControl control{viewerView};
  std::map<uint32_t, bool> enabled;
  std::map<uint32_t, std::string> descriptions;
  std::string status;
  std::string clipboard;
  bool accepted = false;
  int ends = 0;
};

}  // namespace zyr::test
