#include "hardware/device/identity_memory.h"

#include <algorithm>

#include "foundation/support/little_endian.h"

namespace zyr {
namespace {

constexpr uint32_t kEntrySize = 0x20;
constexpr uint32_t kFirstEntry = 0x20;
constexpr uint32_t kDirectoryLimit = 0x1C20;

constexpr std::string_view kEndMark = "\xFF\xFF\xFF\xFF";
constexpr std::string_view kDefectMark = "newd";
constexpr std::string_view kIdentityMark = "XCCD";
constexpr size_t kDefectLength = 4;  // offsets within an entry
constexpr size_t kDefectText = 6;
constexpr size_t kIdentity = 1;  // so that it begins with the "CCD" of the mark
constexpr size_t kLongestIdentity = 15;
constexpr char kNoIdentity[] = "No_ID_C";

std::string_view TextOf(std::span<const uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string IdentityIn(std::string_view entry) {
  const std::string_view text = entry.substr(kIdentity, kLongestIdentity);
  return std::string(text.substr(0, text.find('\0')));
}

}  // namespace

MemoryDirectory ParseDefectDataAddress(std::span<const uint8_t> memory) {
  MemoryDirectory directory;
  const size_t end = std::min<size_t>(memory.size(), kDirectoryLimit);
  for (uint32_t offset = kFirstEntry; offset < end; offset += kEntrySize) {
    const auto bytes = memory.subspan(offset, std::min<size_t>(kEntrySize, memory.size() - offset));
    const std::string_view entry = TextOf(bytes);
    if (entry.starts_with(kEndMark)) {
      directory.directory_end = offset;
      break;
    }
    if (entry.starts_with(kDefectMark) && entry.size() >= kDefectText) {
      // It is the list before that must not be too long, and not the one told here.
      if (directory.defect_text_length + kEntrySize > kIdentityMemorySize) break;
      directory.defect_text_length = LoadLittleEndian<uint16_t>(&bytes[kDefectLength]);
      directory.defect_text_offset = offset + kDefectText;
    } else if (entry.starts_with(kIdentityMark)) {
      directory.identity_entry_offset = offset;
      directory.id = IdentityIn(entry);
    }
  }
  if (directory.id.empty()) directory.id = kNoIdentity;
  return directory;
}

std::string_view DefectTextIn(std::span<const uint8_t> memory, const MemoryDirectory& directory) {
  const size_t start = std::min<size_t>(directory.defect_text_offset, memory.size());
  return TextOf(memory).substr(start, directory.defect_text_length);
}

}  // namespace zyr
