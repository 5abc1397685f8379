#include "simulator/memory_2000.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace zyr::simulator {
namespace {

constexpr size_t kEntrySize = 0x20;
constexpr size_t kDirectoryBegin = 0x20;
constexpr size_t kDirectoryEnd = 0x1C20;
constexpr size_t kIdentityLength = 15;
constexpr size_t kTextAt = 6;  // in its entry

void Put(std::string_view bytes, size_t at, std::vector<uint8_t>* memory) {
  std::copy(bytes.begin(), bytes.end(), memory->begin() + static_cast<ptrdiff_t>(at));
}

// The reader adds 1 to a line unless it is one of the three at either edge.
uint32_t ListedLine(uint32_t line, uint32_t length) {
  return line >= 4 && line <= length - 2 ? line - 1 : line;
}

std::string Line(uint32_t x, uint32_t y, DefectKind kind) {
  return std::to_string(x) + ' ' + std::to_string(y) + ' ' + std::to_string(kind) + '\n';
}

}  // namespace

std::string DefectText(const std::vector<Defect>& defects, const Geometry& geometry) {
  std::string text;
  for (const Defect& defect : defects) {
    const uint32_t fromBottom = geometry.height - 1 - defect.y;
    switch (defect.kind) {
      case kBadPixel:
        // The list has no place for the first column and the bottom row.
        if (defect.x > 0 && fromBottom > 0) text += Line(defect.x - 1, fromBottom - 1, kBadPixel);
        break;
      case kBadColumn:
        text += Line(ListedLine(defect.x, geometry.width), 0, kBadColumn);
        break;
      case kBadRow:
        text += Line(0, ListedLine(fromBottom, geometry.height), kBadRow);
        break;
    }
  }
  return text;
}

void WriteMemory2000(const std::string& identity, const std::string& defectText,
                     std::vector<uint8_t>* memory) {
  size_t at = kDirectoryBegin;
  Put("test passed", at, memory);
  at += kEntrySize;

  std::string name = identity.substr(0, kIdentityLength);
  name.resize(kIdentityLength);
  Put("X", at, memory);
  Put(name, at + 1, memory);
  at += kEntrySize;

  const std::string_view text =
      std::string_view(defectText).substr(0, kDirectoryEnd - at - kTextAt);
  Put("newd", at, memory);
  (*memory)[at + 4] = static_cast<uint8_t>(text.size());
  (*memory)[at + 5] = static_cast<uint8_t>(text.size() >> 8);
  Put(text, at + kTextAt, memory);
}

}  // namespace zyr::simulator
