// The formats behind ReadPicture. Each returns null, with a few words in `error`, for what it
// cannot read: "is no grey picture".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/images/grey_picture.h"

namespace zyr {

// More than any sensor or scanner gives; what a torn header claims beyond is not allocated.
inline constexpr uint64_t kMostPixels = 64'000'000;

inline bool IsSaneSize(uint64_t width, uint64_t height) {
  return width > 0 && height > 0 && width <= kMostPixels && height <= kMostPixels / width;
}

bool IsPng(const std::vector<uint8_t>& file);
std::optional<GreyPicture> DecodePng(const std::vector<uint8_t>& file, std::string* error);

bool IsPgm(const std::vector<uint8_t>& file);
std::optional<GreyPicture> DecodePgm(const std::vector<uint8_t>& file, std::string* error);

bool IsTiff(const std::vector<uint8_t>& file);
// `file` must outlive the call only.
std::optional<GreyPicture> DecodeTiff(const std::vector<uint8_t>& file, std::string* error);

}  // namespace zyr
