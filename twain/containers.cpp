#include "twain/containers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <optional>
#include <span>

#include "platform/global_memory.h"

namespace zyr {
namespace {

constexpr size_t kOneValueHead = offsetof(TW_ONEVALUE, Item);
constexpr size_t kArrayHead = offsetof(TW_ARRAY, ItemList);
constexpr size_t kEnumerationHead = offsetof(TW_ENUMERATION, ItemList);

uint16_t AsItIs(uint16_t item) { return item; }

// --- Building

// Allocates a block of `bytes` bytes, has it filled, and only then gives it to the capability.
template <typename Fill>
TW_UINT16 Build(TW_CAPABILITY* capability, TW_UINT16 conType, size_t bytes, Fill fill) {
  capability->hContainer = nullptr;
  const platform::GlobalHandle handle = platform::AllocateMovable(bytes, false);
  if (handle == nullptr) return TWCC_LOWMEMORY;
  {
    const platform::LockedBlock block(handle);
    if (block.address() != nullptr) {
      fill(static_cast<uint8_t*>(block.address()));
      capability->ConType = conType;
      capability->hContainer = handle;
      return TWCC_SUCCESS;
    }
  }
  platform::FreeBlock(handle);
  return TWCC_LOWMEMORY;
}

template <typename Value>
uint32_t IndexOf(std::span<const Value> values, Value wanted) {
  const auto found = std::find(values.begin(), values.end(), wanted);
  return found == values.end() ? 0 : static_cast<uint32_t>(found - values.begin());
}

// The indices are looked up among the values, before these become items.
template <typename Item, typename Value, typename Convert>
TW_UINT16 BuildEnumeration(TW_CAPABILITY* capability, TW_UINT16 itemType,
                           std::span<const Value> values, Value defaultValue, Value currentValue,
                           Convert convert) {
  const size_t bytes = kEnumerationHead + values.size() * sizeof(Item) + 1;
  return Build(capability, TWON_ENUMERATION, bytes, [&](uint8_t* block) {
    TW_ENUMERATION head{};
    head.ItemType = itemType;
    head.NumItems = static_cast<uint32_t>(values.size());
    head.CurrentIndex = IndexOf(values, currentValue);
    head.DefaultIndex = IndexOf(values, defaultValue);
    std::memcpy(block, &head, kEnumerationHead);
    uint8_t* out = block + kEnumerationHead;
    for (const Value value : values) {
      const Item item = convert(value);
      std::memcpy(out, &item, sizeof(Item));
      out += sizeof(Item);
    }
  });
}

// --- Reading

bool IsUint16Type(TW_UINT16 itemType) { return itemType == TWTY_INT16 || itemType == TWTY_UINT16; }

bool IsBoolType(TW_UINT16 itemType) { return itemType == TWTY_BOOL; }

bool IsFix32Type(TW_UINT16 itemType) { return itemType == TWTY_FIX32; }

template <typename Value>
Value Load(const uint8_t* from) {
  Value value;
  std::memcpy(&value, from, sizeof(value));
  return value;
}

// Hands the item's type and the block's bytes from the item on to `read`, which returns a TWCC_
// value.
template <typename Read>
TW_UINT16 ReadOneValue(const TW_CAPABILITY* capability, Read read) {
  if (capability->ConType != TWON_ONEVALUE) return TWCC_BADVALUE;
  const platform::LockedBlock block(capability->hContainer);
  if (block.address() == nullptr) return TWCC_LOWMEMORY;
  if (block.size() < kOneValueHead) return TWCC_BADVALUE;
  const auto* bytes = static_cast<const uint8_t*>(block.address());
  return read(Load<TW_UINT16>(bytes),
              std::span(bytes + kOneValueHead, block.size() - kOneValueHead));
}

template <typename Item, typename Value, typename Convert>
TW_UINT16 ReadNumber(const TW_CAPABILITY* capability, bool (*accepts)(TW_UINT16), Value* value,
                     Convert convert) {
  if (value != nullptr) *value = {};
  if (capability == nullptr || value == nullptr) return TWCC_OPERATIONERROR;
  return ReadOneValue(capability, [&](TW_UINT16 itemType, std::span<const uint8_t> item) {
    if (!accepts(itemType) || item.size() < sizeof(Item)) return TWCC_BADVALUE;
    *value = convert(Load<Item>(item.data()));
    return TWCC_SUCCESS;
  });
}

template <typename Item, typename Value, typename Convert>
TW_UINT16 ReadEnumeration(const TW_CAPABILITY* capability, bool (*accepts)(TW_UINT16),
                          std::vector<Value>* values, Value* defaultItem, Value* currentItem,
                          Convert convert) {
  if (values != nullptr) values->clear();
  if (defaultItem != nullptr) *defaultItem = {};
  if (currentItem != nullptr) *currentItem = {};
  if (capability == nullptr || values == nullptr || defaultItem == nullptr ||
      currentItem == nullptr) {
    return TWCC_OPERATIONERROR;
  }
  if (capability->ConType != TWON_ENUMERATION) return TWCC_BADVALUE;
  const platform::LockedBlock block(capability->hContainer);
  if (block.address() == nullptr) return TWCC_LOWMEMORY;
  if (block.size() < kEnumerationHead) return TWCC_BADVALUE;
  const auto* bytes = static_cast<const uint8_t*>(block.address());
  TW_ENUMERATION head{};
  std::memcpy(&head, bytes, kEnumerationHead);
  const size_t room = (block.size() - kEnumerationHead) / sizeof(Item);
  if (!accepts(head.ItemType) || head.NumItems > room) return TWCC_BADVALUE;
  values->reserve(head.NumItems);
  for (size_t i = 0; i < head.NumItems; ++i) {
    values->push_back(convert(Load<Item>(bytes + kEnumerationHead + i * sizeof(Item))));
  }
  if (head.DefaultIndex < head.NumItems) *defaultItem = (*values)[head.DefaultIndex];
  if (head.CurrentIndex < head.NumItems) *currentItem = (*values)[head.CurrentIndex];
  return TWCC_SUCCESS;
}

// --- Strings

// Bytes of a string type with its terminating zero, 0 for another type.
size_t StringSize(TW_UINT16 itemType) {
  switch (itemType) {
    case TWTY_STR32:
      return sizeof(TW_STR32);
    case TWTY_STR64:
      return sizeof(TW_STR64);
    case TWTY_STR128:
      return sizeof(TW_STR128);
    case TWTY_STR255:
      return sizeof(TW_STR255);
    default:
      return 0;
  }
}

// The characters up to the zero, at most `size` - 1. Null if `isThere` denies a byte before that.
template <typename IsThere>
std::optional<std::string> ReadText(const char* text, size_t size, IsThere isThere) {
  std::string read;
  while (read.size() < size - 1) {
    if (!isThere(read.size())) return std::nullopt;
    const char character = text[read.size()];
    if (character == '\0') break;
    read.push_back(character);
  }
  return read;
}

std::optional<std::string> ReadTextInItem(std::span<const uint8_t> item, size_t size) {
  return ReadText(reinterpret_cast<const char*>(item.data()), size,
                  [&](size_t index) { return index < item.size(); });
}

std::optional<std::string> ReadTextAtAddress(std::span<const uint8_t> item) {
  if (item.size() < sizeof(uint32_t)) return std::nullopt;
  const auto* text = reinterpret_cast<const char*>(uintptr_t{Load<uint32_t>(item.data())});
  return ReadText(text, sizeof(TW_STR255),
                  [&](size_t index) { return platform::IsReadable(text + index, 1); });
}

// --- Numbers

uint16_t TruncateTo16Bits(double value) {
  if (!std::isfinite(value)) return 0;
  return static_cast<uint16_t>(static_cast<int32_t>(std::fmod(std::trunc(value), 65536.0)));
}

}  // namespace

uint32_t ItemSize(TW_UINT16 itemType) {
  switch (itemType) {
    case TWTY_INT8:
    case TWTY_UINT8:
      return 1;
    case TWTY_INT16:
    case TWTY_UINT16:
      return 2;
    case TWTY_INT32:
    case TWTY_UINT32:
    case TWTY_FIX32:
      return 4;
    case TWTY_FRAME:
      return 16;
    case TWTY_STR32:
    case TWTY_STR64:
    case TWTY_STR128:
    case TWTY_STR255:
      return 34;
    default:
      return 0;
  }
}

TW_FIX32 ToFix32(double value) {
  TW_FIX32 fix{};
  fix.Whole = static_cast<TW_INT16>(TruncateTo16Bits(value));
  fix.Frac = TruncateTo16Bits((value - fix.Whole) * 65536.0 + 0.5);
  return fix;
}

double FromFix32(TW_FIX32 value) { return value.Whole + value.Frac * 1.52587890625e-05; }

TW_UINT16 BuildOneValue(TW_CAPABILITY* capability, TW_UINT16 itemType, const void* value) {
  if (capability == nullptr || value == nullptr) return TWCC_OPERATIONERROR;
  const size_t itemBytes = ItemSize(itemType);
  const size_t bytes = sizeof(TW_ONEVALUE) + itemBytes;
  return Build(capability, TWON_ONEVALUE, bytes, [&](uint8_t* block) {
    std::memcpy(block, &itemType, sizeof(itemType));
    if (itemBytes == 0) return;
    uint8_t* item = block + kOneValueHead;
    std::memcpy(item, value, itemBytes);
    std::memset(item + itemBytes, 0, bytes - kOneValueHead - itemBytes);
  });
}

TW_UINT16 BuildArray(TW_CAPABILITY* capability, const std::vector<uint16_t>& values) {
  if (capability == nullptr) return TWCC_OPERATIONERROR;
  const size_t itemBytes = values.size() * sizeof(uint16_t);
  return Build(capability, TWON_ARRAY, kArrayHead + itemBytes + 1, [&](uint8_t* block) {
    TW_ARRAY head{};
    head.ItemType = TWTY_UINT16;
    head.NumItems = static_cast<uint32_t>(values.size());
    std::memcpy(block, &head, kArrayHead);
    std::copy_n(reinterpret_cast<const uint8_t*>(values.data()), itemBytes, block + kArrayHead);
  });
}

TW_UINT16 BuildEnumerationUint16(TW_CAPABILITY* capability, const std::vector<uint16_t>& values,
                                 uint16_t defaultValue, uint16_t currentValue) {
  if (capability == nullptr) return TWCC_OPERATIONERROR;
  return BuildEnumeration<uint16_t>(capability, TWTY_UINT16, std::span(values), defaultValue,
                                    currentValue, AsItIs);
}

TW_UINT16 BuildEnumerationUint16(TW_CAPABILITY* capability, uint32_t count, const uint16_t* list,
                                 uint16_t defaultValue, uint16_t currentValue) {
  if (capability == nullptr || list == nullptr) return TWCC_OPERATIONERROR;
  return BuildEnumeration<uint16_t>(capability, TWTY_UINT16, std::span(list, count), defaultValue,
                                    currentValue, AsItIs);
}

TW_UINT16 BuildEnumerationFix32(TW_CAPABILITY* capability, const std::vector<double>& values,
                                double defaultValue, double currentValue) {
  if (capability == nullptr) return TWCC_OPERATIONERROR;
  return BuildEnumeration<TW_FIX32>(capability, TWTY_FIX32, std::span(values), defaultValue,
                                    currentValue, ToFix32);
}

TW_UINT16 ReadOneValueUint16(const TW_CAPABILITY* capability, uint16_t* value) {
  return ReadNumber<uint16_t>(capability, IsUint16Type, value, AsItIs);
}

TW_UINT16 ReadOneValueBool(const TW_CAPABILITY* capability, uint16_t* value) {
  return ReadNumber<uint16_t>(capability, IsBoolType, value, AsItIs);
}

TW_UINT16 ReadOneValueFix32(const TW_CAPABILITY* capability, double* value) {
  return ReadNumber<TW_FIX32>(capability, IsFix32Type, value, FromFix32);
}

TW_UINT16 ReadOneValueString(const TW_CAPABILITY* capability, std::string* value) {
  if (value != nullptr) value->clear();
  if (capability == nullptr || value == nullptr) return TWCC_OPERATIONERROR;
  return ReadOneValue(capability, [&](TW_UINT16 itemType, std::span<const uint8_t> item) {
    const size_t size = StringSize(itemType);
    if (size == 0) return TWCC_BADVALUE;
    constexpr bool kAddressFits = sizeof(void*) == sizeof(uint32_t);
    const auto text = kAddressFits ? ReadTextAtAddress(item) : ReadTextInItem(item, size);
    if (!text) return TWCC_BADVALUE;
    *value = *text;
    return TWCC_SUCCESS;
  });
}

TW_UINT16 ReadEnumerationUint16(const TW_CAPABILITY* capability, std::vector<uint16_t>* values,
                                uint16_t* defaultItem, uint16_t* currentItem) {
  return ReadEnumeration<uint16_t>(capability, IsUint16Type, values, defaultItem, currentItem,
                                   AsItIs);
}

TW_UINT16 ReadEnumerationFix32(const TW_CAPABILITY* capability, std::vector<double>* values,
                               double* defaultItem, double* currentItem) {
  return ReadEnumeration<TW_FIX32>(capability, IsFix32Type, values, defaultItem, currentItem,
                                   FromFix32);
}

}  // namespace zyr
