#include "tests/e2e/rude_application/win32/application.h"

#include <tlhelp32.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <utility>

namespace zyr {
namespace {

constexpr unsigned kPatience = 15'000;  // milliseconds, for whatever is waited for
constexpr UINT kAnswerWithin = 1000;
constexpr DWORD kStuck = 99;
constexpr UINT_PTR kSteps = 1;  // timer
constexpr UINT kLookEvery = 20;

struct Guarded {
  DWORD thread;
  std::atomic<ULONGLONG> deadline;
};
Guarded guarded{0, ~0ull};

[[noreturn]] void End(DWORD status, const std::string& words) {
  std::printf("FAILED: %s\n", words.c_str());
  std::fflush(stdout);
  TerminateProcess(GetCurrentProcess(), status);  // not exit(), which may hang as well
  for (;;) Sleep(INFINITE);
}

bool IsDialog(HWND window) {
  char name[16] = "";
  GetClassNameA(window, name, sizeof name);
  return std::strcmp(name, "#32770") == 0;
}

bool IsSourceDialog(HWND window) {
  if (!IsDialog(window)) return false;
  for (const int control :
       {int{kButtonAcquire}, int{kOptionsTree}, int{kPassword}, int{kDirectoryTree}}) {
    if (GetDlgItem(window, control) != nullptr) return true;
  }
  return false;
}

BOOL CALLBACK AnswerBox(HWND window, LPARAM) {
  if (!IsDialog(window) || IsSourceDialog(window) || !IsWindowVisible(window)) return TRUE;
  DWORD_PTR answer = 0;
  SendMessageTimeoutA(window, DM_GETDEFID, 0, 0, SMTO_ABORTIFHUNG, kAnswerWithin, &answer);
  const WORD button = HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : IDOK;
  PostMessageA(window, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(window, button)));
  return TRUE;
}

DWORD WINAPI Guard(void*) {
  while (GetTickCount64() < guarded.deadline) {
    EnumThreadWindows(guarded.thread, AnswerBox, 0);
    Sleep(30);
  }
  End(kStuck, "it does not end");
}

struct Search {
  int control;
  HWND found = nullptr;
};

BOOL CALLBACK TakeDialog(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  if (!IsDialog(window) || GetDlgItem(window, search.control) == nullptr ||
      !IsWindowVisible(window)) {
    return TRUE;
  }
  search.found = window;
  return FALSE;
}

template <typename Proc>
Proc EntryOf(HMODULE library, const char* name) {
  return reinterpret_cast<Proc>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

std::string SourcePath() {
  char windows[MAX_PATH] = "";
  GetWindowsDirectoryA(windows, sizeof windows);
  return std::string(windows) + (sizeof(void*) == 8 ? "\\twain_64" : "\\twain_32") +
         "\\ZYR\\ZYRTWAIN.ds";
}

HWND MakeWindow() {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = DefWindowProcA;
  windowClass.lpszClassName = "RudeApplication";
  RegisterClassA(&windowClass);
  return CreateWindowExA(0, "RudeApplication", "rude", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr,
                         nullptr, nullptr, nullptr);
}

}  // namespace

void Require(bool condition, const std::string& words) {
  if (!condition) End(1, words);
}

Application::Application() : window_(MakeWindow()) {
  Require(window_ != nullptr, "no window");
  guarded.thread = thread_;
  CreateThread(nullptr, 0, Guard, nullptr, 0, nullptr);
  self_.ProtocolMajor = 1;
  self_.ProtocolMinor = 9;
  self_.SupportedGroups = DG_CONTROL | DG_IMAGE;
  std::strcpy(self_.ProductName, "rude_application");
}

void Application::SetDeadline(unsigned seconds) {
  guarded.deadline = GetTickCount64() + seconds * 1000ull;
}

void Application::OpenByManager() {
  if (manager_ == nullptr) {
    HMODULE library = LoadLibraryA("TWAINDSM.dll");
    if (library == nullptr) library = LoadLibraryA("TWAIN_32.DLL");
    Require(library != nullptr, "no manager");
    manager_ = EntryOf<DsmEntryProc>(library, "DSM_Entry");
    TW_HANDLE parent = window_;
    Require(manager_(&self_, nullptr, DG_CONTROL, DAT_PARENT, MSG_OPENDSM, &parent) == TWRC_SUCCESS,
            "MSG_OPENDSM");
  }
  identity_ = {};
  Require(manager_(&self_, nullptr, DG_CONTROL, DAT_IDENTITY, MSG_GETFIRST, &identity_) ==
                  TWRC_SUCCESS &&
              manager_(&self_, nullptr, DG_CONTROL, DAT_IDENTITY, MSG_OPENDS, &identity_) ==
                  TWRC_SUCCESS,
          "MSG_OPENDS");
  open_ = true;
}

void Application::OpenDirectly() {
  module_ = LoadLibraryA(SourcePath().c_str());
  Require(module_ != nullptr, "the source cannot be loaded");
  source_ = EntryOf<DsEntryProc>(module_, "DS_Entry");
  self_.Id = 7;
  source_(&self_, DG_CONTROL, DAT_IDENTITY, MSG_GET, &identity_);
  Require(source_(&self_, DG_CONTROL, DAT_IDENTITY, MSG_OPENDS, &identity_) == TWRC_SUCCESS,
          "MSG_OPENDS");
  open_ = true;
}

void Application::Close() {
  open_ = false;
  if (source_ != nullptr) {
    source_(&self_, DG_CONTROL, DAT_IDENTITY, MSG_CLOSEDS, &identity_);
  } else {
    manager_(&self_, nullptr, DG_CONTROL, DAT_IDENTITY, MSG_CLOSEDS, &identity_);
  }
}

void Application::FreeLibrary() {
  open_ = false;
  source_ = nullptr;
  ::FreeLibrary(module_);
}

TW_UINT16 Application::Call(TW_UINT32 dataGroup, TW_UINT16 dataArgumentType, TW_UINT16 message,
                            void* data) {
  return source_ != nullptr
             ? source_(&self_, dataGroup, dataArgumentType, message, data)
             : manager_(&self_, &identity_, dataGroup, dataArgumentType, message, data);
}

TW_UINT16 Application::Enable(HWND parent) {
  userInterface_ = {1, 0, parent};
  return Call(DG_CONTROL, DAT_USERINTERFACE, MSG_ENABLEDS, &userInterface_);
}

TW_UINT16 Application::Disable() {
  return Call(DG_CONTROL, DAT_USERINTERFACE, MSG_DISABLEDS, &userInterface_);
}

void Application::Offer(MSG* message, bool* taken) {
  TW_EVENT event{message, MSG_NULL};
  *taken = Call(DG_CONTROL, DAT_EVENT, MSG_PROCESSEVENT, &event) == TWRC_DSEVENT;
  if (event.TWMessage == MSG_XFERREADY || event.TWMessage == MSG_CLOSEDSREQ) {
    event_ = event.TWMessage;
  }
}

bool Application::PumpUntil(const std::function<bool()>& condition, unsigned milliseconds) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  for (;;) {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      bool taken = false;
      if (open_) Offer(&message, &taken);
      if (taken) continue;
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    if (condition()) return true;
    if (GetTickCount64() >= end) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
  }
}

