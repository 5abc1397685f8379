#include "twain/capabilities/bit_depth_capability.h"

#include <algorithm>
#include <optional>

#include "foundation/log/log.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "twain/capabilities/capability_store.h"
#include "twain/capabilities/list_capabilities.h"
#include "twain/containers.h"
#include "twain/names.h"

namespace zyr {
namespace {

constexpr BitDepthEntry kGrayscale = {.pixelType = TWPT_GRAY,
                                      .samplesPerPixel = 1,
                                      .bitsPerPixel = 8,
                                      .bitsPerSample = {8},
                                      .supportedDepths = {8, 16},
                                      .supportedCount = 2,
                                      .preferredDepth = 16,
                                      .defaultDepth = 8,
                                      .currentDepth = 8};

constexpr BitDepthEntry kRgb = {.pixelType = TWPT_RGB,
                                .samplesPerPixel = 3,
                                .bitsPerPixel = 24,
                                .bitsPerSample = {8, 8, 8},
                                .supportedDepths = {8},
                                .supportedCount = 1,
                                .preferredDepth = 8,
                                .defaultDepth = 8,
                                .currentDepth = 8};

TW_UINT16 BuildDepth(TW_CAPABILITY* capability, const BitDepthEntry* entry,
                     uint16_t BitDepthEntry::*depth) {
  return entry != nullptr ? BuildOneValue(capability, TWTY_UINT16, &(entry->*depth))
                          : TWCC_BADVALUE;
}

TW_UINT16 SetOneDepth(const TW_CAPABILITY& capability, BitDepthEntry& entry) {
  uint16_t depth = 0;
  const TW_UINT16 status = ReadOneValueUint16(&capability, &depth);
  if (status != TWCC_SUCCESS) return status;
  Log().WriteLine("      Bit depth specified: %s %lu", PixelTypeName(entry.pixelType).c_str(),
                  Lu(depth));
  if (!entry.Supports(depth)) return TWCC_BADVALUE;
  entry.currentDepth = depth;
  return TWCC_SUCCESS;
}

std::optional<uint16_t> ChooseDepth(const std::vector<uint16_t>& offered,
                                    const BitDepthEntry& entry) {
  const std::string pixelType = PixelTypeName(entry.pixelType);
  const uint16_t preferred = entry.preferredDepth;
  if (preferred != 0 && entry.Supports(preferred) &&
      std::find(offered.begin(), offered.end(), preferred) != offered.end()) {
    Log().WriteLine("      Preferred Bit depth selected: %s %lu", pixelType.c_str(), Lu(preferred));
    return preferred;
  }
  const auto found = std::find_if(offered.begin(), offered.end(),
                                  [&](uint16_t depth) { return entry.Supports(depth); });
  if (found == offered.end()) return std::nullopt;
  Log().WriteLine("      Bit depth selected: %s %lu", pixelType.c_str(), Lu(*found));
  return *found;
}

TW_UINT16 SetDepthFromList(const TW_CAPABILITY& capability, BitDepthEntry& entry) {
  std::vector<uint16_t> offered;
  uint16_t offeredDefault = 0;
  uint16_t offeredCurrent = 0;
  const TW_UINT16 status =
      ReadEnumerationUint16(&capability, &offered, &offeredDefault, &offeredCurrent);
  if (status != TWCC_SUCCESS) return status;
  if (Log().IsOpen()) {
    const std::string pixelType = PixelTypeName(entry.pixelType);
    uint32_t number = 0;
    for (const uint16_t depth : offered) {
      Log().WriteLine("           %lu: %s %lu", Lu(++number), pixelType.c_str(), Lu(depth));
    }
  }
  const std::optional<uint16_t> chosen = ChooseDepth(offered, entry);
  if (!chosen) return TWCC_BADVALUE;
  entry.currentDepth = *chosen;
  return TWCC_SUCCESS;
}

}  // namespace

bool BitDepthEntry::Supports(uint16_t depth) const {
  const auto end = supportedDepths.begin() + supportedCount;
  return std::find(supportedDepths.begin(), end, depth) != end;
}

BitDepthCapability::BitDepthCapability() : Capability(ICAP_BITDEPTH, kQueryAll) {
  BitDepthCapability::FillEntries();
}

TW_UINT16 BitDepthCapability::Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  const BitDepthEntry* entry = PrunedCurrentEntry();
  if (entry == nullptr) return Finish(TWCC_BADVALUE, conditionCode);
  return Finish(
      BuildEnumerationUint16(capability, entry->supportedCount, entry->supportedDepths.data(),
                             entry->defaultDepth, entry->currentDepth),
      conditionCode);
}

