#include "tools/zyracquire/transfer.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

#include "platform/files.h"
#include "platform/global_memory.h"
#include "tools/images/picture_file.h"
#include "tools/zyracquire/delivered_picture.h"
#include "twain/names.h"

namespace zyr {
namespace {

using Clock = std::chrono::steady_clock;

constexpr uint32_t kUsualBuffer = 1u << 20;
constexpr uint32_t kLargestPreferred = 1u << 26;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double FromFix(TW_FIX32 value) { return value.Whole + value.Frac / 65536.0; }

const char* FileExtension(uint16_t fileFormat) {
  switch (fileFormat) {
    case TWFF_TIFF:
      return "tif";
    case TWFF_JFIF:
      return "jpg";
    default:
      return "bmp";
  }
}

// The receiver of a native transfer owns the block.
class OwnedBlock {
 public:
  explicit OwnedBlock(platform::GlobalHandle handle) : handle_(handle) {}
  ~OwnedBlock() { platform::FreeBlock(handle_); }
  OwnedBlock(const OwnedBlock&) = delete;
  OwnedBlock& operator=(const OwnedBlock&) = delete;

 private:
  platform::GlobalHandle handle_;
};

}  // namespace

ExitStatus ImageTransfer::Take(uint32_t number) {
  report_ = {};
  report_.number = number;
  report_.mechanism = options_.mechanism.value_or(Mechanism::kNative);
  if (!Describe()) return kExitFailed;
  if (report_.mechanism == Mechanism::kFile) return TakeFile();
  std::optional<GreyPicture> picture =
      report_.mechanism == Mechanism::kNative ? TakeNative() : TakeMemory();
  return picture ? Save(std::move(*picture)) : kExitFailed;
}

bool ImageTransfer::Describe() {
  const TW_UINT16 result = source_.Image(DAT_IMAGEINFO, MSG_GET, &info_);
  if (result != TWRC_SUCCESS) {
    Refused(DG_IMAGE, DAT_IMAGEINFO, MSG_GET, result);
    return false;
  }
  // Nothing here depends on the layout; it is asked for since applications do, and shown in the
  // trace.
  TW_IMAGELAYOUT layout{};
  source_.Image(DAT_IMAGELAYOUT, MSG_GET, &layout);
  report_.width = static_cast<uint32_t>(info_.ImageWidth);
  report_.height = static_cast<uint32_t>(info_.ImageLength);
  report_.bits = static_cast<uint32_t>(info_.BitsPerPixel);
  // In other units sources give what they think right.
  if (terms_.inches) {
    report_.xDpi = FromFix(info_.XResolution);
    report_.yDpi = FromFix(info_.YResolution);
  }
  return true;
}

std::optional<GreyPicture> ImageTransfer::TakeNative() {
  TW_HANDLE handle = nullptr;
  const Clock::time_point start = Clock::now();
  const TW_UINT16 result = source_.Image(DAT_IMAGENATIVEXFER, MSG_GET, &handle);
  report_.seconds = SecondsSince(start);
  if (result != TWRC_XFERDONE) {
    return Refused(DG_IMAGE, DAT_IMAGENATIVEXFER, MSG_GET, result);
  }
  if (handle == nullptr)
    return Failed("the source reports a finished transfer but gives no image.");
  const OwnedBlock owned(handle);
  const platform::LockedBlock block(handle);
  report_.bytes = block.size();
  std::string error;
  std::optional<GreyPicture> picture =
      PictureFromDib({static_cast<const uint8_t*>(block.address()), block.size()}, &error);
  if (!picture) return Failed("the bitmap that came is of no use: " + error + ".");
  return picture;
}

std::optional<uint32_t> ImageTransfer::BufferSize() {
  TW_SETUPMEMXFER setup{};
  const TW_UINT16 result = source_.Control(DAT_SETUPMEMXFER, MSG_GET, &setup);
  if (result != TWRC_SUCCESS) return Refused(DG_CONTROL, DAT_SETUPMEMXFER, MSG_GET, result);
  if (options_.buffer == 0) {
    const bool sensible = setup.Preferred != 0 && setup.Preferred <= kLargestPreferred;
    return sensible ? setup.Preferred : std::max<uint32_t>(setup.MinBufSize, kUsualBuffer);
  }
  if (report_.number == 1 &&
      (options_.buffer < setup.MinBufSize || options_.buffer > setup.MaxBufSize)) {
    std::fprintf(stderr, "zyracquire: warning: the source wants strips of %u to %u bytes\n",
                 static_cast<unsigned>(setup.MinBufSize), static_cast<unsigned>(setup.MaxBufSize));
  }
  return options_.buffer;
}

TW_UINT16 ImageTransfer::TakeStrip(std::vector<uint8_t>* buffer, TW_IMAGEMEMXFER* strip) {
  strip->Compression = TWON_DONTCARE16;
  strip->BytesPerRow = strip->Columns = strip->Rows = TWON_DONTCARE32;
  strip->XOffset = strip->YOffset = strip->BytesWritten = TWON_DONTCARE32;
  strip->Memory.Flags = TWMF_APPOWNS | TWMF_POINTER;
  strip->Memory.Length = static_cast<TW_UINT32>(buffer->size());
  strip->Memory.TheMem = buffer->data();
  return source_.Image(DAT_IMAGEMEMXFER, MSG_GET, strip);
}

std::optional<GreyPicture> ImageTransfer::TakeMemory() {
  const std::optional<uint32_t> size = BufferSize();
  if (!size) return std::nullopt;
  std::vector<uint8_t> buffer(*size);
  StripCollector strips(info_);
  TW_UINT16 result = TWRC_SUCCESS;
  while (result == TWRC_SUCCESS) {
    TW_IMAGEMEMXFER strip{};
    const Clock::time_point start = Clock::now();
    result = TakeStrip(&buffer, &strip);
    report_.seconds += SecondsSince(start);
    if (result != TWRC_SUCCESS && result != TWRC_XFERDONE) {
      return Refused(DG_IMAGE, DAT_IMAGEMEMXFER, MSG_GET, result);
    }
    if (!strips.Add(strip, buffer)) return Failed(strips.error());
    if (strip.Rows == 0 && result == TWRC_SUCCESS) return Failed("the source gives empty strips.");
    ShowProgress(strips.rows());
  }
  GreyPicture picture;
  if (!strips.Finish(terms_.zeroIsWhite, &picture)) return Failed(strips.error());
  picture.xDpi = report_.xDpi;
  picture.yDpi = report_.yDpi;
  report_.bytes = strips.bytes();
  return picture;
}

void ImageTransfer::ShowProgress(uint32_t rows) const {
  if (!showProgress_) return;
  std::printf("\rimage %u: %u of %u rows", report_.number, rows, report_.height);
  if (rows >= report_.height) std::printf("\r%60s\r", "");
  std::fflush(stdout);
}

ExitStatus ImageTransfer::TakeFile() {
  const uint16_t format = options_.fileFormat.value_or(TWFF_BMP);
  report_.path = PictureFileName(options_, report_.number, FileExtension(format));
  TW_SETUPFILEXFER setup{};
  if (report_.path.size() >= sizeof setup.FileName) {
    Failed("the path of the file is too long for TWAIN: " + report_.path);
    return kExitUsage;
  }
  std::memcpy(setup.FileName, report_.path.c_str(), report_.path.size() + 1);
  setup.Format = format;
  TW_UINT16 result = source_.Control(DAT_SETUPFILEXFER, MSG_SET, &setup);
  if (result != TWRC_SUCCESS) {
    Refused(DG_CONTROL, DAT_SETUPFILEXFER, MSG_SET, result);
    return kExitFailed;
  }
  const Clock::time_point start = Clock::now();
  result = source_.Image(DAT_IMAGEFILEXFER, MSG_GET, nullptr);
  report_.seconds = SecondsSince(start);
  if (result != TWRC_XFERDONE) {
    Refused(DG_IMAGE, DAT_IMAGEFILEXFER, MSG_GET, result);
    return kExitFailed;
  }
  const std::optional<PictureInfo> info = InspectPicture(platform::NativePath(report_.path));
  if (!info) {
    Failed("the source reports a finished transfer, but " + report_.path + " is no picture.");
    return kExitFailed;
  }
  report_.width = info->width;
  report_.height = info->height;
  report_.bits = info->bits;
  report_.xDpi = info->xDpi;
  report_.yDpi = info->yDpi;
  report_.bytes = info->fileSize;
  std::printf("%s\n", DescribeImage(report_).c_str());
  return kExitDone;
}

ExitStatus ImageTransfer::Save(GreyPicture picture) {
  const PictureFormat format =
      CanHold(options_.save, picture.bits) ? options_.save : PictureFormat::kPng;
  report_.width = picture.width;
  report_.height = picture.height;
  report_.bits = picture.bits;
  report_.xDpi = picture.xDpi;
  report_.yDpi = picture.yDpi;
  report_.path = PictureFileName(options_, report_.number, ExtensionOf(format));
  if (!WritePicture(picture, format, platform::NativePath(report_.path))) {
    Failed(report_.path + " cannot be written; the source keeps the image.");
    return kExitNotWritten;
  }
  std::printf("%s\n", DescribeImage(report_).c_str());
  std::fflush(stdout);
  return kExitDone;
}

std::nullopt_t ImageTransfer::Failed(const std::string& reason) const {
  std::fprintf(stderr, "zyracquire: image %u: %s\n", report_.number, reason.c_str());
  return std::nullopt;
}

std::nullopt_t ImageTransfer::Refused(TW_UINT32 dataGroup, TW_UINT16 dataArgumentType,
                                      TW_UINT16 message, TW_UINT16 result) const {
  const std::string triplet = DescribeTriplet({dataGroup, dataArgumentType, message, 0});
  if (result != TWRC_FAILURE) return Failed(triplet + " gives " + ResultName(result) + ".");
  return Failed(triplet + " failed: " + DescribeConditionCode(source_.conditionCode()));
}

}  // namespace zyr
