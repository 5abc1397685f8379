// ICAP_BITDEPTH: the depths of each pixel type.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "twain/capabilities/capability.h"

namespace zyr {

struct BitDepthEntry {
  uint16_t pixelType = 0;
  uint16_t samplesPerPixel = 0;
  uint16_t bitsPerPixel = 0;
  std::array<uint16_t, 8> bitsPerSample{};
  std::array<uint16_t, 10> supportedDepths{};
  uint16_t supportedCount = 0;
  uint16_t preferredDepth = 0;  // taken from a list that holds it; 0 none
  uint16_t defaultDepth = 0;
  uint16_t currentDepth = 0;

  bool Supports(uint16_t depth) const;
};

// Each message operation first drops the entries of pixel types that ICAP_PIXELTYPE does not list,
// and works on the entry of its current value; without that entry it gives TWCC_BADVALUE. Entries
// that are returned stay valid until the next operation.
class BitDepthCapability : public Capability {
 public:
  BitDepthCapability();
  TW_UINT16 Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  // Brings all entries back; those without a pixel type last until the next operation.
  TW_UINT16 Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  void Describe(std::string* name, std::string* value) const override;

  virtual void KeepPixelType(uint16_t pixelType);
  virtual void FillEntries();
  virtual void PruneToPixelTypes();
  // The current pixel type's entry, null if there is none.
  virtual BitDepthEntry* GetCurrentEntry();
  virtual BitDepthEntry* FindEntry(uint16_t pixelType);
  virtual uint16_t GetBitsPerPixel(uint16_t pixelType);     // 8 without an entry
  virtual uint16_t GetSamplesPerPixel(uint16_t pixelType);  // 1 without an entry
  // Leaves `bits` alone without an entry.
  virtual void GetBitsPerSample(uint16_t pixelType, std::array<uint16_t, 8>* bits);

 private:
  BitDepthEntry* PrunedCurrentEntry();

  std::vector<BitDepthEntry> entries_;
};

}  // namespace zyr
