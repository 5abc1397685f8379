// A named block of bytes that travels with an image. The package only moves and releases it.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

namespace zyr {

struct AttachedBlock {
  std::string extraName;
  void* extraData = nullptr;  // malloc'd if owned
  uint32_t extraSize = 0;
  bool extraOwned = false;
  uint32_t extraType = 0;
  uint32_t extraFlags = 0;

  AttachedBlock() = default;
  AttachedBlock(AttachedBlock&& other) noexcept { *this = std::move(other); }
  AttachedBlock& operator=(AttachedBlock&& other) noexcept {
    if (this == &other) return *this;
    Release();
    extraName = std::exchange(other.extraName, {});
    extraData = std::exchange(other.extraData, nullptr);
    extraSize = std::exchange(other.extraSize, 0);
    extraOwned = std::exchange(other.extraOwned, false);
    extraType = std::exchange(other.extraType, 0);
    extraFlags = std::exchange(other.extraFlags, 0);
    return *this;
  }
  ~AttachedBlock() { Release(); }

  void Release() {
    if (extraOwned) std::free(extraData);
    extraName.clear();
    extraData = nullptr;
    extraSize = extraType = extraFlags = 0;
    extraOwned = false;
  }
};

}  // namespace zyr
