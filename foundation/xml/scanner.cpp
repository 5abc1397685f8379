#include "foundation/xml/scanner.h"

#include <utility>

#include "foundation/support/format.h"
#include "foundation/xml/xml_parser.h"
#include "platform/ascii.h"

namespace zyr::xml {
namespace {

std::string Replaced(std::string_view text, std::string_view from, char to) {
  std::string replaced;
  replaced.reserve(text.size());
  for (size_t at; (at = text.find(from)) != std::string_view::npos;) {
    replaced += text.substr(0, at);
    replaced += to;
    text.remove_prefix(at + from.size());
  }
  replaced += text;
  return replaced;
}

}  // namespace

Scanner::Scanner(std::string_view text, size_t position) : text_(text), position_(position) {}

bool Scanner::Fail(const char* message) {
  NoteFailure(message, nullptr);
  return false;
}

bool Scanner::FailAt(size_t position, const char* message) {
  NoteFailure(message, nullptr);
  Seek(position);
  return false;
}

bool Scanner::FailAtEndIn(const char* what) {
  NoteFailure(nullptr, what);
  return false;
}

bool Scanner::Fail(std::string message) {
  if (abandoned_) return false;
  NoteFailure(nullptr, nullptr);
  ownText_ = std::move(message);
  return false;
}

void Scanner::ExplainFailure(const char* format) {
  ownText_ = FormatText(format, FailureText().c_str());
  message_ = endedIn_ = nullptr;
  if (!abandoned_) failurePosition_ = position_;
}

void Scanner::NoteFailure(const char* message, const char* endedIn) {
  if (abandoned_) return;
  message_ = message;
  endedIn_ = endedIn;
  failurePosition_ = position_;
}

std::string Scanner::FailureText() const {
  if (message_ != nullptr) return message_;
  if (endedIn_ == nullptr) return ownText_;
  return FormatText("Unable to parse %s. End-of-file encountered.", endedIn_);
}

void Scanner::Abandon() {
  position_ = text_.size();
  abandoned_ = true;
}

bool Scanner::Match(std::string_view literal) {
  if (AtEnd()) return FailAtEndIn("string");
  const std::string_view found = text_.substr(position_, literal.size());
  if (found.size() < literal.size()) return Fail("Unable to parse string");
  for (size_t i = 0; i < literal.size(); ++i) {
    if (LowerAscii(found[i]) != LowerAscii(literal[i])) {
      return Fail("Expected string did not match.");
    }
  }
  position_ += literal.size();
  return true;
}

bool Scanner::MatchEquals() {
  Production production(*this, "equal to sign");
  if (!production.Begins() || !production.Need(Match("="))) return false;
  SkipSpace();
  return true;
}

bool Scanner::ReadName(std::string_view* name) {
  Production production(*this, "name tag");
  if (!production.Begins() ||
      !production.Need(IsOf(kNameStart, text_[position_]), "Invalid name defined.")) {
    return false;
  }
  const std::string_view found = TakeAll(kNameCharacter);
  if (name != nullptr) *name = found;
  return true;
}

bool Scanner::ReadNmToken() {
  if (AtEnd()) return FailAtEndIn("NM token tag");
  return !TakeAll(kNameCharacter).empty() || Fail("Unable to parse NData string");
}

bool Scanner::ReadNumber(CharacterClass digits) {
  if (AtEnd()) return FailAtEndIn("number");
  return !TakeAll(digits).empty() || Fail("Unable to parse number");
}

bool Scanner::ReadQuoted(std::string_view* text) {
  static constexpr char kMessage[] = "Unable to parse quoted string";
  if (AtEnd()) return FailAtEndIn("quoted string");
  const char quote = text_[position_];
  if (quote != '"' && quote != '\'') return Fail(kMessage);
  const size_t start = position_ + 1;
  const size_t end = text_.find(quote, start);
  if (end == std::string_view::npos) return Fail(kMessage);
  if (text != nullptr) *text = text_.substr(start, end - start);
  position_ = end + 1;
  return true;
}

bool Scanner::ReadUntil(std::string_view terminator, std::string_view* text) {
  const size_t end = text_.find(terminator, position_);
  if (end == std::string_view::npos) return Fail("Unable to parse string");
  *text = text_.substr(position_, end - position_);
  position_ = end;
  return true;
}

Production::Production(Scanner& scanner, const char* what)
    : scanner_(scanner), start_(scanner.Tell()) {
  scanner.SkipSpace();
  begins_ = !scanner.AtEnd();
  if (begins_) return;
  scanner.FailAtEndIn(what);
  scanner.Seek(start_);
}

Nesting::Nesting(Scanner& scanner) : scanner_(scanner) {
  if (++scanner.depth_ <= kMaxXmlDepth) return;
  scanner.Fail(FormatText("The nesting is deeper than %lu levels.", Lu(kMaxXmlDepth)));
  scanner.Abandon();
}

std::string WithPlainLineEnds(std::string_view text) {
  if (text.find('\r') == std::string_view::npos) return std::string(text);
  return Replaced(Replaced(Replaced(text, "\r\n", '\n'), "\n\r", '\n'), "\r", '\n');
}

}  // namespace zyr::xml
