// Where the parts of a document are printed to.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/support/buffered_file.h"

namespace zyr {

// Blanks by which an inner level is set off from the one around it.
constexpr uint32_t kXmlIndentStep = 3;

// The end of a file or of a string, neither of which it owns. Printing to null does nothing.
class XmlTarget {
 public:
  explicit XmlTarget(BufferedFile* file) : file_(file) {}
  explicit XmlTarget(std::string* text) : text_(text) {}

  bool IsNull() const { return file_ == nullptr && text_ == nullptr; }

  template <typename... Parts>
  void Put(const Parts&... parts) const {
    (PutText(parts), ...);
  }
  template <typename... Parts>
  void PutIndented(uint32_t indent, const Parts&... parts) const {
    PutBlanks(indent);
    Put(parts...);
  }

 private:
  void PutText(std::string_view text) const {
    if (file_ != nullptr) file_->Write(text.data(), text.size());
    if (text_ != nullptr) text_->append(text);
  }
  void PutBlanks(size_t count) const {
    static constexpr std::string_view kBlanks = "                                                ";
    for (; count > 0; count -= std::min(count, kBlanks.size())) PutText(kBlanks.substr(0, count));
  }

  BufferedFile* file_ = nullptr;
  std::string* text_ = nullptr;
};

}  // namespace zyr
