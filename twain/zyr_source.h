// ZyrTwainSource: the source of the ZYR sensors, with its capture dialog and its images.
#pragma once

#include <memory>
#include <optional>

#include "acquire/capture_dialog/capture_dialog.h"
#include "acquire/iface/iface.h"
#include "acquire/image_cache/image_cache.h"
#include "platform/resources.h"
#include "twain/source.h"

namespace zyr {

class ZyrTwainSource : public TwainSource, private CaptureDialogOwner {
 public:
  // `images` and `sensors` must outlive the source.
  ZyrTwainSource(ImageCache& images, IFace& sensors, CaptureDialogViewFactory makeView);
  ~ZyrTwainSource() override;

  TW_UINT16 DISPATCHMSG_ImageInfo(const Triplet& triplet) override;
  TW_UINT16 DISPATCHMSG_ImageLayout(const Triplet& triplet) override;
  TW_UINT16 DISPATCHMSG_ImageMemXfer(const Triplet& triplet) override;
  TW_UINT16 DISPATCHMSG_ImageFileXfer(const Triplet& triplet) override;
  TW_UINT16 DISPATCHMSG_ImageNativeXfer(const Triplet& triplet) override;
  TW_UINT16 DISPATCHMSG_Palette8(const Triplet& triplet) override;
  TW_UINT16 DISPATCHMSG_ExtImageInfo(const Triplet& triplet) override;
  TW_UINT16 EnableDS(const Triplet& triplet) override;
  TW_UINT16 CloseDS(const Triplet& triplet) override;
  TW_UINT16 GetNumberOfTransfersAvailable() override;
  void ClearCurrentImage() override;
  void AbortTransfers() override;
  bool Initialize() override;
  void LoadDefaultOptions() override;
  void NotifyXferReady() override;
  void NotifyCloseDSReq() override;
  bool IsDelivering() const override;
  void SetGrayscaleDepth(uint32_t bits) override;
  void FillSettingsList(SettingsListControl* list) const override;

 private:
  TW_UINT16 OpenDialog(platform::ResourceModule previousResources);
  bool CreateOrDrop(CaptureDialog& dialog);
  TW_UINT16 FailToOpenDialog(platform::ResourceModule previousResources);
  void DropDialog();
  void LeaveDialog();

  // The image that the triplets speak of: the one under way, null once that is deleted, or else the
  // current one.
  std::shared_ptr<CachedImage> ImageToTransfer() const;
  // Without one the call fails, with a line in the trace.
  std::shared_ptr<CachedImage> ImageToTransferOrFail(const char* logLine);
  // The application has been told of the image, which outside a delivery binds nobody.
  void SetUnderWay(const std::shared_ptr<CachedImage>& image);
  TW_UINT16 TransferNative(const Triplet& triplet);
  TW_UINT16 TransferFile(const Triplet& triplet);
  TW_UINT16 TransferStrip(const Triplet& triplet);
  void SwitchDepth(uint32_t bits);
  void EndWayOfImage();
  // The common end of the three transfers, failed ones too.
  TW_UINT16 FinishTransfer(TW_UINT16 result);

  ImageCache& images_;
  IFace& sensors_;
  CaptureDialogViewFactory makeView_;
  std::shared_ptr<CaptureDialog> dialog_;
  // From the first triplet about an image until its transfer ends. The user may select, capture and
  // delete meanwhile; it stays this image that is described, handed over and taken away.
  std::optional<std::weak_ptr<CachedImage>> underWay_;
  std::optional<uint32_t> depthAfterTransfer_;
  bool imageWasCleared_ = false;  // since the module was loaded
  bool askingToClose_ = false;    // inside the call that asks the application to close
};

}  // namespace zyr
