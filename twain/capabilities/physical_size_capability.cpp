#include "twain/capabilities/physical_size_capability.h"

#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "twain/capabilities/capability_store.h"
#include "twain/capabilities/list_capabilities.h"
#include "twain/containers.h"
#include "twain/names.h"

namespace zyr {

PhysicalSizeCapability::PhysicalSizeCapability(TW_UINT16 capabilityId, double inches, double pixels)
    : Capability(capabilityId, kQueryReadOnly), inches_(inches), pixels_(pixels) {}

TW_UINT16 PhysicalSizeCapability::Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  const auto* units = FindSibling<UnitsCapability>(*this, ICAP_UNITS);
  const TW_FIX32 size =
      ToFix32(units != nullptr ? units->ConvertFromInches(inches_, pixels_) : inches_);
  return Finish(BuildOneValue(capability, TWTY_FIX32, &size), conditionCode);
}

TW_UINT16 PhysicalSizeCapability::GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Get(capability, conditionCode);
}

TW_UINT16 PhysicalSizeCapability::GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Get(capability, conditionCode);
}

void PhysicalSizeCapability::Describe(std::string* name, std::string* value) const {
  *name = CapabilityName(id);
  *value = FormatText(GetFormatPhrase("%lf Inches  %.0lf pixels").c_str(), inches_, pixels_);
}

}  // namespace zyr
