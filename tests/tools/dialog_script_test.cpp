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

TEST(DialogScriptTest, TakesValuesApart) {
  const DialogScript script = ParseDialogScript(
      {"slide", "1013", "-20", ",", "branch", "2150", "12/0/3", ",", "type",   "7", "", ",",
       "is",    "7/2",  "-1",  ",", "choose", "8",    "0",      ",", "expand", "9", "4"});
  EXPECT_EQ(script.error, "");
  ASSERT_EQ(script.steps.size(), 6u);
  EXPECT_EQ(script.steps[0].action, DialogAction::kSlide);
  EXPECT_EQ(script.steps[0].number, -20);
  EXPECT_EQ(script.steps[1].path, (std::vector<uint32_t>{12, 0, 3}));
  EXPECT_EQ(script.steps[2].words, "");
  EXPECT_EQ(script.steps[3].words, "-1");
  EXPECT_EQ(script.steps[3].control, 7u);
  EXPECT_EQ(script.steps[3].inner, 2u);
  EXPECT_EQ(script.steps[4].control, 8u);
  EXPECT_EQ(script.steps[4].inner, 0u);
  EXPECT_EQ(script.steps[5].path, std::vector<uint32_t>{4});
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
                                             {"press", "0"},
                                             {"press", "1/0"},
                                             {"press", "1/2/3"},
                                             {"slide", "1", "x"},
                                             {"choose", "1"},
                                             {"branch", "1", ""},
                                             {"branch", "1", "2//3"},
                                             {"branch", "1", "2/"},
                                             {"expand", "1", "-1"},
                                             {"--seconds", "x", "wait"}}) {
    EXPECT_NE(ParseDialogScript(arguments).error, "");
  }
  EXPECT_TRUE(ParseDialogScript({"--help"}).help);
}

}  // namespace
}  // namespace zyr
