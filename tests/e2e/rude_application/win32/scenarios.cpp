#include "tests/e2e/rude_application/win32/scenarios.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <utility>
#include <vector>

#include "tests/e2e/rude_application/win32/application.h"
#include "tests/e2e/rude_application/win32/options_way.h"

namespace zyr {
namespace {

constexpr unsigned kSeconds = 40;
constexpr unsigned kPatience = 10'000;  // milliseconds

// What a notification of the source does inside the source's call of its manager.
std::function<void(TW_UINT16)> onNotification;

void Open(Application& application, HWND parent) {
  if (!application.isOpen()) application.OpenByManager();
  Require(application.Enable(parent) == TWRC_SUCCESS, "MSG_ENABLEDS");
}

void Open(Application& application) { Open(application, application.window()); }

void Disable(Application& application) {
  Require(application.Disable() == TWRC_SUCCESS, "MSG_DISABLEDS");
  Require(application.Dialog() == nullptr, "the dialog stays");
}

void RequireOnDisk(unsigned images) {
  Require(ImagesOnDisk() == images,
          std::to_string(ImagesOnDisk()) + " images on disk, not " + std::to_string(images));
}

// A capture by the dialog, as if nothing had been.
void Capture(Application& application) {
  const unsigned images = ImagesOnDisk();
  application.Expose();
  application.Finish();
  RequireOnDisk(images + 1);
}

// A thread of the module keeps it loaded. Wine has some of its own: for devices from the first time
// on, and one for sounds, which comes and goes.
void RequireGone(Application& application) {
  static unsigned threads = 0;
  Require(application.PumpUntil([] { return !ModuleIsLoaded(); }, kPatience),
          "the module stays loaded");
  if (threads == 0) threads = Threads();
  Require(application.PumpUntil([&] { return Threads() <= threads + 1; }, kPatience),
          std::to_string(Threads()) + " threads, not " + std::to_string(threads));
}

void CloseAndLeave(Application& application) {
  application.Close();
  RequireGone(application);
}

// --- The application takes the source away ---

void DisableWhileWaiting(Application& application) {
  const unsigned images = ImagesOnDisk();
  Open(application);
  application.Arm();
  Disable(application);
  RequireOnDisk(images);
  Open(application);
  Capture(application);
  Disable(application);
}

void DisableWhileDownloading(Application& application) {
  const unsigned images = ImagesOnDisk();
  Open(application);
  application.Expose();
  Disable(application);
  RequireOnDisk(images + 1);
}

void CloseWhileWaiting(Application& application) {
  const unsigned images = ImagesOnDisk();
  Open(application);
  application.Arm();
  CloseAndLeave(application);
  RequireOnDisk(images);
}

void CloseWhileDownloading(Application& application) {
  const unsigned images = ImagesOnDisk();
  Open(application);
  application.Expose(kButtonSeries);
  CloseAndLeave(application);
  RequireOnDisk(images + 1);
}

void OpenDirectly(Application& application) {
  if (application.isOpen()) CloseAndLeave(application);
  application.OpenDirectly();
  Open(application);
}

// The dialog's window is still the application's, and so is the module's code.
void FreeWhileWaiting(Application& application) {
  const unsigned images = ImagesOnDisk();
  OpenDirectly(application);
  application.Arm();
  application.FreeLibrary();
  application.Finish();
  RequireOnDisk(images + 1);
  DestroyWindow(application.Dialog());
  RequireGone(application);
}

void FreeAndDestroyWhileDownloading(Application& application) {
  const unsigned images = ImagesOnDisk();
  OpenDirectly(application);
  application.Expose();
  application.FreeLibrary();
  DestroyWindow(application.Dialog());
  RequireGone(application);
  RequireOnDisk(images + 1);
}

void ExitWhileWaiting(Application& application) {
  Open(application);
  application.Arm();
  ExitProcess(0);
}

void ExitWhileDownloading(Application& application) {
  Open(application);
  application.Expose();
  ExitProcess(0);
}

// --- The application does not wait for its message loop ---

using Deed = std::function<void(Application&)>;

// An image is there and returned, and `deed` is done from inside the source's notification.
void InsideXferReady(Application& application, const Deed& deed) {
  bool done = false;
  onNotification = [&](TW_UINT16 message) {
    if (message != MSG_XFERREADY || done) return;
    done = true;
    deed(application);
  };
  Open(application);
  if (ImagesOnDisk() == 0) Capture(application);
  application.Press(kButtonReturn);
  Require(application.PumpUntil([&] { return done; }, kPatience), "no notification");
  onNotification = nullptr;
}

void TransferInsideXferReady(Application& application) {
  InsideXferReady(application, [](Application& inside) {
    TW_PENDINGXFERS pending{};
    do {
      HGLOBAL image = nullptr;
      Require(inside.Call(DG_IMAGE, DAT_IMAGENATIVEXFER, MSG_GET, &image) == TWRC_XFERDONE &&
                  GlobalSize(image) > 0,
              "the transfer");
      GlobalFree(image);
      Require(inside.Call(DG_CONTROL, DAT_PENDINGXFERS, MSG_ENDXFER, &pending) == TWRC_SUCCESS,
              "MSG_ENDXFER");
    } while (pending.Count != 0);
  });
  RequireOnDisk(0);
  Disable(application);
}

void DisableInsideXferReady(Application& application) {
  InsideXferReady(application, [](Application& inside) { Disable(inside); });
  RequireOnDisk(1);
  Open(application);
  application.Finish();
  Disable(application);
}

void CloseInsideXferReady(Application& application) {
  InsideXferReady(application, [](Application& inside) { inside.Close(); });
  RequireGone(application);
  Require(ImagesOnDisk() > 0, "the image is gone");
}

// With zeros for what each expects, and with nothing. The transfers come first: MSG_RESET of
// DAT_PENDINGXFERS takes the images away.
void SendEverything(Application& application, TW_UINT16 argument) {
  static char zeros[1 << 16];
  for (const TW_UINT32 group : {DG_IMAGE, DG_CONTROL, DG_AUDIO}) {
    for (const TW_UINT16 message : {MSG_GET, MSG_SET, MSG_RESET, MSG_ENDXFER}) {
      std::memset(zeros, 0, sizeof zeros);
      application.Call(group, argument, message, zeros);
      if (message <= MSG_SET) application.Call(group, argument, message, nullptr);
    }
  }
}

void EverythingInsideXferReady(Application& application) {
  InsideXferReady(application, [](Application& inside) {
    for (TW_UINT16 i = DAT_IMAGEINFO; i <= DAT_EXTIMAGEINFO; ++i) SendEverything(inside, i);
    for (TW_UINT16 i = DAT_PENDINGXFERS; i <= DAT_PASSTHRU; ++i) SendEverything(inside, i);
    SendEverything(inside, DAT_CAPABILITY);
  });
  CloseAndLeave(application);
}

// --- Windows ---

void EnableTwice(Application& application) {
  Open(application);
  const HWND dialog = application.Dialog();
  for (int i = 0; i < 2; ++i) {
    Require(application.Enable(application.window()) == TWRC_FAILURE, "enabled twice");
    TW_STATUS status{};
    application.Call(DG_CONTROL, DAT_STATUS, MSG_GET, &status);
    Require(status.ConditionCode == TWCC_SEQERROR, "the condition code");
  }
  const unsigned images = ImagesOnDisk();
  application.Arm();
  Require(application.Enable(nullptr) == TWRC_FAILURE, "enabled while it waits");
  Require(application.Dialog() == dialog, "another dialog");
  application.Finish();
  RequireOnDisk(images + 1);
  Disable(application);
}

void OddParents(Application& application) {
  const HWND nobodys = reinterpret_cast<HWND>(0x12345678);
  for (const HWND parent : {HWND{nullptr}, nobodys, GetDesktopWindow()}) {
    Open(application, parent);
    application.Finish();
    if (parent == GetDesktopWindow()) Capture(application);
    Disable(application);
  }
}

PROCESS_INFORMATION StartEditor() {
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION editor{};
  char command[] = "notepad.exe";
  Require(CreateProcessA(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                         &editor) != 0,
          "notepad does not start");
  return editor;
}

// The window of another program, which goes while the sensor waits.
void ForeignParent(Application& application) {
  const PROCESS_INFORMATION editor = StartEditor();
  HWND parent = nullptr;
  Require(application.PumpUntil(
              [&] { return (parent = FindWindowA("Notepad", nullptr)) != nullptr; }, kPatience),
          "notepad has no window");
  const unsigned images = ImagesOnDisk();
  Open(application, parent);
  application.Arm();
  TerminateProcess(editor.hProcess, 0);
  WaitForSingleObject(editor.hProcess, kPatience);
  CloseHandle(editor.hThread);
  CloseHandle(editor.hProcess);
  application.Pump(2000);
  Disable(application);
  Require(ImagesOnDisk() >= images, "the images are gone");
}

void ParentGoes(Application& application) {
  for (const bool downloading : {false, true}) {
    const unsigned images = ImagesOnDisk();
    const HWND parent = CreateWindowExA(0, "STATIC", "parent", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                        0, 100, 100, nullptr, nullptr, nullptr, nullptr);
    Open(application, parent);
    downloading ? application.Expose() : application.Arm();
    DestroyWindow(parent);
    Require(application.Dialog() == nullptr, "the dialog stays without its owner");
    RequireOnDisk(images + (downloading ? 1 : 0));
    Disable(application);
  }
}

// --- The user has opened the options ---

void CloseBehindOptions(Application& application) {
  for (const auto way : {WayToOptions, WayToPassword, WayToDirectories}) {
    Open(application);
    DuringOptions(application, way(application), [&] { application.Close(); });
    RequireNoOptions(application);
    RequireGone(application);
  }
}

void DisableBehindOptions(Application& application) {
  for (const auto way : {WayToOptions, WayToPassword, WayToDirectories}) {
    Open(application);
    DuringOptions(application, way(application), [&] { Disable(application); });
    RequireNoOptions(application);
  }
  Open(application);
  Capture(application);
  Disable(application);
}

// From inside the source's call in which their message loop runs.
void FreeBehindOptions(Application& application) {
  OpenDirectly(application);
  OptionsWay way = WayToOptions(application);
  way.push_back({[] { return true; }, [&] { application.FreeLibrary(); }});
  way.push_back({[] { return true; }, [] {}});
  DuringOptions(application, std::move(way), [&] { DestroyWindow(application.Dialog()); });
  RequireNoOptions(application);
  RequireGone(application);
}

// A timer comes when nothing is posted any more.
void OptionsTwice(Application& application) {
  Open(application);
  OptionsWay way = WayToOptions(application);
  way.push_back({[] { return true; },
                 [&] {
                   application.Post(kButtonOptions);
                   application.Post(kButtonAcquire);
                 }});
  way.push_back({[] { return true; }, [] {}});
  DuringOptions(application, std::move(way), [&] {
    DestroyWindow(application.DialogWith(kOptionsTree));
    Require(application.DialogWith(kOptionsTree) == nullptr, "the options stand twice");
    Require(application.IsEnabled(kButtonAcquire), "a capture behind the options");
  });
  application.Finish();
  Disable(application);
}

struct Scenario {
  const char* name;
  void (*run)(Application&);
};
constexpr Scenario kScenarios[] = {
    {"disable-while-waiting", DisableWhileWaiting},
    {"disable-while-downloading", DisableWhileDownloading},
    {"enable-twice", EnableTwice},
    {"odd-parents", OddParents},
    {"foreign-parent", ForeignParent},
    {"parent-goes", ParentGoes},
    {"transfer-inside", TransferInsideXferReady},
    {"disable-inside", DisableInsideXferReady},
    {"close-inside", CloseInsideXferReady},
    {"everything-inside", EverythingInsideXferReady},
    {"options-twice", OptionsTwice},
    {"disable-behind-options", DisableBehindOptions},
    {"close-behind-options", CloseBehindOptions},
    {"free-behind-options", FreeBehindOptions},
    {"close-while-waiting", CloseWhileWaiting},
    {"close-while-downloading", CloseWhileDownloading},
    {"free-while-waiting", FreeWhileWaiting},
    {"free-while-downloading", FreeAndDestroyWhileDownloading},
    {"exit-while-waiting", ExitWhileWaiting},
    {"exit-while-downloading", ExitWhileDownloading},
};

}  // namespace

void RunScenarios(const std::string& names) {
  Application application;
  for (const Scenario& scenario : kScenarios) {
    if (names != scenario.name && names != "all") continue;
    std::printf("%s\n", scenario.name);
    std::fflush(stdout);
    application.SetDeadline(kSeconds);
    scenario.run(application);
  }
  if (application.isOpen()) CloseAndLeave(application);
}

}  // namespace zyr

// A manager that wants to be quick calls this from inside the source's call.
extern "C" __declspec(dllexport) void OnNotification(unsigned short message) {
  if (zyr::onNotification) zyr::onNotification(message);
}
