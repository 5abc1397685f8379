// Passwords do not stay in memory that has been given back.
#pragma once

#include <cstddef>
#include <string>

namespace zyr {

// Overwrites a text at the end of its life, which a compiler would leave out as pointless.
class WipedAtEnd {
 public:
  explicit WipedAtEnd(std::string& text) : text_(text) {}
  ~WipedAtEnd() {
    volatile char* const letters = text_.data();
    for (size_t i = 0; i < text_.size(); ++i) letters[i] = '\0';
  }
  WipedAtEnd(const WipedAtEnd&) = delete;
  WipedAtEnd& operator=(const WipedAtEnd&) = delete;

 private:
  std::string& text_;
};

}  // namespace zyr
