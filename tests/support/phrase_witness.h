// Every test program watches which texts are looked up, and a test fails in which one comes by that
// the collection of all phrases (scripts/phrases.pl) does not know: no translator would have seen
// it.
#pragma once

namespace zyr::test {

// For tests that make texts up.
class MadeUpPhrases {
 public:
  MadeUpPhrases();
  ~MadeUpPhrases();
  MadeUpPhrases(const MadeUpPhrases&) = delete;
  MadeUpPhrases& operator=(const MadeUpPhrases&) = delete;
};

}  // namespace zyr::test
