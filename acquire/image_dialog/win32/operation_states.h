// What changes about the operations of the image dialog while it stands.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "acquire/image_dialog/operation_tree.h"

namespace zyr {

// Of those that nothing was said about: enabled, and described by the tree. User-interface thread
// only.
class OperationStates {
 public:
  void SetEnabled(uint32_t command, bool enabled) { enabled_[command] = enabled; }
  void SetDescription(uint32_t command, const std::string& text) { descriptions_[command] = text; }

  bool IsEnabled(uint32_t command) const;
  // Translated; empty for what is no operation.
  std::string Description(uint32_t command) const;

 private:
  std::map<uint32_t, bool> enabled_;
  std::map<uint32_t, std::string> descriptions_;
};

}  // namespace zyr
