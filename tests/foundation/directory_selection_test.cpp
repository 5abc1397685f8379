#include "foundation/support/directory_selection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <iterator>
#include <map>

#include "foundation/support/directory_path.h"
#include "platform/ascii.h"
#include "platform/files.h"
#include "platform/host/host.h"

namespace zyr {
namespace {

using platform::DriveKind;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// Keeps the tree, and does in Run what a test asks for.
class TreeView : public DirectorySelectionView {
 public:
  struct Shown {
    Node parent = kNoNode;
    std::string label = {};
    DirectoryKind kind = DirectoryKind::kFolder;
    bool canBeOpened = true;
    bool isExpanded = false;
    std::vector<Node> children = {};
  };

  bool Run(DirectorySelection* dialog, platform::Window) override {
    dialog_ = dialog;
    accepted = false;
    dialog->OnInitDialog();
    if (script) script();
    return accepted;
  }
  platform::Window window() const override { return nullptr; }
  void End(bool result) override { accepted = result; }
  void SetHead(const std::string& text) override { head = text; }
  Node AddNode(Node parent, Node after, const std::string& label, DirectoryKind kind) override {
    const Node node = ++last_;
    std::vector<Node>& siblings = nodes[parent].children;
    const auto before = std::find(siblings.begin(), siblings.end(), after);
    EXPECT_EQ(before == siblings.end(), after == kNoNode) << label;
    siblings.insert(after == kNoNode ? siblings.begin() : before + 1, node);
    nodes[node] = {parent, label, kind};
    return node;
  }
  void RemoveNode(Node node) override {
    for (const Node child : std::vector(nodes.at(node).children)) RemoveNode(child);
    std::erase(nodes[nodes.at(node).parent].children, node);
    nodes.erase(node);
  }
  void Expand(Node node) override { nodes.at(node).isExpanded = true; }
  void SetCanBeOpened(Node node, bool can) override { nodes.at(node).canBeOpened = can; }
  void Select(Node node) override {
    selected = node;
    dialog_->OnSelect(node);
  }
  void SetNewDirectoryEnabled(bool enabled) override { newEnabled = enabled; }
  bool AskForName(std::string* name) override {
    offered.push_back(*name);
    if (typed.empty()) return false;
    *name = typed.front();
    typed.pop_front();
    return true;
  }

  // Labels from below the drive on, with '/' between them.
  std::string Selected() const {
    std::string path;
    for (Node node = selected; node != kNoNode; node = nodes.at(node).parent) {
      path = nodes.at(node).label + (path.empty() ? "" : "/") + path;
    }
    return path;
  }
  std::vector<std::string> LabelsBelow(Node node) const {
    std::vector<std::string> labels;
    for (const Node child : nodes.at(node).children) labels.push_back(nodes.at(child).label);
    return labels;
  }
  // The first one of that label.
  Node Named(const std::string& label) const {
    const auto found = std::find_if(nodes.begin(), nodes.end(),
                                    [&](const auto& node) { return node.second.label == label; });
    return found != nodes.end() ? found->first : kNoNode;
  }

  std::function<void()> script;
  std::map<Node, Shown> nodes = {{kNoNode, {}}};
  Node selected = kNoNode;
  bool newEnabled = false;
  bool accepted = false;
  std::string head;
  std::deque<std::string> typed;
  std::vector<std::string> offered;

 private:
  DirectorySelection* dialog_ = nullptr;
  Node last_ = kNoNode;
};

class DirectorySelectionTest : public ::testing::Test {
 protected:
  DirectorySelectionTest() {
    platform::host::ResetAll();
    for (const char* path : {"C:\\Images", "C:\\Images\\old", "C:\\Images\\Young", "C:\\apps"}) {
      platform::MakeDirectory(path);
    }
  }
  ~DirectorySelectionTest() override { platform::host::ResetAll(); }

