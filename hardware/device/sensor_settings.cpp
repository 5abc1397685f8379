#include "hardware/device/sensor_settings.h"

#include <memory>
#include <optional>
#include <utility>

#include "foundation/support/error.h"
#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "foundation/xml/xml_document.h"
#include "foundation/xml/xml_parser.h"
#include "platform/ascii.h"
#include "platform/directories.h"
#include "platform/files.h"

namespace zyr {
namespace {

constexpr const char* kNotFound = PhraseKey(
    "The settings file '%s' could not be found.  Please check the installation and then retry "
    "the operation.");
constexpr const char* kNotUnderstood = PhraseKey(
    "The settings file '%s' could not be properly interrupted.  Please check the installation "
    "and then retry the operation.");

// No installation comes near these; beyond them a file is some other file.
constexpr uint64_t kLargestFile = 16 * 1024 * 1024;  // bytes
constexpr size_t kMostProperties = 1'000'000;        // of all families together

std::string SettingsPath() {
  return FormatText("%s\\settings.xml", DirectoryOf(platform::ModulePath()).c_str());
}

// Differs whenever the file does.
std::string StampOf(const platform::FileStatus& status) {
  return std::to_string(status.size) + " " + std::to_string(status.createdTime) + " " +
         std::to_string(status.modifiedTime);
}

void CopyAttributes(const XmlNode& element, PropertySet* target) {
  for (const auto& attribute : element.attributes) target->Set(attribute->name, attribute->value);
}

// The sets of the families with what is common to all set over them; null if they are too many.
std::optional<std::vector<PropertySet>> SetsOf(const XmlNode& root) {
  PropertySet common("COMMON");
  std::vector<PropertySet> sets;
  size_t count = 0;
  for (const auto& child : root.children) {
    if (!child->IsElement()) continue;
    const XmlNode* id = child->FindAttribute("id");
    if (EqualIgnoringCase(child->name, "SENSOR") && id != nullptr) {
      sets.emplace_back(id->value);
      CopyAttributes(*child, &sets.back());
      count += sets.back().properties().size();
    } else if (child->name == "Debug") {
      CopyAttributes(*child, &common);
    }
  }
  if (count + sets.size() * common.properties().size() > kMostProperties) return std::nullopt;
  for (PropertySet& set : sets) set.SetAll(common);
  return sets;
}

// A text ends at its first zero; what stands behind it in the file does not count.
std::optional<std::vector<PropertySet>> Understand(const char* text) {
  XmlDocument document;
  XmlParser parser;
  if (!parser.ParseText(text, &document, 0)) return std::nullopt;
  const XmlNode* root = document.GetRoot();
  return root == nullptr ? std::nullopt : SetsOf(*root);
}

}  // namespace

bool SensorSettingsList::NeedsReload() const {
  const auto status = platform::StatusOf(SettingsPath());
  return !status || StampOf(*status) != timeStamp_;
}

bool SensorSettingsList::Load() {
  if (!NeedsReload()) return true;
  Clear();
  const std::string path = SettingsPath();
  const auto status = platform::StatusOf(path);
  const bool isTooLarge = status && status->size > kLargestFile;
  size_t size = 0;
  const auto text = isTooLarge ? nullptr : LoadFile(path, &size);
  if (text == nullptr && !isTooLarge) {
    SetError(kErrorUnclassified, kNotFound, path.c_str());
    return false;
  }
  auto sets = isTooLarge ? std::nullopt : Understand(text.get());
  if (!sets) {
    SetError(kErrorUnclassified, kNotUnderstood, path.c_str());
    return false;
  }
  sets_ = *std::move(sets);
  if (status) timeStamp_ = StampOf(*status);
  return true;
}

const PropertySet* SensorSettingsList::Find(std::string_view name) const {
  for (const PropertySet& set : sets_) {
    if (EqualIgnoringCase(set.name(), name)) return &set;
  }
  return nullptr;
}

bool SensorSettingsList::CopyTo(std::string_view name, PropertySet* target) const {
  const PropertySet* set = Find(name);
  if (set != nullptr) target->SetAll(*set);
  return set != nullptr;
}

void SensorSettingsList::Clear() { sets_.clear(); }

SensorSettingsList& SensorSettings() {
  static SensorSettingsList list;
  return list;
}

}  // namespace zyr
