// ICAP_PHYSICALWIDTH and ICAP_PHYSICALHEIGHT: the largest image, in the units of ICAP_UNITS.
#pragma once

#include <string>

#include "twain/capabilities/capability.h"

namespace zyr {

class PhysicalSizeCapability : public Capability {
 public:
  PhysicalSizeCapability(TW_UINT16 capabilityId, double inches, double pixels);
  TW_UINT16 Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  void Describe(std::string* name, std::string* value) const override;

 private:
  const double inches_;
  const double pixels_;
};

}  // namespace zyr