  bool Run(std::function<void()> script = {}) {
    view.script = std::move(script);
    return dialog.Run(nullptr);
  }
  // Of the prompts so far, then forgotten.
  std::vector<std::string> TakePrompts() {
    std::vector<std::string> texts;
    for (const auto& prompt : platform::host::ShownPrompts()) texts.push_back(prompt.text);
    platform::host::ResetPrompts();
    return texts;
  }
  static int Listed() { return platform::host::CountsOfFiles().directoriesListed; }

  TreeView view;
  DirectorySelection dialog{view};
};

TEST_F(DirectorySelectionTest, ReadsOneLevelAtATimeAndReturnsWhatIsSelected) {
  platform::host::SetDrives({{"A:\\", "", DriveKind::kRemovable},
                             {"C:\\", "System", DriveKind::kFixed},
                             {"Z:\\", "", DriveKind::kNetwork}});
  platform::host::HideDirectory("C:\\apps");
  EXPECT_TRUE(Run([&] {
    EXPECT_EQ(view.head, "Select the appropriate directory.");
    EXPECT_THAT(view.LabelsBelow(0), ElementsAre("A:\\", "C:\\  System", "Z:\\"));
    EXPECT_EQ(view.nodes[view.Named("Z:\\")].kind, DirectoryKind::kNetworkDrive);
    EXPECT_EQ(view.Selected(), "C:\\  System");
    EXPECT_THAT(view.LabelsBelow(view.selected), ElementsAre("Images"));
    EXPECT_EQ(Listed(), 1) << "no other drive is touched";
    const auto images = view.Named("Images");
    dialog.OnExpand(images);
    dialog.OnExpand(images);
    EXPECT_EQ(Listed(), 2);
    EXPECT_THAT(view.LabelsBelow(images), ElementsAre("old", "Young"));
    EXPECT_TRUE(view.nodes[images].isExpanded);
    dialog.OnExpand(view.Named("old"));
    EXPECT_FALSE(view.nodes[view.Named("old")].canBeOpened);
    dialog.OnExpand(12345);
    view.Select(view.Named("Young"));
    dialog.OnOK();
  }));
  EXPECT_EQ(dialog.directory, "C:\\Images\\Young");
  dialog.head = "Where?";
  EXPECT_FALSE(Run([&] { view.Select(view.Named("Images")); }));
  EXPECT_EQ(view.head, "Where?");
  EXPECT_EQ(dialog.directory, "C:\\Images\\Young") << "not accepted";
  EXPECT_THAT(TakePrompts(), IsEmpty());
}

TEST_F(DirectorySelectionTest, OpensWhatIsLeftOfTheStartingDirectory) {
  platform::host::SetDrives({{"B:\\", "", DriveKind::kRemovable},
                             {"C:\\", "", DriveKind::kFixed},
                             {"D:\\", "", DriveKind::kFixed}});
  platform::host::PutFile("\\\\server\\Share\\scans\\x", "");
  platform::host::PutFile("C:\\Images\\Young\\file", "");
  platform::MakeDirectory("C:\\Shadow");
  platform::host::HideDirectory("C:\\Shadow");
  const struct {
    const char* start;
    const char* selected;
  } kCases[] = {
      {"C:\\Images\\Young", "C:\\/Images/Young"},
      {"c:/images//.\\old\\..\\YOUNG\\", "C:\\/Images/Young"},
      {"C:\\Images\\gone\\deeper", "C:\\/Images"},
      {"C:\\Images\\Young\\file", "C:\\/Images/Young"},
      {"C:\\Shadow", "C:\\/Shadow"},
      {"C:", "C:\\"},
      {"", "C:\\"},
      {"Images", "C:\\"},
      {"B:\\x", "B:\\"},
      {"E:\\x", "C:\\"},
      {"\\\\server\\share\\Scans\\", "\\\\server\\share/scans"},
      {"\\\\gone\\share\\scans", "C:\\"},
      {"\\\\server", "C:\\"},
  };
  for (const auto& row : kCases) {
    view.nodes = {{0, {}}};
    dialog.directory = row.start;
    EXPECT_FALSE(Run([&] { EXPECT_EQ(view.Selected(), row.selected) << row.start; }));
    EXPECT_EQ(dialog.directory, row.start);
  }
  EXPECT_THAT(TakePrompts(), IsEmpty());
  platform::host::SetDrives({});
  EXPECT_FALSE(Run([&] {
    EXPECT_FALSE(view.newEnabled);
    dialog.OnNewDirectory();
    dialog.OnOK();
  }));
  EXPECT_THAT(TakePrompts(), ElementsAre("Please select a directory."));
}

TEST_F(DirectorySelectionTest, RefusesRemovableDrivesWhereTheCallerDoes) {
  platform::host::PutFile("B:\\sub\\x", "");
  platform::host::PutFile("Z:\\x", "");
  platform::host::SetDrives({{"B:\\", "", DriveKind::kRemovable},
                             {"E:\\", "", DriveKind::kOptical},
                             {"Z:\\", "", DriveKind::kNetwork}});
  dialog.directory = "B:\\sub";
  dialog.removableForbidden = true;
  EXPECT_TRUE(Run([&] {
    for (const char* label : {"sub", "B:\\", "E:\\"}) {
      view.Select(view.Named(label));
      dialog.OnOK();
      EXPECT_FALSE(view.accepted);
      ASSERT_EQ(platform::host::ShownPrompts().size(), 1u) << label;
      EXPECT_EQ(platform::host::ShownPrompts()[0].title, "Invalid Drive/Path Specified");
      EXPECT_THAT(TakePrompts(),
                  ElementsAre("You must select a non-removealbe drive.  Please be sure to select a "
                              "physical or networked drive."));
    }
    view.Select(view.Named("Z:\\"));
    dialog.OnOK();
  }));
  EXPECT_EQ(dialog.directory, "Z:\\");
  dialog.directory = "B:\\sub";
  dialog.removableForbidden = false;
  EXPECT_TRUE(Run([&] { dialog.OnOK(); }));
}

TEST_F(DirectorySelectionTest, TellsOfWhatIsGone) {
  platform::host::SetDrives({{"B:\\", "", DriveKind::kRemovable}, {"C:\\", "", DriveKind::kFixed}});
  platform::MakeDirectory("C:\\apps\\deep");
  dialog.directory = "C:\\apps\\deep";
  EXPECT_TRUE(Run([&] {
    dialog.OnExpand(view.Named("B:\\"));
    EXPECT_THAT(TakePrompts(), ElementsAre("The drive B:\\ is not ready or cannot be reached."));
    platform::host::PutFile("B:\\now\\x", "");
    dialog.OnExpand(view.Named("B:\\"));
    EXPECT_NE(view.Named("now"), 0u) << "tried again";

    platform::host::DenyOpening("C:\\Images");
    dialog.OnExpand(view.Named("Images"));
    EXPECT_THAT(TakePrompts(), ElementsAre(HasSubstr("C:\\Images cannot be opened")));

    std::filesystem::remove_all(platform::host::NativeOf("C:\\apps"));
    dialog.OnOK();
    EXPECT_EQ(view.Selected(), "C:\\/apps");
    EXPECT_FALSE(view.nodes[view.selected].canBeOpened) << "it was the only one";
    view.typed = {"new"};
    dialog.OnNewDirectory();
    EXPECT_EQ(view.Selected(), "C:\\");
    EXPECT_THAT(TakePrompts(), ElementsAre("The directory C:\\apps\\deep does not exist any more.",
                                           "The directory C:\\apps does not exist any more."));
    dialog.OnOK();
  }));
  EXPECT_EQ(dialog.directory, "C:\\");
}

TEST_F(DirectorySelectionTest, MakesADirectoryInItsPlaceAndSelectsIt) {
  EXPECT_TRUE(Run([&] {
    view.typed = {" Beta\t"};
    dialog.OnNewDirectory();
    EXPECT_EQ(view.Selected(), "C:\\  System/Beta");
    EXPECT_THAT(view.LabelsBelow(view.nodes[view.selected].parent),
                ElementsAre("apps", "Beta", "Images"));
    view.typed = {"Aa"};
    view.Select(view.Named("C:\\  System"));
    dialog.OnNewDirectory();
    view.Select(view.Named("Images"));
    view.typed = {"Middle"};
    dialog.OnNewDirectory();
    EXPECT_THAT(view.LabelsBelow(view.Named("Images")), ElementsAre("Middle", "old", "Young"));
    EXPECT_THAT(view.LabelsBelow(view.Named("C:\\  System")),
                ElementsAre("Aa", "apps", "Beta", "Images"));
    view.typed = {"inner"};
    dialog.OnNewDirectory();
    EXPECT_TRUE(view.nodes[view.Named("Middle")].canBeOpened);
    EXPECT_FALSE(view.nodes[view.Named("inner")].canBeOpened);
    dialog.OnOK();
  }));
  EXPECT_EQ(dialog.directory, "C:\\Images\\Middle\\inner");
  EXPECT_TRUE(platform::StatusOf(dialog.directory)->isDirectory);
  EXPECT_THAT(TakePrompts(), IsEmpty());
}

TEST_F(DirectorySelectionTest, AsksAgainForANameThatCannotBe) {
  platform::host::PutFile("C:\\Images\\file", "");
  platform::host::DenyWriting("C:\\Images\\locked");
  const struct {
    std::string name;
    const char* told;
  } kCases[] = {
      {"  ", "Please enter a name"},
      {"a\\b", "cannot contain any of these characters:\n\\ / : * ? \" < > |"},
      {"a\"b", "cannot contain"},
      {"a\x01", "cannot contain"},
      {"..", "end with a dot"},
      {"con", "con is reserved"},
      {"Com7 .txt", "reserved"},
      {"CONOUT$", "reserved"},
      {"YOUNG", "named YOUNG already"},
      {"file", "file named file already"},
      {std::string(250, 'x'), "too long"},
      {"locked", "C:\\Images\\locked cannot be created"},
  };
  dialog.directory = "C:\\Images";
  Run([&] {
    for (const auto& row : kCases) {
      view.typed = {row.name};
      view.offered.clear();
      dialog.OnNewDirectory();
      EXPECT_EQ(view.offered.size(), 2u) << row.name;
      EXPECT_EQ(view.offered.back(), TrimmedText(row.name));
      ASSERT_EQ(platform::host::ShownPrompts().size(), 1u);
      EXPECT_EQ(platform::host::ShownPrompts()[0].title, "New Directory");
      EXPECT_THAT(TakePrompts(), ElementsAre(HasSubstr(row.told)));
    }
    for (const char* fine : {"com", "com0", "console", "a b", "\xC4.x", ".x", "con_"}) {
      EXPECT_EQ(FaultOfName(fine), "") << fine;
    }
  });
}

TEST_F(DirectorySelectionTest, RefusesPathsThatLeaveNoRoomForFiles) {
  // The system's own interfaces can make such ones.
  const std::string most = "C:\\" + std::string(kLongestDirectory - 3, 'x');
  platform::MakeDirectory(most);
  platform::MakeDirectory(most + "y");
  Run([&] {
    view.Select(view.Named(most.substr(3) + "y"));
    dialog.OnOK();
    EXPECT_THAT(TakePrompts(), ElementsAre(HasSubstr("too long")));
    view.Select(view.Named(most.substr(3)));
    dialog.OnOK();
  });
  EXPECT_EQ(dialog.directory, most);
}

}  // namespace
}  // namespace zyr
