#include "tests/support/phrase_witness.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <mutex>
#include <set>
#include <string>

#include "foundation/support/format_directive.h"
#include "foundation/support/phrase_lookup.h"

namespace zyr::test {
namespace {

std::atomic<int> g_makingUp = 0;

// The line of the catalogue, which is UTF-8 and one line a phrase. Of the code page, what the
// system's own texts have beyond ASCII is the same in Latin-1.
std::string CatalogueLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      line += "\\n";
    } else if (byte < 0x80) {
      line += c;
    } else {
      line += {static_cast<char>(0xC0 | byte >> 6), static_cast<char>(0x80 | (byte & 0x3F))};
    }
  }
  return line;
}

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Numbers, blanks and directives have no translation.
bool IsTranslatable(std::string_view text) {
  while (!text.empty()) {
    const auto directive = text.front() == '%' ? ParseDirective(text) : std::nullopt;
    if (!directive && IsLetter(text.front())) return true;
    text.remove_prefix(directive ? directive->size : 1);
  }
  return false;
}

class Witness : public testing::EmptyTestEventListener {
 public:
  void Hear(const char* text) {
    if (g_makingUp > 0 || !IsTranslatable(text)) return;
    const std::lock_guard lock(mutex_);
    heard_.insert(text);
  }

 private:
  // What is loaded here must be there: CTest sees to it, and who calls the program by hand has
  // called CTest before.
  void OnTestProgramStart(const testing::UnitTest&) override {
    std::ifstream catalogue(ZYR_PHRASE_CATALOGUE);
    for (std::string line; std::getline(catalogue, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      known_.insert(line);
    }
  }

  void OnTestEnd(const testing::TestInfo&) override {
    const std::lock_guard lock(mutex_);
    for (const std::string& text : heard_) {
      if (known_.insert(CatalogueLine(text)).second) {
        ADD_FAILURE() << "looked up, but unknown to the translators (" ZYR_PHRASE_CATALOGUE
                         "; ctest -R phrase_catalogue collects anew): "
                      << text;
      }
    }
    heard_.clear();
  }

  std::mutex mutex_;
  std::set<std::string> heard_;
  std::set<std::string> known_;
};

// Owned by the test framework, and there before any test.
Witness& TheWitness() {
  static Witness* const witness = [] {
    auto* made = new Witness;
    testing::UnitTest::GetInstance()->listeners().Append(made);
    return made;
  }();
  return *witness;
}

[[maybe_unused]] const bool g_isWatching = [] {
  TheWitness();
  SetPhraseWitness([](const char* text) { TheWitness().Hear(text); });
  return true;
}();

}  // namespace

MadeUpPhrases::MadeUpPhrases() { ++g_makingUp; }

MadeUpPhrases::~MadeUpPhrases() { --g_makingUp; }

}  // namespace zyr::test
