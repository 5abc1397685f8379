#include "acquire/image_dialog/win32/operation_states.h"

#include "foundation/support/phrase_lookup.h"

namespace zyr {

bool OperationStates::IsEnabled(uint32_t command) const {
  const auto known = enabled_.find(command);
  return known == enabled_.end() || known->second;
}

std::string OperationStates::Description(uint32_t command) const {
  const auto known = descriptions_.find(command);
  if (known != descriptions_.end()) return known->second;
  for (const OperationGroup& group : OperationTree()) {
    for (const OperationItem& item : group.items) {
      if (item.id == command) return GetPhrase(item.description);
    }
  }
  return {};
}

}  // namespace zyr
