#include "tools/zyracquire/capability_values.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "twain/names.h"

namespace zyr {
namespace {

using Block = std::span<const uint8_t>;

constexpr size_t kOneValueItems = 2;
constexpr size_t kArrayItems = 6;
constexpr size_t kEnumerationItems = 14;
constexpr size_t kRangeSize = 22;

uint32_t Number(Block block, size_t at, size_t bytes) {
  uint32_t value = 0;
  for (size_t i = bytes; i-- > 0;) value = value << 8 | block[at + i];
  return value;
}

struct ItemType {
  TW_UINT16 type;
  const char* name;
  size_t size;
};

constexpr ItemType kItemTypes[] = {
    {TWTY_INT8, "INT8", 1},      {TWTY_INT16, "INT16", 2},   {TWTY_INT32, "INT32", 4},
    {TWTY_UINT8, "UINT8", 1},    {TWTY_UINT16, "UINT16", 2}, {TWTY_UINT32, "UINT32", 4},
    {TWTY_BOOL, "BOOL", 2},      {TWTY_FIX32, "FIX32", 4},   {TWTY_FRAME, "FRAME", 16},
    {TWTY_STR32, "STR32", 34},   {TWTY_STR64, "STR64", 66},  {TWTY_STR128, "STR128", 130},
    {TWTY_STR255, "STR255", 256}};

const ItemType* FindType(TW_UINT16 type) {
  const auto* found = std::find_if(std::begin(kItemTypes), std::end(kItemTypes),
                                   [=](const ItemType& entry) { return entry.type == type; });
  return found == std::end(kItemTypes) ? nullptr : found;
}

bool IsText(TW_UINT16 type) {
  return type == TWTY_STR32 || type == TWTY_STR64 || type == TWTY_STR128 || type == TWTY_STR255;
}

std::string Fix32Text(Block item) {
  const auto whole = static_cast<int16_t>(Number(item, 0, 2));
  char text[32];
  std::snprintf(text, sizeof text, "%g", whole + Number(item, 2, 2) / 65536.0);
  return text;
}

std::string FrameText(Block item) {
  return Fix32Text(item) + " " + Fix32Text(item.subspan(4)) + " " + Fix32Text(item.subspan(8)) +
         " " + Fix32Text(item.subspan(12));
}

// The word for a value of this capability, empty where numbers speak for themselves.
std::string WordFor(TW_UINT16 capability, uint32_t value) {
  switch (capability) {
    case CAP_SUPPORTEDCAPS:
      return CapabilityName(value);
    case ICAP_XFERMECH:
      return XferMechName(value);
    case ICAP_PIXELFLAVOR:
      return PixelFlavorName(value);
    case ICAP_PLANARCHUNKY:
      return PlanarChunkyName(value);
    case ICAP_COMPRESSION:
      return CompressionName(value);
    case ICAP_UNITS:
      return UnitsName(value);
    case ICAP_PIXELTYPE:
      return PixelTypeName(value);
    case ICAP_BITORDER:
      return BitOrderName(value);
    case ICAP_IMAGEFILEFORMAT:
      return ImageFileFormatName(value);
    case ICAP_LIGHTPATH:
      return LightPathName(value);
    default:
      return {};
  }
}

std::string NumberText(TW_UINT16 capability, TW_UINT16 type, uint32_t value) {
  if (type == TWTY_BOOL) return (value & 0xFFFF) != 0 ? "TRUE" : "FALSE";
  const std::string word = WordFor(capability, value);
  if (capability == CAP_SUPPORTEDCAPS) return word;
  std::string number = std::to_string(value);
  if (type == TWTY_INT8) number = std::to_string(static_cast<int8_t>(value));
  if (type == TWTY_INT16) number = std::to_string(static_cast<int16_t>(value));
  if (type == TWTY_INT32) number = std::to_string(static_cast<int32_t>(value));
  return word.empty() ? number : number + " (" + word + ")";
}

void AddItem(TW_UINT16 capability, Block item, CapabilityValues* values) {
  uint32_t number = 0;
  std::string text;
  if (IsText(values->itemType)) {
    const auto end = std::find(item.begin(), item.end(), uint8_t{0});
    text.assign(item.begin(), end);
  } else if (values->itemType == TWTY_FIX32) {
    text = Fix32Text(item);
  } else if (values->itemType == TWTY_FRAME) {
    text = FrameText(item);
  } else {
    number = Number(item, 0, item.size());
    text = NumberText(capability, values->itemType, number);
  }
  values->items.push_back(text);
  values->numbers.push_back(number);
}

// Sources are known that give a text less room than its type has; it ends with the block then.
bool ReadOneValue(TW_UINT16 capability, Block block, CapabilityValues* values) {
  const Block item = block.subspan(kOneValueItems);
  const size_t size = FindType(values->itemType)->size;
  if (item.size() < size && !IsText(values->itemType)) return false;
  AddItem(capability, item.first(std::min(item.size(), size)), values);
  return true;
}

bool ReadList(TW_UINT16 capability, Block block, size_t itemsAt, CapabilityValues* values) {
  if (block.size() < itemsAt) return false;
  const size_t size = FindType(values->itemType)->size;
  const uint32_t count = Number(block, 2, 4);
  if (count > (block.size() - itemsAt) / size) return false;
  for (size_t i = 0; i < count; ++i) {
    AddItem(capability, block.subspan(itemsAt + i * size, size), values);
  }
  if (itemsAt != kEnumerationItems) return true;
  const uint32_t current = Number(block, 6, 4);
  const uint32_t defaultItem = Number(block, 10, 4);
  if (current < count) values->current = current;
  if (defaultItem < count) values->defaultItem = defaultItem;
  return true;
}

bool ReadRange(TW_UINT16 capability, Block block, CapabilityValues* values) {
  if (block.size() < kRangeSize) return false;
  const auto field = [&](size_t at) {
    return values->itemType == TWTY_FIX32
               ? Fix32Text(block.subspan(at, 4))
               : NumberText(capability, values->itemType, Number(block, at, 4));
  };
  values->range = field(2) + " to " + field(6) + " in steps of " + field(10);
  values->items = {field(18), field(14)};
  values->numbers = {Number(block, 18, 4), Number(block, 14, 4)};
  values->current = 0;
  values->defaultItem = 1;
  return true;
}

size_t Widest(const std::vector<CapabilityRow>& rows, std::string CapabilityRow::*column) {
  size_t widest = 0;
  for (const CapabilityRow& row : rows) widest = std::max(widest, (row.*column).size());
  return widest;
}

// Words that end with a comma stay whole.
std::vector<std::string> Fold(const std::string& text, size_t width) {
  std::vector<std::string> lines;
  size_t start = 0;
  while (text.size() - start > width) {
    const size_t comma = text.rfind(", ", start + width - 1);
    if (comma == std::string::npos || comma <= start) break;
    lines.push_back(text.substr(start, comma + 1 - start));
    start = comma + 2;
  }
  lines.push_back(text.substr(start));
  return lines;
}

std::string Padded(const std::string& text, size_t width) {
  return text + std::string(text.size() < width ? width - text.size() : 0, ' ') + "  ";
}

}  // namespace

std::optional<CapabilityValues> ReadContainer(TW_UINT16 capability, TW_UINT16 containerType,
                                              std::span<const uint8_t> block) {
  CapabilityValues values;
  if (block.size() < kOneValueItems) return std::nullopt;
  values.itemType = static_cast<TW_UINT16>(Number(block, 0, 2));
  if (FindType(values.itemType) == nullptr) return std::nullopt;
  bool read = false;
  if (containerType == TWON_ONEVALUE) read = ReadOneValue(capability, block, &values);
  if (containerType == TWON_ARRAY) read = ReadList(capability, block, kArrayItems, &values);
  if (containerType == TWON_ENUMERATION) {
    read = ReadList(capability, block, kEnumerationItems, &values);
  }
  if (containerType == TWON_RANGE) read = ReadRange(capability, block, &values);
  if (!read) return std::nullopt;
  return values;
}

std::string ItemTypeName(TW_UINT16 itemType) {
  const ItemType* type = FindType(itemType);
  return type == nullptr ? "type " + std::to_string(itemType) : type->name;
}

std::string FormatTable(const std::vector<CapabilityRow>& rows, size_t width) {
  std::vector<CapabilityRow> all = {{"Capability", "Type", "Current", "Default", "Offered"}};
  all.insert(all.end(), rows.begin(), rows.end());
  const size_t name = Widest(all, &CapabilityRow::name);
  const size_t type = Widest(all, &CapabilityRow::type);
  const size_t current = Widest(all, &CapabilityRow::current);
  const size_t defaultValue = Widest(all, &CapabilityRow::defaultValue);
  const size_t before = name + type + current + defaultValue + 8;
  const size_t room = width > before + 24 ? width - before : 24;
  std::string table;
  for (const CapabilityRow& row : all) {
    std::string line = Padded(row.name, name) + Padded(row.type, type) +
                       Padded(row.current, current) + Padded(row.defaultValue, defaultValue);
    for (const std::string& part : Fold(row.offered, room)) {
      line += part;
      line.erase(line.find_last_not_of(' ') + 1);
      table += line + "\n";
      line.assign(before, ' ');
    }
  }
  return table;
}

}  // namespace zyr
