#include "settings/pages/options_dialog.h"

#include <gtest/gtest.h>

#include "platform/host/host.h"
#include "settings/store.h"
#include "tests/settings/recorded_pages.h"

namespace zyr {
namespace {

namespace host = platform::host;
using Mark = test::RecordedOptionsView::Mark;

constexpr char kThreshold[] = "Detection Threshold";

class OptionsDialogTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }

  bool Run(std::function<void(OptionsDialog&)> user) {
    view_.user = std::move(user);
    return dialog_.Run(nullptr);
  }
  test::RecordedControls& Shown() { return *view_.pages.at(view_.shown); }

  test::RecordedServices services_;
  test::RecordedOptionsView view_;
  OptionsDialog dialog_{services_, view_};
};

TEST_F(OptionsDialogTest, ShowsItsGroupsAndMakesEachPageOnce) {
  EXPECT_FALSE(Run([&](OptionsDialog& dialog) {
    ASSERT_EQ(view_.tree.size(), 4u);
    EXPECT_EQ(view_.tree[0].pages.size(), 5u);
    EXPECT_EQ(view_.tree[3].pages[1], "ZYR303 Hardware Settings");
    EXPECT_TRUE(view_.head.starts_with("ZYR TWAIN Options|These options permit you to change var"));
    EXPECT_TRUE(dialog.OnSelect(1, 0));
    const size_t sensorPage = view_.shown;
    services_.sensor = {"a", "b", "c"};
    dialog.OnButton(sensorPage, Shown().Id("Currently Selected Sensor:"));
    EXPECT_TRUE(dialog.OnSelect(2, 0));
    EXPECT_EQ(view_.shown, sensorPage);
    EXPECT_EQ(view_.head,
              "ZYR 303 Digital Sensor|These options permit you to change how image are aquired "
              "from ZYR digital x-ray systems");
    EXPECT_EQ(Shown().Text(Shown().Id("Currently Selected Sensor:")), "<a>  ( b )");
    EXPECT_EQ(view_.pages.size(), 2u);
    dialog.OnCancel();
  }));
  EXPECT_EQ(GetSelectedSensorHWID(), "");
}

TEST_F(OptionsDialogTest, OKStoresOnlyThePagesThatWereShown) {
  host::PokeDword(platform::RootKey::kLocalMachine, "SOFTWARE\\ZYR\\TWAIN", "Logging", 7);
  EXPECT_TRUE(Run([&](OptionsDialog& dialog) {
    Shown().SetValue(Shown().Id("Generate a log file"), 0);
    dialog.OnOK();
  }));
  EXPECT_FALSE(GetLogging());
  EXPECT_TRUE(services_.depths.empty());
  EXPECT_TRUE(host::ShownPrompts().empty());
  // The same dialog again begins anew.
  EXPECT_FALSE(Run([&](OptionsDialog& dialog) {
    dialog.OnChanged(1, 1);
    dialog.OnButton(99, 1);
    EXPECT_FALSE(dialog.OnSelect(4, 0) || dialog.OnSelect(0, 5));
  }));
}

TEST_F(OptionsDialogTest, AFailingPageIsShownAndKeepsTheDialogOpen) {
  EXPECT_FALSE(Run([&](OptionsDialog& dialog) {
    dialog.OnSelect(0, 1);
    Shown().SetText(1, "Q:\\none");
    dialog.OnSelect(0, 2);
    dialog.OnSelect(2, 1);
    host::OnPrompt([&](const host::ShownPrompt&) { dialog.OnOK(); });  // in vain
    dialog.OnOK();
    EXPECT_EQ(view_.mark, Mark(0, 1));
    EXPECT_EQ(view_.shown, 1u);
    EXPECT_EQ(services_.depths.size(), 1u) << "what another page has takes effect";
    Shown().SetText(1, "C:\\some");
    dialog.OnSelect(2, 0);
    host::DenyRegistryWrites(true);
    dialog.OnOK();
    EXPECT_EQ(view_.mark, Mark(0, 0));
    host::DenyRegistryWrites(false);
    dialog.OnCancel();
  }));
  EXPECT_EQ(host::ShownPrompts().size(), 1u + 5u) << "each of those shown";
}

