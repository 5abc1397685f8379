// Capability containers as an application makes them and reads them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/support/format.h"
#include "platform/global_memory.h"
#include "twain/containers.h"

namespace zyr::test {

template <typename Value>
std::string Raw(Value value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof(value));
}

template <typename Value>
Value Take(const std::string& bytes, size_t offset) {
  Value value{};
  if (offset + sizeof(value) <= bytes.size()) {
    std::memcpy(&value, bytes.data() + offset, sizeof(value));
  }
  return value;
}

// An item of `type` that stands for `value`.
inline std::string RawItem(TW_UINT16 type, double value) {
  if (type == TWTY_FIX32) return Raw(ToFix32(value));
  if (type == TWTY_UINT32) return Raw(static_cast<uint32_t>(value));
  return Raw(static_cast<uint16_t>(static_cast<int32_t>(value)));
}

inline std::string OneValueBytes(TW_UINT16 type, double value) {
  std::string bytes = Raw(type) + RawItem(type, value);
  if (bytes.size() < sizeof(TW_ONEVALUE)) bytes.resize(sizeof(TW_ONEVALUE));
  return bytes;
}

inline std::string EnumerationBytes(TW_UINT16 type, const std::vector<double>& items,
                                    uint32_t currentIndex = 0, uint32_t defaultIndex = 0) {
  std::string bytes =
      Raw(type) + Raw(static_cast<uint32_t>(items.size())) + Raw(currentIndex) + Raw(defaultIndex);
  for (const double item : items) bytes += RawItem(type, item);
  return bytes;
}

inline TW_HANDLE BlockOf(const std::string& bytes) {
  const TW_HANDLE handle = platform::AllocateMovable(bytes.size(), false);
  const platform::LockedBlock block(handle);
  if (block.address() != nullptr) std::memcpy(block.address(), bytes.data(), bytes.size());
  return handle;
}

inline std::string BytesOf(TW_HANDLE handle) {
  const platform::LockedBlock block(handle);
  if (block.address() == nullptr) return {};
  return std::string(static_cast<const char*>(block.address()), block.size());
}

inline std::string ItemText(const std::string& bytes, size_t offset, TW_UINT16 type) {
  switch (type) {
    case TWTY_INT16:
      return FormatText("%d", Take<int16_t>(bytes, offset));
    case TWTY_UINT16:
      return FormatText("%d", Take<uint16_t>(bytes, offset));
    case TWTY_UINT32:
      return FormatText("%lu", Lu(Take<uint32_t>(bytes, offset)));
    case TWTY_FIX32:
      return FormatText("%.4f", FromFix32(Take<TW_FIX32>(bytes, offset)));
    case TWTY_STR128:
      return bytes.substr(offset).c_str();
    default:
      return "-";
  }
}

inline std::string TypeText(TW_UINT16 type) {
  switch (type) {
    case TWTY_INT16:
      return "INT16";
    case TWTY_UINT16:
      return "UINT16";
    case TWTY_UINT32:
      return "UINT32";
    case TWTY_BOOL:
      return "BOOL";
    case TWTY_FIX32:
      return "FIX32";
    case TWTY_STR128:
      return "STR128";
    default:
      return "?";
  }
}

inline std::string ItemsText(const std::string& bytes, size_t offset, TW_UINT16 type) {
  std::string text;
  const auto count = Take<uint32_t>(bytes, 2);
  for (uint32_t i = 0; i < count; ++i) {
    text += " " + ItemText(bytes, offset + i * ItemSize(type), type);
  }
  return text;
}

// A container in words: kind, type of the items, values, size of the block. A boolean's value,
// which is never filled in, reads "-".
inline std::string ContainerText(const TW_CAPABILITY& capability) {
  const std::string bytes = BytesOf(capability.hContainer);
  const auto type = Take<TW_UINT16>(bytes, 0);
  const std::string size = FormatText(", %d bytes", static_cast<int>(bytes.size()));
  switch (capability.ConType) {
    case TWON_ONEVALUE:
      return "OneValue " + TypeText(type) + " " + ItemText(bytes, 2, type) + size;
    case TWON_ARRAY:
      return "Array " + TypeText(type) + ItemsText(bytes, 6, type) + size;
    case TWON_ENUMERATION:
      return "Enumeration " + TypeText(type) + ItemsText(bytes, 14, type) +
             FormatText(", current #%lu, default #%lu", Lu(Take<uint32_t>(bytes, 6)),
                        Lu(Take<uint32_t>(bytes, 10))) +
             size;
    default:
      return "?";
  }
}

}  // namespace zyr::test
