// Memory of one transfer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace zyr {

// `size` zero bytes; null without memory.
inline std::unique_ptr<uint8_t[]> MakeTransferBuffer(size_t size) {
  return std::unique_ptr<uint8_t[]>(new (std::nothrow) uint8_t[size]());
}

}  // namespace zyr
