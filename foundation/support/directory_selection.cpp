#include "foundation/support/directory_selection.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "foundation/support/directory_path.h"
#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/ascii.h"
#include "platform/drives.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "platform/wait_cursor.h"

namespace zyr {
namespace {

constexpr const char* kTitle = PhraseKey("Select Path");
constexpr const char* kNewTitle = PhraseKey("New Directory");
constexpr const char* kInvalidTitle = PhraseKey("Invalid Drive/Path Specified");

DirectoryKind KindOf(platform::DriveKind drive) {
  switch (drive) {
    case platform::DriveKind::kRemovable:
      return DirectoryKind::kRemovableDrive;
    case platform::DriveKind::kNetwork:
      return DirectoryKind::kNetworkDrive;
    case platform::DriveKind::kOptical:
      return DirectoryKind::kOpticalDrive;
    case platform::DriveKind::kFixed:
      break;
  }
  return DirectoryKind::kFixedDrive;
}

std::string LabelOf(const platform::Drive& drive) {
  return drive.label.empty() ? drive.path : drive.path + "  " + drive.label;
}

bool IsDirectory(const std::string& path) {
  const auto status = platform::StatusOf(path);
  return status && status->isDirectory;
}

// `format` is translated already, and takes one text.
std::string About(const std::string& format, const std::string& path) {
  return FormatText(format.c_str(), path.c_str());
}

// Why there cannot be a new directory of that path and name, translated; empty if there can.
std::string FaultOfNew(const std::string& path, const std::string& name) {
  const std::string fault = FaultOfName(name);
  if (!fault.empty()) return fault;
  if (path.size() > kLongestDirectory) {
    return GetPhrase("The path of the new directory is too long.  Please enter a shorter name.");
  }
  if (platform::StatusOf(path)) {
    return About(GetFormatPhrase("There is a directory or a file named %s already."), name);
  }
  return {};
}

}  // namespace

bool DirectorySelection::Run(platform::Window owner) {
  nodes_ = {{kNoNode, Entry{}}};
  selected_ = kNoNode;
  if (!view_.Run(this, owner)) return false;
  directory = chosen_;
  return true;
}

void DirectorySelection::OnInitDialog() {
  const platform::WaitCursor busy;
  view_.SetHead(head.empty() ? GetPhrase("Select the appropriate directory.") : head);
  AddDrives();
  const Node start = StartingNode();
  selected_ = start;
  if (start != kNoNode) view_.Select(start);
  view_.SetNewDirectoryEnabled(start != kNoNode);
}

void DirectorySelection::OnExpand(Node node) {
  if (Find(node) == nullptr) return;
  bool isListed = false;
  {
    const platform::WaitCursor busy;
    isListed = List(node);
  }
  if (isListed) return view_.Expand(node);
  TellUnreadable(node);
}

void DirectorySelection::OnSelect(Node node) {
  if (Find(node) == nullptr) return;
  selected_ = node;
  view_.SetNewDirectoryEnabled(true);
}

void DirectorySelection::OnNewDirectory() {
  const Node parent = selected_;
  std::string name;
  while (Find(parent) != nullptr && view_.AskForName(&name)) {
    name = TrimmedText(std::string(name));
    if (MakeIn(parent, name)) return;
  }
}

void DirectorySelection::OnOK() {
  const Node node = selected_;
  if (Find(node) == nullptr) {
    return Tell(GetPhrase("Please select a directory."), kTitle);
  }
  if (!CanBeChosen(node)) return;
  chosen_ = PathOf(node);
  view_.End(true);
}

const DirectorySelection::Entry* DirectorySelection::Find(Node node) const {
  const auto found = node == kNoNode ? nodes_.end() : nodes_.find(node);
  return found == nodes_.end() ? nullptr : &found->second;
}

DirectorySelection::Node DirectorySelection::DriveOf(Node node) const {
  while (nodes_.at(node).parent != kNoNode) node = nodes_.at(node).parent;
  return node;
}

DirectorySelection::Node DirectorySelection::ChildNamed(Node parent,
                                                        const std::string& name) const {
  for (const Node child : nodes_.at(parent).children) {
    if (EqualIgnoringCase(FileNameOf(PathOf(child)), name)) return child;
  }
  return kNoNode;
}

void DirectorySelection::AddDrives() {
  for (const platform::Drive& drive : platform::ListDrives()) {
    AddNode(kNoNode, nodes_[kNoNode].children.size(),
            {.path = drive.path, .kind = KindOf(drive.kind)}, LabelOf(drive));
  }
}

DirectorySelection::Node DirectorySelection::AddNode(Node parent, size_t at, Entry entry,
                                                     const std::string& label) {
  std::vector<Node>& children = nodes_[parent].children;
  const Node after = at == 0 ? kNoNode : children[at - 1];
  const Node node = view_.AddNode(parent, after, label, entry.kind);
  if (node == kNoNode) return kNoNode;  // the window has gone
  children.insert(children.begin() + static_cast<std::ptrdiff_t>(at), node);
  entry.parent = parent;
  nodes_[node] = std::move(entry);
  return node;
}

DirectorySelection::Node DirectorySelection::AddFolder(Node parent, size_t at,
                                                       const std::string& name) {
  return AddNode(parent, at, {.path = JoinDirectory(PathOf(parent), name)}, name);
}

// False if it cannot be read; the next time it is tried again.
bool DirectorySelection::List(Node node) {
  if (nodes_[node].listed) return true;
  const auto names = platform::ListDirectories(PathOf(node));
  if (!names) return false;
  for (const std::string& name : *names) AddFolder(node, nodes_[node].children.size(), name);
  nodes_[node].listed = true;
  if (names->empty()) view_.SetCanBeOpened(node, false);
  return true;
}

void DirectorySelection::Remove(Node node) {
  const Node parent = nodes_[node].parent;
  std::vector<Node>& siblings = nodes_[parent].children;
  siblings.erase(std::find(siblings.begin(), siblings.end(), node));
  Forget(node);
  selected_ = parent;
  view_.RemoveNode(node);
  if (siblings.empty()) view_.SetCanBeOpened(parent, false);
  view_.Select(parent);
}

void DirectorySelection::Forget(Node node) {
  for (const Node child : nodes_[node].children) Forget(child);
  nodes_.erase(node);
}

// What is left of the directory to begin with.
DirectorySelection::Node DirectorySelection::StartingNode() {
  const DirectoryPath start = SplitDirectory(directory);
  const Node root = RootFor(start.root);
  return root != kNoNode ? Follow(root, start.names) : Follow(FirstDrive(), {});
}

// A share without a letter is added to the drives if it answers.
DirectorySelection::Node DirectorySelection::RootFor(const std::string& root) {
  for (const Node drive : nodes_[kNoNode].children) {
    if (EqualIgnoringCase(PathOf(drive), root)) return drive;
  }
  if (root.compare(0, 2, "\\\\") != 0 || !IsDirectory(root)) return kNoNode;
  return AddNode(kNoNode, nodes_[kNoNode].children.size(),
                 {.path = root, .kind = DirectoryKind::kNetworkDrive},
                 root.substr(0, root.size() - 1));
}

DirectorySelection::Node DirectorySelection::FirstDrive() const {
  const std::vector<Node>& drives = nodes_.at(kNoNode).children;
  const auto fixed = std::find_if(drives.begin(), drives.end(), [this](Node drive) {
    return nodes_.at(drive).kind == DirectoryKind::kFixedDrive;
  });
  if (fixed != drives.end()) return *fixed;
  return drives.empty() ? kNoNode : drives.front();
}

DirectorySelection::Node DirectorySelection::Follow(Node root,
                                                    const std::vector<std::string>& names) {
  Node node = root;
  for (const std::string& name : names) {
    if (!List(node)) return node;
    Node next = ChildNamed(node, name);
    // Listings leave out hidden directories and the other name that a directory may have.
    if (next == kNoNode && IsDirectory(JoinDirectory(PathOf(node), name))) {
      next = AddFolder(node, nodes_[node].children.size(), name);
      view_.SetCanBeOpened(node, true);
    }
    if (next == kNoNode) return node;
    view_.Expand(node);
    node = next;
  }
  const Entry* const drive = names.empty() ? Find(root) : nullptr;
  if (drive != nullptr && drive->kind == DirectoryKind::kFixedDrive && List(root)) {
    view_.Expand(root);
  }
  return node;
}

bool DirectorySelection::CanBeChosen(Node node) {
  const DirectoryKind drive = nodes_[DriveOf(node)].kind;
  if (removableForbidden &&
      (drive == DirectoryKind::kRemovableDrive || drive == DirectoryKind::kOpticalDrive)) {
    Tell(GetPhrase("You must select a non-removealbe drive.  Please be sure to select a physical "
                   "or networked drive."),
         kInvalidTitle);
    return false;
  }
  if (!PathFits(node)) return false;
  if (IsDirectory(PathOf(node))) return true;
  TellVanished(node);
  return false;
}

bool DirectorySelection::PathFits(Node node) const {
  if (PathOf(node).size() <= kLongestDirectory) return true;
  Tell(
      About(GetFormatPhrase("The path of the directory is too long to be used:\n%s"), PathOf(node)),
      kTitle);
  return false;
}

void DirectorySelection::TellUnreadable(Node node) {
  if (!PathFits(node)) return;
  if (!IsDirectory(PathOf(node))) return TellVanished(node);
  Tell(About(GetFormatPhrase("The directory %s cannot be opened.  You may not have access to it."),
             PathOf(node)),
       kTitle);
}

void DirectorySelection::TellVanished(Node node) {
  const std::string drive = PathOf(DriveOf(node));
  if (!IsDirectory(drive)) {
    return Tell(About(GetFormatPhrase("The drive %s is not ready or cannot be reached."), drive),
                kTitle);
  }
  Tell(About(GetFormatPhrase("The directory %s does not exist any more."), PathOf(node)), kTitle);
  if (Find(node) != nullptr) Remove(node);
}

// True if there is nothing more to ask.
bool DirectorySelection::MakeIn(Node parent, const std::string& name) {
  const std::string path = JoinDirectory(PathOf(parent), name);
  const std::string fault = FaultOfNew(path, name);
  if (fault.empty() && platform::MakeDirectory(path)) {
    ShowNew(parent, name);
    return true;
  }
  if (!fault.empty()) {
    Tell(fault, kNewTitle);
    return false;
  }
  if (!IsDirectory(PathOf(parent))) {
    TellVanished(parent);
    return true;
  }
  Tell(About(GetFormatPhrase("The directory %s cannot be created.  You may not have access to "
                             "the drive, or it is full or write-protected."),
             path),
       kNewTitle);
  return false;
}

// The listing says where it stands among the others.
void DirectorySelection::ShowNew(Node parent, const std::string& name) {
  List(parent);
  Node made = ChildNamed(parent, name);
  if (made == kNoNode) made = AddFolder(parent, PlaceOf(parent, name), name);
  if (made == kNoNode) return;
  nodes_[made].listed = true;
  view_.SetCanBeOpened(made, false);
  view_.SetCanBeOpened(parent, true);
  view_.Expand(parent);
  selected_ = made;
  view_.Select(made);
}

size_t DirectorySelection::PlaceOf(Node parent, const std::string& name) const {
  const std::vector<Node>& children = nodes_.at(parent).children;
  const auto names = platform::ListDirectories(PathOf(parent));
  if (!names) return children.size();
  const auto self = std::find_if(names->begin(), names->end(), [&name](const std::string& other) {
    return EqualIgnoringCase(other, name);
  });
  for (auto before = std::make_reverse_iterator(self); before != names->rend(); ++before) {
    const auto known = std::find(children.begin(), children.end(), ChildNamed(parent, *before));
    if (known != children.end()) return static_cast<size_t>(known - children.begin()) + 1;
  }
  return 0;
}

void DirectorySelection::Tell(const std::string& text, const char* title) const {
  platform::ShowPrompt(view_.window(), text, GetPhrase(title), platform::PromptKind::kWarning);
}

}  // namespace zyr
