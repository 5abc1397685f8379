// ICAP_XRESOLUTION and ICAP_YRESOLUTION: a list of resolutions of which one is current. Held in
// dots per inch, negotiated in the units of ICAP_UNITS.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "twain/capabilities/capability.h"

namespace zyr {

class ResolutionCapability : public Capability {
 public:
  explicit ResolutionCapability(TW_UINT16 capabilityId);
  TW_UINT16 Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  // Only a value that converts to a member exactly is taken; in pixels there is none.
  TW_UINT16 Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  // In dots per inch, whatever the units.
  void Describe(std::string* name, std::string* value) const override;

  virtual bool IsSupported(double dotsPerInch) const;
  virtual double ToUnits(double dotsPerInch) const;
  virtual double FromUnits(double value) const;

  std::vector<double> values;
  double defaultValue = 0.0;
  double currentValue = 0.0;

 private:
  TW_UINT16 Answer(TW_CAPABILITY* capability, double dotsPerInch) const;
  TW_UINT16 SetOneValue(const TW_CAPABILITY& capability);
  TW_UINT16 SetFromList(const TW_CAPABILITY& capability);
  void LogOffered(const std::vector<double>& offered) const;
  std::optional<double> Choose(const std::vector<double>& offered) const;
};

}  // namespace zyr
