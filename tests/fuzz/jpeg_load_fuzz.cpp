// A JPEG file comes from outside: whatever it holds, it gives a whole picture, or none and a
// reason.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "imaging/formats/jpeg.h"
#include "imaging/image/image_error.h"
#include "platform/files.h"
#include "platform/host/host.h"

namespace {

constexpr char kPath[] = "C:\\fuzz.jpg";

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  zyr::platform::RemoveFile(kPath);
  zyr::platform::host::PutFile(kPath, {reinterpret_cast<const char*>(data), size});
  zyr::ReportImageError(0, "%s", "");
  zyr::CKIPImage image;
  const bool loaded = zyr::CKIPJpegLoader().Load(kPath, &image, nullptr);
  Require(loaded == image.IsValid());
  Require(loaded == zyr::LastImageErrorText().empty());
  if (!loaded) return 0;
  Require(image.fileSize == size);
  Require(image.bitsPerPixel() == 24 || image.IsGrey());
  Require(image.xResolution() != 0 && image.yResolution() != 0);
  return 0;
}
