// What stands in a capability's container.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "twain/twain_types.h"

namespace zyr {

struct CapabilityValues {
  TW_UINT16 itemType = 0;
  // Ready to show: "2 (Memory)", "300", "TRUE", a text.
  std::vector<std::string> items;
  // Positions of items; of an enumeration only, and only if they are within the list.
  std::optional<size_t> current;
  std::optional<size_t> defaultItem;
  // Of a range, the five numbers in one text.
  std::string range;
  std::vector<uint32_t> numbers;  // the items as numbers, 0 for what is none
};

// Null if the block is too small for what it claims, or the container is of no known kind.
std::optional<CapabilityValues> ReadContainer(TW_UINT16 capability, TW_UINT16 containerType,
                                              std::span<const uint8_t> block);

std::string ItemTypeName(TW_UINT16 itemType);

// One row of the table of capabilities.
struct CapabilityRow {
  std::string name;
  std::string type;
  std::string current;
  std::string defaultValue;
  std::string offered;
};

// Columns aligned; the widest one, the offered values, is folded at `width` characters.
std::string FormatTable(const std::vector<CapabilityRow>& rows, size_t width);

}  // namespace zyr