TW_UINT16 BitDepthCapability::GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Finish(BuildDepth(capability, PrunedCurrentEntry(), &BitDepthEntry::defaultDepth),
                conditionCode);
}

TW_UINT16 BitDepthCapability::GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Finish(BuildDepth(capability, PrunedCurrentEntry(), &BitDepthEntry::currentDepth),
                conditionCode);
}

TW_UINT16 BitDepthCapability::Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  BitDepthEntry* entry = PrunedCurrentEntry();
  if (entry == nullptr) {
    Log().WriteLine("      Could not find the current pixel depth");
    return Finish(TWCC_BADVALUE, conditionCode);
  }
  switch (capability->ConType) {
    case TWON_ONEVALUE:
      return Finish(SetOneDepth(*capability, *entry), conditionCode);
    case TWON_ENUMERATION:
      return Finish(SetDepthFromList(*capability, *entry), conditionCode);
    default:
      return Finish(TWCC_BADVALUE, conditionCode);
  }
}

TW_UINT16 BitDepthCapability::Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  PrunedCurrentEntry();
  FillEntries();
  return Finish(BuildDepth(capability, GetCurrentEntry(), &BitDepthEntry::currentDepth),
                conditionCode);
}

void BitDepthCapability::Describe(std::string* name, std::string* value) const {
  *name = CapabilityName(id);
  value->clear();
  for (const BitDepthEntry& entry : entries_) {
    if (!value->empty()) *value += " / ";
    *value +=
        FormatText("%s (%lu)", PixelTypeName(entry.pixelType).c_str(), Lu(entry.currentDepth));
  }
  if (entries_.empty()) *value = GetPhrase("None");
}

void BitDepthCapability::KeepPixelType(uint16_t pixelType) {
  std::erase_if(entries_, [&](const BitDepthEntry& entry) { return entry.pixelType != pixelType; });
}

void BitDepthCapability::FillEntries() { entries_ = {kGrayscale, kRgb}; }

void BitDepthCapability::PruneToPixelTypes() {
  const auto* pixelTypes = FindSibling<ListCapability>(*this, ICAP_PIXELTYPE);
  if (pixelTypes == nullptr) return;
  std::erase_if(entries_, [&](const BitDepthEntry& entry) {
    return !pixelTypes->IsSupported(entry.pixelType);
  });
}

BitDepthEntry* BitDepthCapability::GetCurrentEntry() {
  const auto* pixelTypes = FindSibling<ListCapability>(*this, ICAP_PIXELTYPE);
  if (pixelTypes == nullptr) {
    Log().WriteLine("      Could not find ICAP_PIXELTYPE capability");
    return nullptr;
  }
  return FindEntry(pixelTypes->currentValue);
}

BitDepthEntry* BitDepthCapability::FindEntry(uint16_t pixelType) {
  Log().WriteLine("      Current bit depth: %s", PixelTypeName(pixelType).c_str());
  const auto found =
      std::find_if(entries_.begin(), entries_.end(),
                   [&](const BitDepthEntry& entry) { return entry.pixelType == pixelType; });
  return found == entries_.end() ? nullptr : &*found;
}

uint16_t BitDepthCapability::GetBitsPerPixel(uint16_t pixelType) {
  const BitDepthEntry* entry = FindEntry(pixelType);
  if (entry == nullptr) return 8;
  return static_cast<uint16_t>(entry->currentDepth * entry->samplesPerPixel);
}

uint16_t BitDepthCapability::GetSamplesPerPixel(uint16_t pixelType) {
  const BitDepthEntry* entry = FindEntry(pixelType);
  return entry != nullptr ? entry->samplesPerPixel : 1;
}

void BitDepthCapability::GetBitsPerSample(uint16_t pixelType, std::array<uint16_t, 8>* bits) {
  const BitDepthEntry* entry = FindEntry(pixelType);
  if (entry != nullptr) *bits = entry->bitsPerSample;
}

BitDepthEntry* BitDepthCapability::PrunedCurrentEntry() {
  PruneToPixelTypes();
  return GetCurrentEntry();
}

}  // namespace zyr
