#include "twain/capabilities/list_capabilities.h"

#include <algorithm>

#include "foundation/log/log.h"
#include "twain/containers.h"
#include "twain/names.h"

namespace zyr {

ListCapability::ListCapability(const ListTerms& terms)
    : Capability(terms.id, kQueryAll), terms_(terms) {
  ListCapability::FillValues();
}

TW_UINT16 ListCapability::Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Finish(BuildEnumerationUint16(capability, values, defaultValue, currentValue),
                conditionCode);
}

TW_UINT16 ListCapability::GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Finish(BuildOneValue(capability, TWTY_UINT16, &defaultValue), conditionCode);
}

TW_UINT16 ListCapability::GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Finish(BuildOneValue(capability, TWTY_UINT16, &currentValue), conditionCode);
}

TW_UINT16 ListCapability::Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  switch (capability->ConType) {
    case TWON_ONEVALUE:
      return Finish(SetOneValue(*capability), conditionCode);
    case TWON_ENUMERATION:
      return Finish(SetFromList(*capability), conditionCode);
    default:
      return Finish(TWCC_BADVALUE, conditionCode);
  }
}

TW_UINT16 ListCapability::Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  if (terms_.resetRefills) {
    FillValues();
  } else {
    currentValue = defaultValue;
  }
  return GetCurrent(capability, conditionCode);
}

void ListCapability::Describe(std::string* name, std::string* value) const {
  *name = CapabilityName(id);
  *value = ValueName(currentValue);
}

void ListCapability::FillValues() {
  values = terms_.values;
  defaultValue = currentValue = terms_.defaultValue;
}

bool ListCapability::IsSupported(uint16_t value) const {
  return std::find(values.begin(), values.end(), value) != values.end();
}

void ListCapability::SetOnly(uint16_t value) {
  values = {value};
  defaultValue = currentValue = value;
}

std::optional<uint16_t> ListCapability::Choose(const std::vector<uint16_t>& offered) const {
  const auto found = std::find_if(offered.begin(), offered.end(),
                                  [&](uint16_t value) { return IsSupported(value); });
  return found == offered.end() ? std::nullopt : std::optional(*found);
}

TW_UINT16 ListCapability::SetOneValue(const TW_CAPABILITY& capability) {
  uint16_t value = 0;
  const TW_UINT16 status = ReadOneValueUint16(&capability, &value);
  if (status != TWCC_SUCCESS) return status;
  if (!IsSupported(value)) return TWCC_BADVALUE;
  currentValue = value;
  return TWCC_SUCCESS;
}

TW_UINT16 ListCapability::SetFromList(const TW_CAPABILITY& capability) {
  std::vector<uint16_t> offered;
  uint16_t offeredDefault = 0;
  uint16_t offeredCurrent = 0;
  const TW_UINT16 status =
      ReadEnumerationUint16(&capability, &offered, &offeredDefault, &offeredCurrent);
  if (status != TWCC_SUCCESS) return status;
  if (Log().IsOpen()) {
    uint32_t number = 0;
    for (const uint16_t value : offered) {
      Log().WriteLine("           %lu: %s", Lu(++number), ValueName(value).c_str());
    }
  }
  const std::optional<uint16_t> chosen = Choose(offered);
  if (!chosen) return TWCC_BADVALUE;
  currentValue = *chosen;
  return TWCC_SUCCESS;
}

XferMechCapability::XferMechCapability()
    : ListCapability({.id = ICAP_XFERMECH,
                      .values = {TWSX_NATIVE, TWSX_FILE, TWSX_MEMORY},
                      .defaultValue = TWSX_MEMORY,
                      .describe = XferMechName}) {}

TW_UINT16 XferMechCapability::Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  Log().WriteLine("Returning XFERMECH: %s", ValueName(currentValue).c_str());
  return ListCapability::Get(capability, conditionCode);
}

bool XferMechCapability::ListHasMemory(const std::vector<uint16_t>& list) const {
  return std::find(list.begin(), list.end(), TWSX_MEMORY) != list.end();
}

std::optional<uint16_t> XferMechCapability::Choose(const std::vector<uint16_t>& offered) const {
  if (ListHasMemory(offered)) return TWSX_MEMORY;
  return ListCapability::Choose(offered);
}

PixelTypeCapability::PixelTypeCapability()
    : ListCapability({.id = ICAP_PIXELTYPE,
                      .values = {TWPT_GRAY, TWPT_RGB},
                      .defaultValue = TWPT_GRAY,
                      .describe = PixelTypeName}) {}

std::optional<uint16_t> PixelTypeCapability::Choose(const std::vector<uint16_t>& offered) const {
  const std::optional<uint16_t> chosen = ListCapability::Choose(offered);
  if (chosen) Log().WriteLine("      Pixel type selected: %s", ValueName(*chosen).c_str());
  return chosen;
}

UnitsCapability::UnitsCapability()
    : ListCapability({.id = ICAP_UNITS,
                      .values = {TWUN_INCHES, TWUN_CENTIMETERS, TWUN_PIXELS},
                      .defaultValue = TWUN_INCHES,
                      .describe = UnitsName}) {}

double UnitsCapability::ConvertFromInches(double inches, double pixels) const {
  switch (currentValue) {
    case TWUN_CENTIMETERS:
      return inches * 2.54;
    case TWUN_PIXELS:
      return pixels;
    default:
      return inches;
  }
}

double UnitsCapability::ResolutionToUnits(double dotsPerInch) const {
  switch (currentValue) {
    case TWUN_CENTIMETERS:
      return dotsPerInch * 0.39370078740157477;
    case TWUN_PIXELS:
      return 1.0;
    default:
      return dotsPerInch;
  }
}

double UnitsCapability::ResolutionFromUnits(double value) const {
  switch (currentValue) {
    case TWUN_CENTIMETERS:
      return value * 2.54;
    case TWUN_PIXELS:
      return 1.0;
    default:
      return value;
  }
}

}  // namespace zyr
