// The image triplets: how an image is described and how it reaches the application.
#include <cstddef>
#include <cstring>
#include <string>

#include "foundation/log/log.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "imaging/formats/image_file.h"
#include "twain/containers.h"
#include "twain/names.h"
#include "twain/zyr_source.h"

namespace zyr {
namespace {

// Some texts below name another triplet than the one that they serve, and are meant to.
constexpr const char* kNativeFailure =
    PhraseKey("General failure in response to DAT_IMAGENATIVEXFER.");
constexpr const char* kImageInfoFailure =
    PhraseKey("General failure in response to DAT_IMAGEINFO.");
constexpr const char* kPaletteFailure = PhraseKey("General failure in response to DAT_PALETTE8.");
constexpr const char* kNoImages = PhraseKey("No images were available");

bool IsReading(TW_UINT16 message) {
  return message == MSG_GET || message == MSG_GETCURRENT || message == MSG_GETDEFAULT;
}

TW_FIX32 WholePixels(uint32_t pixels) { return {static_cast<TW_INT16>(pixels), 0}; }

void LogImageInfo(const TW_IMAGEINFO& info) {
  LogFile& log = Log();
  const auto bits = [&](size_t i) { return Lu(static_cast<uint16_t>(info.BitsPerSample[i])); };
  log.WriteLine("   Returned Image Info");
  log.WriteLine("      Image Size: (%lu, %lu)", Lu(info.ImageWidth), Lu(info.ImageLength));
  log.WriteLine("      Resolution: (%.2lf, %.2lf)", FromFix32(info.XResolution),
                FromFix32(info.YResolution));
  log.WriteLine("      Pixel Type: %s", PixelTypeName(info.PixelType).c_str());
  log.WriteLine("      Samples Per Pixel: %lu", Lu(info.SamplesPerPixel));
  log.WriteLine("      Bits Per Sample: %lu, %lu, %lu, %lu, %lu, %lu, %lu, %lu", bits(0), bits(1),
                bits(2), bits(3), bits(4), bits(5), bits(6), bits(7));
  log.WriteLine("      Bits Per Pixel: %lu", Lu(info.BitsPerPixel));
  log.WriteLine("      Planar: %s", PlanarChunkyName(info.Planar).c_str());
  log.WriteLine("      Compression: %s", CompressionName(info.Compression).c_str());
}

MemoryStrip StripFrom(const TW_IMAGEMEMXFER& transfer) {
  MemoryStrip strip;
  strip.isPointer = (transfer.Memory.Flags & TWMF_POINTER) != 0;
  strip.length = transfer.Memory.Length;
  strip.memory = transfer.Memory.TheMem;
  strip.compression = transfer.Compression;
  strip.bytesPerRow = transfer.BytesPerRow;
  strip.columns = transfer.Columns;
  strip.rows = transfer.Rows;
  strip.xOffset = transfer.XOffset;
  strip.yOffset = transfer.YOffset;
  strip.bytesWritten = transfer.BytesWritten;
  return strip;
}

void StoreStrip(const MemoryStrip& strip, TW_IMAGEMEMXFER* transfer) {
  transfer->Compression = strip.compression;
  transfer->BytesPerRow = strip.bytesPerRow;
  transfer->Columns = strip.columns;
  transfer->Rows = strip.rows;
  transfer->XOffset = strip.xOffset;
  transfer->YOffset = strip.yOffset;
  transfer->BytesWritten = strip.bytesWritten;
}

}  // namespace

std::shared_ptr<CachedImage> ZyrTwainSource::ImageToTransfer() const {
  if (!underWay_) return images_.Share(images_.GetCurrent());
  return images_.Share(underWay_->lock().get());
}

void ZyrTwainSource::SetUnderWay(const std::shared_ptr<CachedImage>& image) {
  if (IsDelivering()) underWay_ = image;
}

std::shared_ptr<CachedImage> ZyrTwainSource::ImageToTransferOrFail(const char* logLine) {
  auto image = ImageToTransfer();
  if (image == nullptr) FailLogged(kNoImages, TWCC_OPERATIONERROR, logLine);
  return image;
}

// The depth is the negotiated one: an 8-bit image under 16-bit negotiation is transferred with 8
// bits all the same.
TW_UINT16 ZyrTwainSource::DISPATCHMSG_ImageInfo(const Triplet& triplet) {
  const TW_UINT16 result = TwainSource::DISPATCHMSG_ImageInfo(triplet);
  if (result != TWRC_SUCCESS) return result;
  // It begins a transfer, and so another image than one that was deleted before its own began.
  if (ImageToTransfer() == nullptr) underWay_.reset();
  const auto image = ImageToTransferOrFail("No images were available\n");
  if (image == nullptr) return TWRC_FAILURE;
  SetUnderWay(image);
  TW_IMAGEINFO info{};
  info.XResolution = ToFix32(ConvertFromInches(image->xResolution, image->width));
  info.YResolution = ToFix32(ConvertFromInches(image->yResolution, image->height));
  info.ImageWidth = static_cast<uint16_t>(image->width);
  info.ImageLength = static_cast<uint16_t>(image->height);
  info.PixelType = TWPT_GRAY;
  info.SamplesPerPixel = static_cast<TW_INT16>(GetSamplesPerPixel(TWPT_GRAY));
  info.BitsPerPixel = static_cast<TW_INT16>(GetBitsPerPixel(TWPT_GRAY));
  info.Planar = GetPlanarChunky() == TWPC_PLANAR;
  info.Compression = TWCP_NONE;
  info.BitsPerSample[0] = info.BitsPerPixel / info.SamplesPerPixel;
  std::memcpy(triplet.data, &info, sizeof info);
  LogImageInfo(info);
  return TWRC_SUCCESS;
}

TW_UINT16 ZyrTwainSource::DISPATCHMSG_ImageLayout(const Triplet& triplet) {
  const TW_UINT16 result = TwainSource::DISPATCHMSG_ImageLayout(triplet);
  if (result != TWRC_SUCCESS) return result;
  const auto image = ImageToTransferOrFail("   No images were available\n");
  if (image == nullptr) return TWRC_FAILURE;
  SetUnderWay(image);
  if (!IsReading(triplet.message)) return TWRC_SUCCESS;
  auto* layout = static_cast<TW_IMAGELAYOUT*>(triplet.data);
  // In pixels, whatever the units.
  layout->Frame = {{}, {}, WholePixels(image->width), WholePixels(image->height)};
  layout->DocumentNumber = 1;
  layout->PageNumber = 1;
  layout->FrameNumber = image->frameNumber;
  return TWRC_SUCCESS;
}

TW_UINT16 ZyrTwainSource::FinishTransfer(TW_UINT16 result) {
  Log().WriteLine("   twRC = %s  CC = %s", ResultName(result).c_str(),
                  ConditionCodeName(conditionCode_.ConditionCode).c_str());
  if (result != TWRC_FAILURE) state_ = 7;
  return result;
}

TW_UINT16 ZyrTwainSource::DISPATCHMSG_ImageNativeXfer(const Triplet& triplet) {
  Log().WriteLine("DISPATCHMSG_ImageNativeXfer");
  return FinishTransfer(TransferNative(triplet));
}

TW_UINT16 ZyrTwainSource::TransferNative(const Triplet& triplet) {
  if (state_ != 6) {
    return FailLogged(kNativeFailure, TWCC_SEQERROR, "DISPATCHMSG_Palette8: Sequence Error!");
  }
  if (triplet.message != MSG_GET) {
    return FailLogged(kNativeFailure, TWCC_BADPROTOCOL,
                      "DISPATCHMSG_ImageNativeXfer: Bad Protocol");
  }
  if (!platform::IsWritable(triplet.data, sizeof(TW_HANDLE))) {
    return FailLogged(kNativeFailure, TWCC_BADVALUE, "DISPATCHMSG_ImageNativeXfer: Bad Value");
  }
  const auto image = ImageToTransferOrFail("   No images were available");
  if (image == nullptr) return TWRC_FAILURE;
  TransferTerms terms;
  terms.is16BitGrayscale = [this] { return Is16BitGrayscale(); };
  const TW_HANDLE handle = image->MakeNativeHandle(terms);
  std::memcpy(triplet.data, &handle, sizeof handle);
  conditionCode_.ConditionCode = TWCC_SUCCESS;
  underWay_ = image;
  return TWRC_XFERDONE;  // also with a null handle
}

TW_UINT16 ZyrTwainSource::DISPATCHMSG_ImageFileXfer(const Triplet& triplet) {
  conditionCode_.ConditionCode = TWCC_OPERATIONERROR;
  Log().WriteLine("DISPATCHMSG_ImageFileXfer: %s", transferFileName_.c_str());
  return FinishTransfer(TransferFile(triplet));
}

TW_UINT16 ZyrTwainSource::TransferFile(const Triplet& triplet) {
  if (state_ != 6) {
    return FailLogged(kNativeFailure, TWCC_SEQERROR, "DISPATCHMSG_ImageFileXfer: Sequence Error!");
  }
  if (triplet.message != MSG_GET) {
    return FailLogged(kImageInfoFailure, TWCC_BADPROTOCOL,
                      "DISPATCHMSG_ImageFileXfer: Bad Protocol");
  }
  const auto image = ImageToTransferOrFail(kNoImages);
  if (image == nullptr) return TWRC_FAILURE;
  TransferTerms terms;
  terms.imageFileFormat = GetImageFileFormat();
  if (!image->SaveToFile(transferFileName_, terms)) {
    const std::string text = FormatText(GetFormatPhrase("Unable to save file: %s").c_str(),
                                        CKIPImageFile::LastFileName().c_str());
    FailTranslated(text, TWCC_OPERATIONERROR);
    Log().WriteText(text);
    return TWRC_FAILURE;
  }
  conditionCode_.ConditionCode = TWCC_SUCCESS;
  underWay_ = image;
  return TWRC_XFERDONE;
}

TW_UINT16 ZyrTwainSource::DISPATCHMSG_ImageMemXfer(const Triplet& triplet) {
  Log().WriteLine("DISPATCHMSG_ImageMemXfer");
  return FinishTransfer(TransferStrip(triplet));
}

// In any state; only state 6 marks the first strip of an image.
TW_UINT16 ZyrTwainSource::TransferStrip(const Triplet& triplet) {
  if (triplet.message != MSG_GET) {
    return FailLogged(kImageInfoFailure, TWCC_BADPROTOCOL,
                      "DISPATCHMSG_ImageMemXfer: Bad Protocol");
  }
  auto* transfer = WritableRecord<TW_IMAGEMEMXFER>(triplet);
  if (transfer == nullptr) {
    return FailLogged(kImageInfoFailure, TWCC_BADVALUE, "DISPATCHMSG_ImageMemXfer: Bad Value");
  }
  const auto image = ImageToTransferOrFail(kNoImages);
  if (image == nullptr) return TWRC_FAILURE;
  if (state_ == 6) {
    memXOffset_ = 0;
    memYOffset_ = 0;
    image->PrepareImage();
  }
  TransferTerms terms;
  terms.is16BitGrayscale = [this] { return Is16BitGrayscale(); };
  terms.pixelFlavor = GetPixelFlavor();
  MemoryStrip strip = StripFrom(*transfer);
  bool done = false;
  const bool copied = image->CopyToMemoryBuffer(&strip, &memXOffset_, &memYOffset_, &done, terms);
  StoreStrip(strip, transfer);
  if (!copied) {
    constexpr const char* kCopyFailure = PhraseKey("Unable to copy data to buffer");
    return FailLogged(kCopyFailure, TWCC_OPERATIONERROR, kCopyFailure);
  }
  underWay_ = image;
  return done ? TWRC_XFERDONE : TWRC_SUCCESS;
}

TW_UINT16 ZyrTwainSource::DISPATCHMSG_Palette8(const Triplet& triplet) {
  Log().WriteLine("DISPATCHMSG_Palette8 (state = %lu)", Lu(state_));
  if (state_ < 4 || state_ > 6) {
    return FailLogged(kPaletteFailure, TWCC_SEQERROR, "DISPATCHMSG_Palette8: Sequence Error!");
  }
  switch (triplet.message) {
    case MSG_GET:
      if (auto* palette = WritableRecord<TW_PALETTE8>(triplet)) {
        palette->NumColors = 256;
        palette->PaletteType = TWPA_GRAY;
        FillIdentityRamp(palette->Colors);
        return TWRC_SUCCESS;
      }
      return Fail(kPaletteFailure, TWCC_BADVALUE);
    case MSG_GETDEFAULT:
    case MSG_SET:
    case MSG_RESET:
      return TWRC_SUCCESS;
    default:
      return Fail(kPaletteFailure, TWCC_BADPROTOCOL);
  }
}

// None of it is supported. The first element is answered even though the count says that there is
// none.
TW_UINT16 ZyrTwainSource::DISPATCHMSG_ExtImageInfo(const Triplet& triplet) {
  if (!platform::IsWritable(triplet.data, sizeof(TW_UINT32))) return Fail("", TWCC_BADVALUE);
  std::memset(triplet.data, 0, sizeof(TW_UINT32));
  if (auto* info = WritableRecord<TW_EXTIMAGEINFO>(triplet)) {
    info->Info[0].CondCode = TWRC_INFONOTSUPPORTED;
  }
  return TWRC_SUCCESS;
}

}  // namespace zyr
