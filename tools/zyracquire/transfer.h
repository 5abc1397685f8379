// Taking an image from a source and saving it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/zyracquire/capabilities.h"
#include "tools/zyracquire/manager_port.h"
#include "tools/zyracquire/options.h"
#include "tools/zyracquire/report.h"

namespace zyr {

// One image: its description, its pixels, its file. The source is left in TWAIN state 7, or in 6 if
// it failed before; ending the transfer is the caller's, since that makes the source give the image
// up.
class ImageTransfer {
 public:
  ImageTransfer(OpenSource source, const AcquireOptions& options, const AgreedTerms& terms,
                bool showProgress)
      : source_(source), options_(options), terms_(terms), showProgress_(showProgress) {}

  // Prints a line about the image, or what failed. Images are counted from 1.
  ExitStatus Take(uint32_t number);

 private:
  bool Describe();
  std::optional<GreyPicture> TakeNative();
  std::optional<GreyPicture> TakeMemory();
  ExitStatus TakeFile();
  ExitStatus Save(GreyPicture picture);
  std::optional<uint32_t> BufferSize();
  TW_UINT16 TakeStrip(std::vector<uint8_t>* buffer, TW_IMAGEMEMXFER* strip);
  void ShowProgress(uint32_t rows) const;

  // Prints why; null, so that it can be returned.
  std::nullopt_t Failed(const std::string& reason) const;
  std::nullopt_t Refused(TW_UINT32 dataGroup, TW_UINT16 dataArgumentType, TW_UINT16 message,
                         TW_UINT16 result) const;

  OpenSource source_;
  const AcquireOptions& options_;
  const AgreedTerms terms_;
  const bool showProgress_;
  TW_IMAGEINFO info_{};
  ImageReport report_;
};

}  // namespace zyr
