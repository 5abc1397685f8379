// The text of an XML document, a position in it, and why the last attempt to read from there
// failed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "foundation/xml/characters.h"

namespace zyr::xml {

// Reading operations move over what they match and return true, or stay, note a failure and return
// false. Failing is an everyday event, as alternatives are tried by failing; so a message is only
// pointed to until somebody wants its text. Views that are handed out look into the document's
// text.
class Scanner {
 public:
  // Neither is copied.
  explicit Scanner(std::string_view text, size_t position = 0);
  Scanner(const Scanner&) = delete;
  Scanner& operator=(const Scanner&) = delete;

  size_t Tell() const { return position_; }
  bool AtEnd() const { return position_ >= text_.size(); }
  void Seek(size_t position) {
    if (!abandoned_) position_ = position;
  }
  bool StandsAt(std::string_view literal) const {
    return text_.substr(position_, literal.size()) == literal;
  }
  std::string_view Since(size_t start) const { return text_.substr(start, position_ - start); }

  // Each returns false. The messages are literals: they are not copied.
  bool Fail(const char* message);
  bool FailAt(size_t position, const char* message);  // and goes back to `position`
  bool FailAtEndIn(const char* what);                 // the input ends where `what` should stand
  bool Fail(std::string message);
  // Puts the text of the last failure in the place of the format's "%s".
  void ExplainFailure(const char* format);
  std::string FailureText() const;
  size_t FailurePosition() const { return failurePosition_; }

  // Gives the whole text up: from here on the scanner stands at its end, whatever is asked, and the
  // present failure is the last one.
  void Abandon();

  // Optional white space; true if there was any.
  bool SkipSpace() {
    if (AtEnd()) return FailAtEndIn("space");
    return !TakeAll(kSpace).empty();
  }
  Scanner& AfterSpace() {
    SkipSpace();
    return *this;
  }
  // A token, in upper or lower case.
  bool Match(std::string_view literal);
  // An equals sign with white space around it.
  bool MatchEquals();

  // White space and a name.
  bool ReadName(std::string_view* name = nullptr);
  bool ReadNmToken();
  bool ReadNumber(CharacterClass digits);
  // What stands between quotation marks of one kind, as it stands.
  bool ReadQuoted(std::string_view* text = nullptr);
  // All before the terminator, which itself is left.
  bool ReadUntil(std::string_view terminator, std::string_view* text);
  // Characters of one class, as many as there are.
  std::string_view TakeAll(CharacterClass type) {
    const size_t start = position_;
    while (position_ < text_.size() && IsOf(type, text_[position_])) ++position_;
    return Since(start);
  }

 private:
  friend class Nesting;

  void NoteFailure(const char* message, const char* endedIn);

  const std::string_view text_;
  size_t position_;
  bool abandoned_ = false;
  size_t depth_ = 0;

  // The last failure: a message, or what the input ended in, or a text of its own.
  const char* message_ = "";
  const char* endedIn_ = nullptr;
  std::string ownText_;
  size_t failurePosition_ = 0;
};

// The frame of one production: it may have white space before it, needs something to follow, and
// leaves the scanner where it was if a part is missing.
class Production {
 public:
  // `what` names the production in the message about the end of the input.
  Production(Scanner& scanner, const char* what);

  bool Begins() const { return begins_; }
  // Passes on whether a part matched, and fails with the message if it did not.
  bool Need(bool matched, const char* message) {
    return matched || scanner_.FailAt(start_, message);
  }
  // The same, leaving the part's own message.
  bool Need(bool matched) {
    if (!matched) scanner_.Seek(start_);
    return matched;
  }
  size_t start() const { return start_; }

 private:
  Scanner& scanner_;
  const size_t start_;
  bool begins_;
};

// One level of what nests by recursion. The text is abandoned when there are too many.
class Nesting {
 public:
  explicit Nesting(Scanner& scanner);
  ~Nesting() { --scanner_.depth_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  Scanner& scanner_;
};

// The text with "\r\n", "\n\r" and "\r", in this order, made "\n".
std::string WithPlainLineEnds(std::string_view text);

}  // namespace zyr::xml
