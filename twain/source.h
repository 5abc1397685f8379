// TwainSource: the TWAIN state machine and its triplets. It knows no sensor and no image.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "platform/messages.h"
#include "twain/capabilities/capability_set.h"
#include "twain/capabilities/capability_store.h"
#include "twain/triplet.h"
#include "twain/twain_types.h"

namespace zyr {

// Serves one application at a time, on the application's thread; every handler may be re-entered
// from inside a message box or a notification. Handlers return a TWRC_ value and leave the reason
// in conditionCode; their failures are shown to the user by DisplayError. Data that the
// application's memory does not hold fails with TWCC_BADVALUE before anything has changed.
class TwainSource {
 public:
  TwainSource();
  TwainSource(const TwainSource&) = delete;
  TwainSource& operator=(const TwainSource&) = delete;

  virtual TW_UINT16 DISPATCHMSG_Identity(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_UserInterface(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_Capability(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_Event(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_Status(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_Parent(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_PendingXfers(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_SetupMemXfer(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_SetupFileXfer(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_SetupNativeXfer(const Triplet& triplet);  // reached by no triplet
  virtual TW_UINT16 DISPATCHMSG_XferGroup(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_ImageInfo(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_ImageLayout(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_ImageMemXfer(const Triplet& triplet) = 0;
  virtual TW_UINT16 DISPATCHMSG_ImageFileXfer(const Triplet& triplet) = 0;
  virtual TW_UINT16 DISPATCHMSG_ImageNativeXfer(const Triplet& triplet) = 0;
  virtual TW_UINT16 DISPATCHMSG_CieColor(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_GrayResponse(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_RgbResponse(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_JpegCompression(const Triplet& triplet);
  virtual TW_UINT16 DISPATCHMSG_Palette8(const Triplet& triplet) = 0;
  virtual TW_UINT16 DISPATCHMSG_ExtImageInfo(const Triplet& triplet) = 0;
  virtual TW_UINT16 EnableDS(const Triplet& triplet);
  virtual TW_UINT16 DisableDS(const Triplet& triplet);
  virtual TW_UINT16 OpenDS(const Triplet& triplet);
  virtual TW_UINT16 CloseDS(const Triplet& triplet);
  virtual void OnXferReady();
  virtual TW_UINT16 GetNumberOfTransfersAvailable() = 0;
  virtual void ClearCurrentImage() = 0;
  virtual void AbortTransfers() = 0;
  virtual ~TwainSource();
  // Shows `text`, already translated, and the code's sentence in a box that the user has to
  // confirm.
  virtual void DisplayError(const std::string& text, TW_UINT16 conditionCode);
  // Always true.
  virtual bool Initialize();
  virtual void LoadDefaultOptions();
  virtual TW_UINT16 Dispatch(const Triplet& triplet);
  virtual void NotifyXferReady();
  virtual void NotifyCloseDSReq();

  // At the first call runs Initialize and loads the user's language.
  void Start();
  // What one call of the module's entry means to this source: identity test, events, then Dispatch.
  // Lets exceptions through; the entry translates them.
  TW_UINT16 Enter(const Triplet& triplet);

  // What has been negotiated; each has a fallback for a missing capability.
  int16_t GetXferCount() const;
  double ConvertFromInches(uint32_t inches, uint32_t pixels) const;
  uint16_t GetPixelFlavor() const;
  uint16_t GetBitsPerPixel(uint16_t pixelType) const;
  uint16_t GetSamplesPerPixel(uint16_t pixelType) const;
  uint16_t GetPlanarChunky() const;
  uint16_t GetImageFileFormat() const;
  BitDepthEntry* GetCurrentBitDepthEntry() const;
  bool Is8BitGrayscale() const;
  bool Is16BitGrayscale() const;
  bool Set8BitGrayscaleCapture();
  bool Set16BitGrayscaleCapture();

  int32_t state() const { return state_; }
  CapabilityStore& capabilities() { return capabilities_; }
  void SetConditionCode(TW_UINT16 conditionCode) { conditionCode_.ConditionCode = conditionCode; }

 protected:
  // Each writes the code, shows the failure and gives TWRC_FAILURE: the one way out of a failing
  // handler. `text` is English and gets translated.
  TW_UINT16 Fail(const char* text, TW_UINT16 conditionCode);
  TW_UINT16 FailTranslated(const std::string& text, TW_UINT16 conditionCode);
  // With a line of its own in the trace.
  TW_UINT16 FailLogged(const char* text, TW_UINT16 conditionCode, const char* logLine);

  // Ends the connection with everything that it has negotiated.
  void Disconnect();

  CapabilityStore capabilities_;
  std::string productName_;
  TW_IDENTITY identity_{};
  TW_IDENTITY appIdentity_{};                // Id 0: no application is connected
  TW_STATUS dispatchStatus_{};               // shown in the trace, never reported
  platform::Window dialogWindow_ = nullptr;  // keeps its value when the window is gone
  platform::Window parentWindow_ = nullptr;  // owner of the message boxes
  int32_t state_ = 3;                        // of the TWAIN standard, 3 to 7
  TW_STATUS conditionCode_{};                // what DAT_STATUS reports
  std::string transferFileName_;             // at most 1,024 characters
  uint32_t memXOffset_ = 0;
  uint32_t memYOffset_ = 0;  // rows handed over
  std::array<TW_ELEMENT8, 256> grayResponse_{};
  std::array<TW_ELEMENT8, 256> rgbResponse_{};

 private:
  bool ServesCaller(const TW_IDENTITY* origin) const;
  TW_UINT16 ProcessEvent(const Triplet& triplet);
  TW_UINT16 Connect(const Triplet& triplet);
  TW_UINT16 EndTransfer(TW_PENDINGXFERS* pending);
  TW_UINT16 SetTransferFile(const Triplet& triplet);
  TW_UINT16 Response(const Triplet& triplet, std::span<TW_ELEMENT8> table);

  bool started_ = false;
};

// Gives element i the value i in all its fields.
void FillIdentityRamp(std::span<TW_ELEMENT8> elements);

// The one source, null before its construction and after its destruction.
extern TwainSource* sourceInstance;

}  // namespace zyr
