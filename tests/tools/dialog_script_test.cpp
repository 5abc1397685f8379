#include <gtest/gtest.h>

#include "tools/zyrdialog/script.h"

namespace zyr {
namespace {

TEST(DialogScriptTest, TakesStepsApart) {
  const DialogScript script =
      ParseDialogScript({"--title", "Other", "--seconds=5", "press", "2010", ",", "has", "2100",
                         "Ready, set", ",", "size", "640", "480", ",", "gone"});
  EXPECT_EQ(script.error, "");
  EXPECT_EQ(script.title, "Other");
  EXPECT_EQ(script.seconds, 5u);
  ASSERT_EQ(script.steps.size(), 4u);
  EXPECT_EQ(script.steps[0].action, DialogAction::kPress);
  EXPECT_EQ(script.steps[0].control, 2010u);
  EXPECT_EQ(script.steps[1].words, "Ready, set");
  EXPECT_EQ(script.steps[2].height, 480u);
  EXPECT_EQ(script.steps[3].action, DialogAction::kGone);
}

TEST(DialogScriptTest, RefusesWhatIsNoStep) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"wait", ","},
                                             {"jump"},
                                             {"press"},
                                             {"press", "no"},
                                             {"press", "1", "2"},
                                             {"size", "10"},
                                             {"wait", "1"},
                                             {"--seconds", "x", "wait"}}) {
    EXPECT_NE(ParseDialogScript(arguments).error, "");
  }
  EXPECT_TRUE(ParseDialogScript({"--help"}).help);
}

}  // namespace
}  // namespace zyr
