#include "hardware/device/block_chain.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "foundation/support/little_endian.h"

namespace zyr {
namespace {

// Ahead of each block.
constexpr uint16_t kEndMarker = 0xFFFF;
constexpr uint16_t kFillerMarker = 0x0000;
constexpr uint8_t kFillerEnd[] = {0xFF, 0x00};

// A block: header, payload, checksum.
constexpr size_t kSizeOffset = 1;
constexpr size_t kKindOffset = 6;
constexpr size_t kDescriptionOffset = 7;
constexpr size_t kDescriptionSize = 16;
constexpr size_t kHeaderSize = kDescriptionOffset + kDescriptionSize;
constexpr size_t kChecksumSize = 2;

constexpr uint16_t kChecksumPolynomial = 0x1021;
constexpr uint16_t kChecksumStart = 0x0101;

uint16_t ChecksumOf(std::span<const uint8_t> bytes) {
  uint16_t sum = kChecksumStart;
  for (const uint8_t byte : bytes) {
    sum = static_cast<uint16_t>(sum ^ byte << 8);
    for (int bit = 0; bit < 8; ++bit) {
      sum = static_cast<uint16_t>((sum & 0x8000) != 0 ? sum << 1 ^ kChecksumPolynomial : sum << 1);
    }
  }
  return sum;
}

// Takes pieces off the front of the area; null for one that is not whole.
class AreaReader {
 public:
  explicit AreaReader(std::span<const uint8_t> area) : rest_(area) {}

  std::optional<std::span<const uint8_t>> Take(size_t count) {
    if (count > rest_.size()) return std::nullopt;
    const auto piece = rest_.first(count);
    rest_ = rest_.subspan(count);
    return piece;
  }

  std::optional<uint16_t> TakeMarker() {
    const auto bytes = Take(sizeof(uint16_t));
    if (!bytes) return std::nullopt;
    return LoadLittleEndian<uint16_t>(bytes->data());
  }

  // Anything up to an 0xFF, and a zero behind that.
  bool SkipFiller() {
    const auto end = std::find(rest_.begin(), rest_.end(), kFillerEnd[0]);
    Take(static_cast<size_t>(end - rest_.begin()));
    const auto mark = Take(sizeof kFillerEnd);
    return mark && mark->back() == kFillerEnd[1];
  }

  std::span<const uint8_t> rest() const { return rest_; }

 private:
  std::span<const uint8_t> rest_;
};

std::optional<MemoryBlock> TakeBlock(AreaReader& reader) {
  const std::span<const uint8_t> whole = reader.rest();
  const auto header = reader.Take(kHeaderSize);
  if (!header) return std::nullopt;
  const auto size = LoadLittleEndian<uint32_t>(&(*header)[kSizeOffset]);
  const auto payload = reader.Take(size);
  const auto checksum = reader.Take(kChecksumSize);
  if (!payload || !checksum) return std::nullopt;

  MemoryBlock block;
  block.kind = (*header)[kKindOffset];
  const auto text = header->subspan(kDescriptionOffset);
  block.description.assign(text.begin(), std::find(text.begin(), text.end(), 0));
  block.payload = *payload;
  block.isIntact = ChecksumOf(whole.first(kHeaderSize + payload->size())) ==
                   LoadLittleEndian<uint16_t>(checksum->data());
  return block;
}

}  // namespace

Result ParseBlockChain(std::span<const uint8_t> area, std::vector<MemoryBlock>* blocks) {
  blocks->clear();
  std::vector<MemoryBlock> found;
  AreaReader reader(area);
  while (found.size() < kMostBlocks) {
    const std::optional<uint16_t> marker = reader.TakeMarker();
    if (!marker) return kUnexpected;
    if (*marker == kEndMarker) break;
    if (*marker == kFillerMarker && !reader.SkipFiller()) return kUnexpected;
    std::optional<MemoryBlock> block = TakeBlock(reader);
    if (!block) return kUnexpected;
    found.push_back(*std::move(block));
  }
  *blocks = std::move(found);
  return kOk;
}

}  // namespace zyr
