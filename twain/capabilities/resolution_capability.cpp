#include "twain/capabilities/resolution_capability.h"

#include <algorithm>
#include <bit>

#include "foundation/log/log.h"
#include "foundation/support/format.h"
#include "twain/capabilities/capability_store.h"
#include "twain/capabilities/list_capabilities.h"
#include "twain/containers.h"
#include "twain/names.h"

namespace zyr {
namespace {

constexpr double kStep = 100.0;
constexpr double kLargest = 1000.0;
constexpr double kDefault = 300.0;

}  // namespace

ResolutionCapability::ResolutionCapability(TW_UINT16 capabilityId)
    : Capability(capabilityId, kQueryAll), defaultValue(kDefault), currentValue(kDefault) {
  for (double value = kStep; value <= kLargest; value += kStep) values.push_back(value);
}

TW_UINT16 ResolutionCapability::Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  std::vector<double> converted(values.size());
  std::transform(values.begin(), values.end(), converted.begin(),
                 [&](double value) { return ToUnits(value); });
  return Finish(
      BuildEnumerationFix32(capability, converted, ToUnits(defaultValue), ToUnits(currentValue)),
      conditionCode);
}

TW_UINT16 ResolutionCapability::GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Finish(Answer(capability, defaultValue), conditionCode);
}

TW_UINT16 ResolutionCapability::GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Finish(Answer(capability, currentValue), conditionCode);
}

TW_UINT16 ResolutionCapability::Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  switch (capability->ConType) {
    case TWON_ONEVALUE:
      return Finish(SetOneValue(*capability), conditionCode);
    case TWON_ENUMERATION:
      return Finish(SetFromList(*capability), conditionCode);
    default:
      return Finish(TWCC_BADVALUE, conditionCode);
  }
}

TW_UINT16 ResolutionCapability::Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  currentValue = defaultValue;
  return GetCurrent(capability, conditionCode);
}

void ResolutionCapability::Describe(std::string* name, std::string* value) const {
  *name = CapabilityName(id);
  *value = FormatText("%0.2lf", currentValue);
}

bool ResolutionCapability::IsSupported(double dotsPerInch) const {
  return std::find(values.begin(), values.end(), dotsPerInch) != values.end();
}

double ResolutionCapability::ToUnits(double dotsPerInch) const {
  const auto* units = FindSibling<UnitsCapability>(*this, ICAP_UNITS);
  return units != nullptr ? units->ResolutionToUnits(dotsPerInch) : dotsPerInch;
}

double ResolutionCapability::FromUnits(double value) const {
  const auto* units = FindSibling<UnitsCapability>(*this, ICAP_UNITS);
  return units != nullptr ? units->ResolutionFromUnits(value) : value;
}

// Single values have always gone out as a 16-bit number with the lowest two bytes of the double in
// it, which are 0 for the members in inches; applications take the enumeration instead.
TW_UINT16 ResolutionCapability::Answer(TW_CAPABILITY* capability, double dotsPerInch) const {
  const auto lowest = static_cast<uint16_t>(std::bit_cast<uint64_t>(ToUnits(dotsPerInch)));
  return BuildOneValue(capability, TWTY_UINT16, &lowest);
}

TW_UINT16 ResolutionCapability::SetOneValue(const TW_CAPABILITY& capability) {
  double value = 0.0;
  const TW_UINT16 status = ReadOneValueFix32(&capability, &value);
  if (status != TWCC_SUCCESS) return status;
  const std::optional<double> chosen = Choose({value});
  if (!chosen) return TWCC_BADVALUE;
  currentValue = *chosen;
  return TWCC_SUCCESS;
}

TW_UINT16 ResolutionCapability::SetFromList(const TW_CAPABILITY& capability) {
  std::vector<double> offered;
  double offeredDefault = 0.0;
  double offeredCurrent = 0.0;
  const TW_UINT16 status =
      ReadEnumerationFix32(&capability, &offered, &offeredDefault, &offeredCurrent);
  if (status != TWCC_SUCCESS) return status;
  LogOffered(offered);
  const std::optional<double> chosen = Choose(offered);
  if (!chosen) return TWCC_BADVALUE;
  currentValue = *chosen;
  return TWCC_SUCCESS;
}

void ResolutionCapability::LogOffered(const std::vector<double>& offered) const {
  uint32_t number = 0;
  for (const double value : offered) {
    ++number;
    if (id == ICAP_XRESOLUTION) {
      // The low half of the double read as an integer: so these lines have always looked.
      const auto lowHalf = static_cast<int32_t>(std::bit_cast<uint64_t>(value));
      Log().WriteLine("           %lu: %d", Lu(number), lowHalf);
    } else {
      Log().WriteLine("           %lu: %lf", Lu(number), value);
    }
  }
}

// In dots per inch.
std::optional<double> ResolutionCapability::Choose(const std::vector<double>& offered) const {
  for (const double value : offered) {
    const double dotsPerInch = FromUnits(value);
    if (IsSupported(dotsPerInch)) return dotsPerInch;
  }
  return std::nullopt;
}

}  // namespace zyr
