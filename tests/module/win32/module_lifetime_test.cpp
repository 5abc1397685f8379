// Programs unload the module when they should and when they should not.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <thread>

#include "settings/store.h"
#include "tests/module/win32/loaded_module.h"
#include "tests/support/win32/window_test.h"

namespace zyr {
namespace {

constexpr int kThumbnailsCommand = 2007;

bool IsLoaded() { return GetModuleHandleA("ZYRTWAIN.ds") != nullptr; }

BOOL CALLBACK TakeDialog(HWND window, LPARAM found) {
  if (GetDlgItem(window, kThumbnailsCommand) == nullptr) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

// The capture dialog.
HWND Dialog() {
  HWND found = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), TakeDialog, reinterpret_cast<LPARAM>(&found));
  return found;
}

// What the program does when it gets its next turn, from whatever message loop.
std::function<void()> onTurn;

void CALLBACK TakeTurn(HWND, UINT, UINT_PTR timer, DWORD) {
  KillTimer(nullptr, timer);
  onTurn();
}

void AtNextTurn(std::function<void()> what, UINT milliseconds = 200) {
  onTurn = std::move(what);
  SetTimer(nullptr, 0, milliseconds, TakeTurn);
}

// Answers the boxes and dialogs of the module, one at each turn, until there are none.
void Dismiss() {
  const HWND box = GetLastActivePopup(GetActiveWindow());
  if (box != nullptr && box != Dialog()) PostMessageA(box, WM_CLOSE, 0, 0);
  AtNextTurn(Dismiss, 50);
}

class ModuleLifetimeTest : public testing::Test {
 protected:
  void SetUp() override {
    SetScanToPath(test::FolderOfTest("zyr-module"));
    SetCheckForConflicts(false);
    SetProceedDirectlyToScan(false);
  }
  void TearDown() override {
    onTurn = [] {};
    RemoveDirectoryA(GetScanToPath().c_str());
    SetScanToPath(userFolder_);
    SetCheckForConflicts(userChecks_);
    SetProceedDirectlyToScan(userProceeds_);
  }

  void Load() {
    module_ = LoadLibraryA(ModulePath().c_str());
    ASSERT_NE(module_, nullptr) << GetLastError();
    entry_ = EntryOf(module_);
    application_.Id = 5;
    TW_IDENTITY own{};
    ASSERT_EQ(Send(DAT_IDENTITY, MSG_OPENDS, &own), TWRC_SUCCESS);
  }
  TW_UINT16 Send(TW_UINT16 type, TW_UINT16 message, void* data = nullptr) {
    return entry_(&application_, DG_CONTROL, type, message, data);
  }
  TW_UINT16 Enable() { return Send(DAT_USERINTERFACE, MSG_ENABLEDS, &userInterface_); }
  void CloseAndUnload() {
    EXPECT_EQ(Send(DAT_IDENTITY, MSG_CLOSEDS), TWRC_SUCCESS);
    EXPECT_TRUE(FreeLibrary(module_));
  }