TEST_F(OptionsDialogTest, APageThatCouldNotBeLoadedIsNotStored) {
  EXPECT_TRUE(Run([&](OptionsDialog& dialog) {
    services_.isOutOfMemory = true;
    EXPECT_THROW(dialog.OnSelect(1, 0), std::bad_alloc);
    dialog.OnSelect(0, 1);
    services_.whileSelecting = [&] { dialog.OnOK(); };  // in vain
    dialog.OnButton(1, 1);
    EXPECT_EQ(view_.ended, std::nullopt);
    dialog.OnOK();
  }));
  EXPECT_FALSE(host::PeekValue(platform::RootKey::kLocalMachine, "SOFTWARE\\ZYR\\TWAIN",
                               "SelectedSensorNAME"));
}

TEST_F(OptionsDialogTest, ARefusedPageOfTwoGroupsStaysInTheGroupWhereItIs) {
  for (const size_t group : {1u, 2u}) {
    for (const size_t next : {0u, 1u}) {
      host::FailRegistryWrites(false);
      Run([&](OptionsDialog& dialog) {
        dialog.OnSelect(group, 0);
        Shown().onRead = [] { host::FailRegistryWrites(true); };
        dialog.OnSelect(group, next);
        dialog.OnOK();
        EXPECT_EQ(view_.mark, next == 0 ? Mark(group, 0) : Mark(1, 0));
      });
    }
  }
}

TEST_F(OptionsDialogTest, TheHardwareGroupAsksForThePasswordOnce) {
  Run([&](OptionsDialog& dialog) {
    dialog.OnSelect(1, 1);
    EXPECT_FALSE(dialog.OnSelect(3, 0));
    EXPECT_EQ(view_.mark, Mark(1, 1));
    EXPECT_TRUE(view_.head.starts_with("ZYR 2000 Digital Sensor|"));
    view_.password = [&] { return dialog.OnSelect(3, 1); };  // no way around it
    EXPECT_FALSE(dialog.OnSelect(3, 1));
    view_.password = [] { return true; };
    EXPECT_TRUE(dialog.OnSelect(3, 1));
    EXPECT_EQ(Shown().Text(Shown().Id(kThreshold)), "160");
    EXPECT_TRUE(dialog.OnSelect(0, 0));
    EXPECT_TRUE(dialog.OnSelect(3, 0));
    EXPECT_EQ(Shown().Text(Shown().Id(kThreshold)), "15");
    EXPECT_EQ(view_.passwordDialogs, 3);
  });
  view_.password = [] { return false; };
  Run([&](OptionsDialog& dialog) { EXPECT_FALSE(dialog.OnSelect(3, 0)); });
  EXPECT_EQ(view_.passwordDialogs, 4);
}

TEST_F(OptionsDialogTest, TheApplicationMayCloseItAtAnyQuestion) {
  const auto close = [&] {
    platform::DestroyWindowOf(view_.window());
    return true;
  };
  Run([&](OptionsDialog& dialog) {
    view_.password = close;
    EXPECT_FALSE(dialog.OnSelect(3, 0));
    const int writes = host::RegistryWrites();
    dialog.OnOK();
    dialog.OnChanged(0, 1);
    EXPECT_EQ(host::RegistryWrites(), writes);
  });
  EXPECT_FALSE(Run([&](OptionsDialog& dialog) {
    dialog.OnSelect(0, 1);
    services_.whileSelecting = close;
    services_.directory = "C:\\x";
    dialog.OnButton(1, 1);
    dialog.OnOK();
  }));
  EXPECT_FALSE(Run([&](OptionsDialog& dialog) {
    dialog.OnSelect(0, 1);
    Shown().SetText(1, "");
    host::OnPrompt([&](const host::ShownPrompt&) { close(); });
    dialog.OnOK();
    EXPECT_EQ(view_.mark, Mark(0, 0));
  }));
}

}  // namespace
}  // namespace zyr
