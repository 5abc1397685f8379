#include "hardware/device/property_set.h"

#include "platform/ascii.h"

namespace zyr {

const std::string* PropertySet::Find(std::string_view name) const {
  const auto found = places_.find(LowerAscii(name));
  return found == places_.end() ? nullptr : &properties_[found->second].value;
}

std::string PropertySet::Get(std::string_view name) const {
  const std::string* value = Find(name);
  return value == nullptr ? std::string() : *value;
}

void PropertySet::Set(std::string_view name, std::string_view value) {
  const auto [place, isNew] = places_.try_emplace(LowerAscii(name), properties_.size());
  if (isNew) {
    properties_.push_back({std::string(name), std::string(value)});
  } else {
    properties_[place->second].value = value;
  }
}

void PropertySet::SetAll(const PropertySet& other) {
  for (const Property& property : other.properties_) Set(property.name, property.value);
}

}  // namespace zyr
