// CAP_AUTHOR: a text.
#pragma once

#include <string>

#include "twain/capabilities/capability.h"

namespace zyr {

class AuthorCapability : public Capability {
 public:
  AuthorCapability();
  TW_UINT16 Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  void Describe(std::string* name, std::string* value) const override;

 private:
  std::string text_;
};

}  // namespace zyr
