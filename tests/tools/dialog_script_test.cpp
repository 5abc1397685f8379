#include <gtest/gtest.h>

#include "tests/tools/words.h"
#include "tools/zyrdialog/script.h"

namespace zyr {
namespace {

using test::Words;

TEST(DialogScriptTest, TakesStepsApart) {
  const DialogScript script = ParseDialogScript(Words(
      "--title Other --seconds=5 press 2010 , has 2100 Ready,set , size 640 480 , gone , "
      "slide 1013 -20 , branch 2150 12/0/3 , type 7 '' , is 7/2 -1 , choose 8 0 , expand 9 4"));
  EXPECT_EQ(script.error, "");
  EXPECT_EQ(script.title, "Other");
  EXPECT_EQ(script.seconds, 5u);
  const std::vector<DialogStep>& steps = script.steps;
  ASSERT_EQ(steps.size(), 10u);
  EXPECT_TRUE(steps[0].action == DialogAction::kPress && steps[0].control == 2010);
  EXPECT_EQ(steps[1].words, "Ready,set");
  EXPECT_EQ(steps[2].height, 480u);
  EXPECT_EQ(steps[3].action, DialogAction::kGone);
  EXPECT_TRUE(steps[4].action == DialogAction::kSlide && steps[4].number == -20);
  EXPECT_EQ(steps[5].path, (std::vector<uint32_t>{12, 0, 3}));
  EXPECT_EQ(steps[6].words, "");
  EXPECT_EQ(steps[7].words, "-1");
  EXPECT_TRUE(steps[7].control == 7 && steps[7].inner == 2);
  EXPECT_TRUE(steps[8].control == 8 && steps[8].inner == 0);
  EXPECT_EQ(steps[9].path, std::vector<uint32_t>{4});
}

TEST(DialogScriptTest, RefusesWhatIsNoStep) {
  for (const char* line :
       {"", "wait ,", "jump", "press", "press no", "press 1 2", "size 10", "wait 1", "press 0",
        "press 1/0", "press 1/2/3", "slide 1 x", "choose 1", "branch 1 ''", "branch 1 2//3",
        "branch 1 2/", "expand 1 -1", "--seconds x wait"}) {
    EXPECT_NE(ParseDialogScript(Words(line)).error, "") << line;
  }
  EXPECT_TRUE(ParseDialogScript({"--help"}).help);
}

}  // namespace
}  // namespace zyr
