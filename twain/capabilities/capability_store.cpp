#include "twain/capabilities/capability_store.h"

#include <algorithm>
#include <utility>

#include "foundation/log/log.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/global_memory.h"
#include "twain/capabilities/capability_set.h"
#include "twain/names.h"

namespace zyr {
namespace {

constexpr int kColumnWidth = 200;
constexpr uint32_t kSettingsIndent = 5;

TW_CAPABILITY* CapabilityRecord(const Triplet& triplet) {
  return platform::IsReadable(triplet.data, sizeof(TW_CAPABILITY))
             ? static_cast<TW_CAPABILITY*>(triplet.data)
             : nullptr;
}

// Setting only reads the record; the rest answer in it.
bool CanRunOn(TW_CAPABILITY* data, TW_UINT16 message) {
  return data != nullptr &&
         (message == MSG_SET || platform::IsWritable(data, sizeof(TW_CAPABILITY)));
}

}  // namespace

CapabilityStore::~CapabilityStore() { CapabilityStore::Clear(); }

void CapabilityStore::Clear() {
  loaded_ = false;
  while (!capabilities_.empty()) capabilities_.erase(capabilities_.begin());
}

void CapabilityStore::Load() {
  if (loaded_) return;
  capabilities_.push_back(std::make_unique<SupportedCapsCapability>());
  capabilities_.back()->store = this;
  for (auto& capability : MakeCapabilities()) AddCapability(std::move(capability));
  loaded_ = true;
}

void CapabilityStore::AddCapability(std::unique_ptr<Capability> capability) {
  if (capability == nullptr) return;
  RemoveCapability(capability->id);
  Log().WriteLine("Adding Capability: %s", CapabilityName(capability->id).c_str());
  if (auto* supported = Find<SupportedCapsCapability>(CAP_SUPPORTEDCAPS)) {
    supported->Add(capability->id);
  } else {
    Log().WriteLine("Could not find CAP_SUPPORTEDCAPS!");
  }
  capability->store = this;
  capabilities_.push_back(std::move(capability));
}

void CapabilityStore::RemoveCapability(TW_UINT16 id) {
  size_t index = 0;
  if (FindCapStorageItem(id, &index) == nullptr) return;
  Log().WriteLine("Removing Capability: %s", CapabilityName(id).c_str());
  if (auto* supported = Find<SupportedCapsCapability>(CAP_SUPPORTEDCAPS)) {
    supported->Remove(id);
  } else {
    Log().WriteLine("Could not find CAP_SUPPORTEDCAPS!");
  }
  capabilities_.erase(capabilities_.begin() + static_cast<std::ptrdiff_t>(index));
}

Capability* CapabilityStore::FindCapStorageItem(TW_UINT16 id, size_t* index) const {
  const auto found = std::find_if(capabilities_.begin(), capabilities_.end(),
                                  [&](const auto& capability) { return capability->id == id; });
  if (found == capabilities_.end()) return nullptr;
  if (index != nullptr) *index = static_cast<size_t>(found - capabilities_.begin());
  return found->get();
}

void CapabilityStore::FillSettingsList(SettingsListControl* listControl) const {
  if (listControl == nullptr) return;
  listControl->RemoveAllColumns();
  listControl->AddColumn(GetPhrase("Capability"), kColumnWidth);
  listControl->AddColumn(GetPhrase("Setting"), kColumnWidth);
  for (const auto& capability : capabilities_) {
    std::string name;
    std::string value;
    capability->Describe(&name, &value);
    listControl->AddRow(name, value);
  }
}

void CapabilityStore::LogSettings(const char* title) const {
  if (!Log().IsOpen()) return;
  const bool untitled = title == nullptr || *title == '\0';
  Log().WriteLine("%s", untitled ? "Current TWAIN settings:" : title);
  for (const auto& capability : capabilities_) {
    std::string name;
    std::string value;
    capability->Describe(&name, &value);
    Log().WriteIndentedLine(kSettingsIndent, "%25s: %s", name.c_str(), value.c_str());
  }
}

TW_UINT16 CapabilityStore::HandleCapMessage(const Triplet& triplet, TW_UINT16* conditionCode) {
  TW_CAPABILITY* data = CapabilityRecord(triplet);
  if (data != nullptr) {
    Log().WriteLine("HandleCapMessage: %s  %s", CapabilityName(data->Cap).c_str(),
                    MessageName(triplet.message).c_str());
  }
  TW_UINT16 result = TWRC_FAILURE;
  if (CanRunOn(data, triplet.message)) {
    result = Run(triplet.message, data, conditionCode);
  } else {
    *conditionCode = TWCC_OPERATIONERROR;
  }
  Log().WriteLine("     %s / %s", ResultName(result).c_str(),
                  ConditionCodeName(*conditionCode).c_str());
  return result;
}

TW_UINT16 CapabilityStore::Run(TW_UINT16 message, TW_CAPABILITY* data, TW_UINT16* conditionCode) {
  Capability* item = FindCapStorageItem(data->Cap);
  if (item == nullptr) {
    LogMissing(data->Cap);
    *conditionCode = TWCC_CAPUNSUPPORTED;
    return TWRC_FAILURE;
  }
  switch (message) {
    case MSG_GET:
      return item->Get(data, conditionCode);
    case MSG_GETCURRENT:
      return item->GetCurrent(data, conditionCode);
    case MSG_GETDEFAULT:
      return item->GetDefault(data, conditionCode);
    case MSG_SET:
      return RunSet(*item, data, conditionCode);
    case MSG_RESET:
      return item->Reset(data, conditionCode);
    case MSG_QUERYSUPPORT:
      return item->QuerySupport(data, conditionCode);
    default:
      return TWRC_FAILURE;
  }
}

TW_UINT16 CapabilityStore::RunSet(Capability& item, TW_CAPABILITY* data, TW_UINT16* conditionCode) {
  Log().WriteLine("   Container Type: %s", ContainerTypeName(data->ConType).c_str());
  const TW_UINT16 result = item.Set(data, conditionCode);
  if (result == TWRC_SUCCESS && Log().IsOpen()) {
    std::string name;
    std::string value;
    item.Describe(&name, &value);
    Log().WriteLine("   Value Set To: %s", value.c_str());
  }
  return result;
}

void CapabilityStore::LogMissing(TW_UINT16 id) {
  Log().WriteLine("FindCapStorageItem: unable to find support for cap %s.",
                  CapabilityName(id).c_str());
}

}  // namespace zyr
