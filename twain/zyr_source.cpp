#include "twain/zyr_source.h"

#include <new>
#include <utility>

#include "foundation/log/log.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "foundation/support/raised_flag.h"
#include "platform/messages.h"
#include "platform/own_module.h"
#include "settings/directories.h"
#include "settings/store.h"
#include "twain/names.h"

namespace zyr {
namespace {

constexpr const char* kEnableFailure = PhraseKey("General failure in response to MSG_ENABLEDS.");

// For "%lX", which shows the low 32 bits of a 64-bit handle.
unsigned long HandleNumber(const void* handle) {
  return static_cast<unsigned long>(reinterpret_cast<uintptr_t>(handle));
}

}  // namespace

ZyrTwainSource::ZyrTwainSource(ImageCache& images, IFace& sensors,
                               CaptureDialogViewFactory makeView)
    : images_(images), sensors_(sensors), makeView_(std::move(makeView)) {
  productName_ = "ZYR TWAIN";
}

// Destroying the dialog's window makes the system call the application, which may come back through
// the entry: it finds no source any more.
ZyrTwainSource::~ZyrTwainSource() {
  sourceInstance = nullptr;
  if (platform::ProcessIsEnding()) {
    LeaveDialog();
  } else {
    DropDialog();
  }
}

// The system takes the window. A dialog ends its capture, and the capture's thread is dead already.
void ZyrTwainSource::LeaveDialog() {
  using Pointer = std::shared_ptr<CaptureDialog>;
  alignas(Pointer) static unsigned char neverDestroyed[sizeof(Pointer)];
  new (neverDestroyed) Pointer(std::move(dialog_));
}

bool ZyrTwainSource::Initialize() {
  LogFile& log = Log();
  if (GetLogging()) log.Open("C:\\", "ZYRTWAIN.Log");
  log.LogFileDetails(FormatText("%s\\ZYR\\ZYRTWAIN.ds", GetTwainDirectory().c_str()));
  log.SetFlushEachLine(true);
  return TwainSource::Initialize();
}

// The source offers grey images alone, in single chunks.
void ZyrTwainSource::LoadDefaultOptions() {
  TwainSource::LoadDefaultOptions();
  if (auto* pixelType = capabilities_.Find<ListCapability>(ICAP_PIXELTYPE)) {
    pixelType->SetOnly(TWPT_GRAY);
  }
  if (auto* bitDepth = capabilities_.Find<BitDepthCapability>(ICAP_BITDEPTH)) {
    bitDepth->KeepPixelType(TWPT_GRAY);
  }
  if (GetDefaultBitDepth() == 16) Set16BitGrayscaleCapture();
  if (auto* planarChunky = capabilities_.Find<ListCapability>(ICAP_PLANARCHUNKY)) {
    planarChunky->SetOnly(TWPC_CHUNKY);
  }
  capabilities_.LogSettings("Default Twain Options");
}

TW_UINT16 ZyrTwainSource::EnableDS(const Triplet& triplet) {
  const platform::OwnResourcesScope resources;
  const TW_UINT16 result = TwainSource::EnableDS(triplet);
  Log().WriteLine("EnableDS -> %s", ResultName(result).c_str());
  Log().WriteLine("Resources -> %lX, %lX", HandleNumber(platform::OwnResources()),
                  HandleNumber(resources.previous()));
  return result == TWRC_SUCCESS ? OpenDialog(resources.previous()) : result;
}

// While it is made, a dialog may ask to be closed or show a box, and through either the application
// may get back in. What it does then counts: the dialog stands only if the source is still waiting
// for this one.
TW_UINT16 ZyrTwainSource::OpenDialog(platform::ResourceModule previousResources) {
  DropDialog();
  EndWayOfImage();
  CaptureDialogOwner& owner = *this;
  const auto dialog = std::make_shared<CaptureDialog>(owner, images_, sensors_, makeView_);
  dialog_ = dialog;
  const bool created = CreateOrDrop(*dialog);
  if (state_ != 4 || dialog_ != dialog) {
    if (dialog_ == dialog) DropDialog();
    return Fail(kEnableFailure, TWCC_SEQERROR);
  }
  if (!created) {
    DropDialog();
    return FailToOpenDialog(previousResources);
  }
  dialogWindow_ = dialog->window();
  platform::StayLoadedWith(dialogWindow_);
  state_ = 5;
  return TWRC_SUCCESS;
}

bool ZyrTwainSource::CreateOrDrop(CaptureDialog& dialog) {
  try {
    return dialog.Create(parentWindow_);
  } catch (...) {
    if (dialog_.get() == &dialog) DropDialog();
    throw;
  }
}

TW_UINT16 ZyrTwainSource::FailToOpenDialog(platform::ResourceModule previousResources) {
  conditionCode_.ConditionCode = TWCC_CHECKDEVICEONLINE;
  Log().WriteLine("Unable to create TWAIN dialog (%lX, %lX, %lX)\n",
                  HandleNumber(platform::OwnResources()), HandleNumber(previousResources),
                  HandleNumber(platform::CurrentResources()));
  return Fail(kEnableFailure, TWCC_CHECKDEVICEONLINE);
}

TW_UINT16 ZyrTwainSource::CloseDS(const Triplet& triplet) {
  DropDialog();
  EndWayOfImage();
  return TwainSource::CloseDS(triplet);
}

// The window goes at once; the object lives on while it is handling an event.
void ZyrTwainSource::DropDialog() {
  const std::shared_ptr<CaptureDialog> dialog = std::exchange(dialog_, nullptr);
  if (dialog != nullptr) platform::DestroyWindowOf(dialog->window());
}

TW_UINT16 ZyrTwainSource::GetNumberOfTransfersAvailable() {
  const int32_t requested = GetXferCount();
  int32_t count = static_cast<int32_t>(images_.GetCount());
  if (count != 0) {
    if (GetOnlyReturnOneImage()) {
      count = imageWasCleared_ ? 0 : 1;
    } else if (requested >= 1) {
      count = requested;  // however many images there are
    } else if (const size_t selected = images_.CountSelected(); selected > 0) {
      count = static_cast<int32_t>(selected);
    }
  }
  Log().WriteLine("GetNumberOfTransfersAvailable() = %lu <=> returning %ld",
                  Lu(static_cast<uint32_t>(images_.GetCount())), Ld(count));
  // An application that counts again when it is asked to close must not be asked without end.
  if (count == 0 && dialog_ != nullptr && !askingToClose_) {
    Log().WriteLine("Posting auto close message");
    NotifyCloseDSReq();
  }
  return static_cast<TW_UINT16>(count);
}

// An image that the user has deleted meanwhile leaves the others untouched: none of them was handed
// over.
void ZyrTwainSource::ClearCurrentImage() {
  const std::shared_ptr<CachedImage> image = ImageToTransfer();
  EndWayOfImage();
  if (image == nullptr) {
    if (state_ == 7) imageWasCleared_ = true;  // the application may have it all the same
    return;
  }
  Log().WriteLine("Current scanned image cleared");
  images_.Remove(image.get());
  imageWasCleared_ = true;
  if (dialog_ == nullptr) return;
  const platform::Window window = dialog_->window();
  if (platform::IsWindowAlive(window)) {
    platform::SendToWindow(window, kMessageRefreshThumbnails, 0, 0);
  }
}

void ZyrTwainSource::AbortTransfers() { EndWayOfImage(); }

void ZyrTwainSource::EndWayOfImage() {
  underWay_.reset();
  if (depthAfterTransfer_) SwitchDepth(*std::exchange(depthAfterTransfer_, std::nullopt));
}

// The strips of one image must all be of one depth.
void ZyrTwainSource::SetGrayscaleDepth(uint32_t bits) {
  if (state_ == 7) {
    depthAfterTransfer_ = bits;
  } else {
    SwitchDepth(bits);
  }
}

void ZyrTwainSource::SwitchDepth(uint32_t bits) {
  if (bits == 8) {
    Set8BitGrayscaleCapture();
  } else {
    Set16BitGrayscaleCapture();
  }
}

void ZyrTwainSource::FillSettingsList(SettingsListControl* list) const {
  capabilities_.FillSettingsList(list);
}

// While an image is under way, state 6 would make its next strip the first one again, and the
// application would put a torn picture together.
void ZyrTwainSource::NotifyXferReady() {
  if (state_ == 7) return;
  if (state_ != 6) underWay_.reset();
  TwainSource::NotifyXferReady();
}

bool ZyrTwainSource::IsDelivering() const { return state_ == 6 || state_ == 7; }

void ZyrTwainSource::NotifyCloseDSReq() {
  const RaisedFlag askingToClose(askingToClose_);
  TwainSource::NotifyCloseDSReq();
}

}  // namespace zyr