void Application::Pump(unsigned milliseconds) {
  PumpUntil([] { return false; }, milliseconds);
}

TW_UINT16 Application::TakeEvent() {
  const TW_UINT16 event = event_;
  event_ = MSG_NULL;
  return event;
}

void Application::Schedule(std::vector<Step> steps) {
  steps_ = std::move(steps);
  SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetTimer(window_, kSteps, kLookEvery, OnTimer);
}

// A step may run messages itself.
void CALLBACK Application::OnTimer(HWND window, UINT, UINT_PTR timer, DWORD) {
  auto& self = *reinterpret_cast<Application*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (!self.steps_.front().when()) return;
  KillTimer(window, timer);
  const Step step = self.steps_.front();
  step.what();
  self.steps_.erase(self.steps_.begin());
  if (!self.steps_.empty()) SetTimer(window, timer, kLookEvery, OnTimer);
}

HWND Application::Dialog() const { return DialogWith(kButtonAcquire); }

HWND Application::DialogWith(int control) const {
  Search search{control};
  EnumThreadWindows(thread_, TakeDialog, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

void Application::Post(int control) {
  const HWND dialog = Dialog();
  PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(control, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(dialog, control)));
}

bool Application::IsVisible(int control) const {
  return IsWindowVisible(GetDlgItem(Dialog(), control)) != 0;
}

bool Application::IsEnabled(int control) const {
  return IsWindowEnabled(GetDlgItem(Dialog(), control)) != 0;
}

void Application::Press(int control) {
  Require(PumpUntil([&] { return IsVisible(control) && IsEnabled(control); }, kPatience),
          "button " + std::to_string(control) + " cannot be pressed");
  Post(control);
}

void Application::Arm(int button) {
  Press(button);
  Require(PumpUntil([&] { return IsVisible(kExposurePanel); }, kPatience),
          "the sensor is not armed");
}

void Application::Expose(int button) {
  Arm(button);
  Require(PumpUntil([&] { return !IsVisible(kExposurePanel); }, kPatience), "no exposure came");
}

void Application::Finish() {
  Require(PumpUntil([&] { return IsEnabled(kButtonAcquire); }, kPatience),
          "the dialog does not become idle");
}

unsigned ImagesOnDisk() {
  WIN32_FIND_DATAA found;
  const HANDLE search = FindFirstFileA("C:\\ZYRTwain\\*.RAW", &found);
  if (search == INVALID_HANDLE_VALUE) return 0;
  unsigned count = 1;
  while (FindNextFileA(search, &found)) ++count;
  FindClose(search);
  return count;
}

unsigned Threads() {
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  unsigned count = 0;
  for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  }
  CloseHandle(snapshot);
  return count;
}

bool ModuleIsLoaded() {
  return GetModuleHandleA("ZYRTWAIN.ds") != nullptr || GetModuleHandleA("sane.ds") != nullptr;
}

}  // namespace zyr
