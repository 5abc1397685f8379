// CAP_SUPPORTEDCAPS: the numbers of all capabilities, its own first.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "twain/capabilities/capability.h"

namespace zyr {

class SupportedCapsCapability : public Capability {
 public:
  SupportedCapsCapability();
  TW_UINT16 Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  void Describe(std::string* name, std::string* value) const override;

  void Add(TW_UINT16 capabilityId);  // once
  void Remove(TW_UINT16 capabilityId);

 private:
  std::vector<uint16_t> ids_;
};

}  // namespace zyr
