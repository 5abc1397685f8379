// A named bag of named texts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zyr {

struct Property {
  std::string name;
  std::string value;
};

// In the order in which the names first came. Names compare without regard to case. No lock.
class PropertySet {
 public:
  explicit PropertySet(std::string name) : name_(std::move(name)) {}

  const std::string& name() const { return name_; }
  const std::vector<Property>& properties() const { return properties_; }

  // Null if there is none of that name.
  const std::string* Find(std::string_view name) const;
  // The empty text if there is none of that name.
  std::string Get(std::string_view name) const;
  // Replaces the value, or appends the pair.
  void Set(std::string_view name, std::string_view value);
  // Sets every pair of `other` here.
  void SetAll(const PropertySet& other);

 private:
  std::string name_;
  std::vector<Property> properties_;
  std::unordered_map<std::string, size_t> places_;  // in properties_, by name in lower case
};

}  // namespace zyr
