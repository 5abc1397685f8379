#include "twain/capabilities/author_capability.h"

#include "twain/containers.h"
#include "twain/names.h"

namespace zyr {
namespace {

constexpr const char* kDefaultAuthor = "Korvida, Inc.";

}  // namespace

AuthorCapability::AuthorCapability() : Capability(CAP_AUTHOR, kQueryAll), text_(kDefaultAuthor) {}

TW_UINT16 AuthorCapability::Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  std::string item = text_;
  item.resize(ItemSize(TWTY_STR128), '\0');
  return Finish(BuildOneValue(capability, TWTY_STR128, item.data()), conditionCode);
}

TW_UINT16 AuthorCapability::GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Get(capability, conditionCode);
}

TW_UINT16 AuthorCapability::GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Get(capability, conditionCode);
}

TW_UINT16 AuthorCapability::Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  std::string text;
  const TW_UINT16 status = ReadOneValueString(capability, &text);
  if (status == TWCC_SUCCESS) text_ = text;
  return Finish(status, conditionCode);
}

TW_UINT16 AuthorCapability::Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  text_ = kDefaultAuthor;
  return GetCurrent(capability, conditionCode);
}

void AuthorCapability::Describe(std::string* name, std::string* value) const {
  *name = CapabilityName(id);
  *value = text_;
}

}  // namespace zyr
