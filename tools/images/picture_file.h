// Writing of grey pictures, and the description of picture files that others wrote.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/images/grey_picture.h"

namespace zyr {

enum class PictureFormat { kPng, kBmp, kTiff };

const char* ExtensionOf(PictureFormat format);
// BMP knows no grey of 16 bits.
bool CanHold(PictureFormat format, uint32_t bits);

// The bytes of a whole file. PNG and BMP give the resolution in pixels per metre, PGM has none.
// EncodeBmp takes 8 bits only.
std::vector<uint8_t> EncodePng(const GreyPicture& picture);
std::vector<uint8_t> EncodeBmp(const GreyPicture& picture);
std::vector<uint8_t> EncodePgm(const GreyPicture& picture);

// Replaces the file at `path`. False, and no file left, if it cannot be written whole.
bool WritePicture(const GreyPicture& picture, PictureFormat format, const std::string& path);
bool WriteBytes(const std::vector<uint8_t>& bytes, const std::string& path);

struct PictureInfo {
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t bits = 0;  // a pixel
  double xDpi = 0;    // 0: not told
  double yDpi = 0;
  uint64_t fileSize = 0;
};

// What a BMP, TIFF or JPEG file says of itself; null if it is none of these or is torn ahead of
// that.
std::optional<PictureInfo> InspectPicture(const std::string& path);

}  // namespace zyr
