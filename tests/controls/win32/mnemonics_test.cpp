#include "controls/mnemonics.h"

#include <gtest/gtest.h>

namespace zyr {
namespace {

TEST(MnemonicsTest, DealsLettersOutOnce) {
  Mnemonics mnemonics;
  EXPECT_EQ(mnemonics.Mark("Acquire Image"), "&Acquire Image");
  EXPECT_EQ(mnemonics.Mark("Acquire image series"), "Acquire &image series");
  EXPECT_EQ(mnemonics.Mark("(Aid)"), "(Ai&d)") << "any letter once those of the words are gone";
  EXPECT_EQ(mnemonics.Mark("Aida"), "Aida");
  EXPECT_EQ(mnemonics.Mark("\xC4ndern 3"), "\xC4ndern &3") << "not on every keyboard";
  EXPECT_EQ(mnemonics.Mark(""), "");
}

TEST(MnemonicsTest, KeepsTheTranslatorsChoiceIfItIsFree) {
  Mnemonics mnemonics;
  EXPECT_EQ(mnemonics.Mark("Bild &neu"), "Bild &neu");
  EXPECT_EQ(mnemonics.Mark("&Neue Serie"), "Neue &Serie");
  EXPECT_EQ(mnemonics.Mark("R&&D &"), "&R&&D &");
}

TEST(MnemonicsTest, ReleasedLettersAreFreeAgain) {
  Mnemonics mnemonics;
  EXPECT_EQ(mnemonics.Mark("Series"), "&Series");
  const std::string cancel = mnemonics.Mark("Cancel");
  EXPECT_EQ(cancel, "&Cancel");
  mnemonics.Release(cancel);
  mnemonics.Release("no mark");
  EXPECT_EQ(mnemonics.Mark("Stop Capture"), "Stop &Capture");
  EXPECT_EQ(mnemonics.Mark("Serial"), "S&erial");
}

}  // namespace
}  // namespace zyr