  const std::string userFolder_ = GetScanToPath();
  const bool userChecks_ = GetCheckForConflicts();
  const bool userProceeds_ = GetProceedDirectlyToScan();
  HMODULE module_ = nullptr;
  DsEntryProc entry_ = nullptr;
  TW_IDENTITY application_{};
  TW_USERINTERFACE userInterface_{};
};

TEST_F(ModuleLifetimeTest, GoesAtOnceWhenTheSourceIsClosed) {
  const HWND foreign = GetDesktopWindow();  // of another process
  for (const HWND parent : {HWND{}, foreign, foreign}) {
    userInterface_.hParent = parent;
    Load();
    ASSERT_EQ(Enable(), TWRC_SUCCESS);
    ASSERT_NE(Dialog(), nullptr);
    if (parent != nullptr) {
      EXPECT_EQ(Send(DAT_USERINTERFACE, MSG_DISABLEDS), TWRC_SUCCESS);
    }
    CloseAndUnload();
    EXPECT_FALSE(IsLoaded());
    EXPECT_EQ(Dialog(), nullptr);
  }
}

TEST_F(ModuleLifetimeTest, StaysWithItsDialog) {
  for (const bool fromElsewhere : {false, true, false}) {
    Load();
    ASSERT_EQ(Enable(), TWRC_SUCCESS);
    if (fromElsewhere) {
      std::thread([this] { FreeLibrary(module_); }).join();
    } else {
      FreeLibrary(module_);
    }
    const HWND dialog = Dialog();
    ASSERT_TRUE(IsLoaded());
    RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    test::WaitFor([] { return true; });
    DestroyWindow(dialog);
    EXPECT_TRUE(test::WaitFor([] { return !IsLoaded(); }));
  }
  // Or until the source is closed after all.
  Load();
  ASSERT_EQ(Enable(), TWRC_SUCCESS);
  FreeLibrary(module_);
  ASSERT_EQ(LoadLibraryA(ModulePath().c_str()), module_);
  CloseAndUnload();
  EXPECT_FALSE(IsLoaded());
}

// The program closes everything while a box or a dialog of the module's own stands.
TEST_F(ModuleLifetimeTest, OutlivesTheCallsThatAreUnderWay) {
  const auto closeAndDismiss = [this] {
    CloseAndUnload();
    EXPECT_TRUE(IsLoaded());
    Dismiss();
  };
  SetCheckForConflicts(true);
  Load();
  AtNextTurn(closeAndDismiss);
  EXPECT_EQ(Enable(), TWRC_FAILURE) << "its files are missing, and it was closed";
  EXPECT_TRUE(test::WaitFor([] { return !IsLoaded(); }));

  SetCheckForConflicts(false);
  Load();
  ASSERT_EQ(Enable(), TWRC_SUCCESS);
  AtNextTurn(closeAndDismiss);
  SendMessageA(Dialog(), WM_COMMAND, kThumbnailsCommand, 0);
  EXPECT_TRUE(test::WaitFor([] { return !IsLoaded(); }));
  EXPECT_EQ(Dialog(), nullptr);
}

// A program may give each session a thread, which does not live to see the module go.
TEST_F(ModuleLifetimeTest, GoesWithALaterSessionThanItsThreads) {
  SetCheckForConflicts(true);
  std::thread([this] {
    Load();
    AtNextTurn([this] {
      CloseAndUnload();
      Dismiss();
    });
    EXPECT_EQ(Enable(), TWRC_FAILURE);
  }).join();
  EXPECT_TRUE(IsLoaded());
  Load();
  CloseAndUnload();
  EXPECT_FALSE(IsLoaded());
}

constexpr UINT kExitCode = 42;

// Run by the test below, in a process of its own: the thread of the dialog is dead when the
// module's objects go.
TEST_F(ModuleLifetimeTest, DISABLED_EndsTheProcess) {
  Load();
  ASSERT_EQ(Enable(), TWRC_SUCCESS);
  std::thread([] { ExitProcess(kExitCode); }).join();
}

TEST_F(ModuleLifetimeTest, EndsWithTheProcess) {
  char program[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, program, sizeof program);
  std::string command =
      '"' + std::string(program) +
      "\" --gtest_also_run_disabled_tests --gtest_filter=*.DISABLED_EndsTheProcess";
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION child;
  ASSERT_TRUE(CreateProcessA(program, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &child));
  EXPECT_EQ(WaitForSingleObject(child.hProcess, test::kPatience), WAIT_OBJECT_0);
  DWORD code = 0;
  EXPECT_TRUE(GetExitCodeProcess(child.hProcess, &code));
  EXPECT_EQ(code, kExitCode);
  TerminateProcess(child.hProcess, 1);
  CloseHandle(child.hThread);
  CloseHandle(child.hProcess);
}

}  // namespace
}  // namespace zyr
