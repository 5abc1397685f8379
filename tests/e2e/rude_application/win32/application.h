// An imaging program in one thread: its window and message loop, the source it speaks to, with or
// without a manager between them, and the user who works the source's dialog.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "twain/twain_types.h"

namespace zyr {

// Ends the process with status 1 and these words unless it is so.
void Require(bool condition, const std::string& words);

// Controls of the source's dialog.
enum : int {
  kButtonReturn = 1,
  kButtonCancel = 2,
  kButtonOptions = 2000,
  kButtonAcquire = 2010,
  kButtonSeries = 2012,
  kStatusPanel = 2100,
  kExposurePanel = 2101,
  kThumbnailPanel = 2102
};

// Each in one of the dialogs behind it: the options, their password, a directory.
enum : int { kOptionsTree = 2151, kPassword = 2203, kDirectoryTree = 2214 };

class Application {
 public:
  // A moment to wait for, and what is done then.
  struct Step {
    std::function<bool()> when;
    std::function<void()> what;
  };

  // Message boxes of its thread are answered with their default button.
  Application();

  HWND window() const { return window_; }
  bool isOpen() const { return open_; }
  // Ends the process with status 99 unless it is called again within that time.
  void SetDeadline(unsigned seconds);

  void OpenByManager();  // TWAINDSM.dll if there is one beside the program, else the system's
  void OpenDirectly();
  void Close();        // MSG_CLOSEDS; most managers unload the source then
  void FreeLibrary();  // of a source opened directly, closed or not

  TW_UINT16 Call(TW_UINT32 dataGroup, TW_UINT16 dataArgumentType, TW_UINT16 message, void* data);
  TW_UINT16 Enable(HWND parent);
  TW_UINT16 Disable();

  // Works off messages until it is so; false after that time.
  bool PumpUntil(const std::function<bool()>& condition, unsigned milliseconds);
  void Pump(unsigned milliseconds);
  // The last of MSG_XFERREADY and MSG_CLOSEDSREQ that the loop was given since the last call.
  TW_UINT16 TakeEvent();

  // By a timer, and so from inside the message loops of the source's dialogs, too.
  void Schedule(std::vector<Step> steps);
  bool IsScheduleDone() const { return steps_.empty(); }

  HWND Dialog() const;
  HWND DialogWith(int control) const;
  void Post(int control);  // its button is pressed, and be it by a dialog that it should be behind
  bool IsVisible(int control) const;
  bool IsEnabled(int control) const;
  void Press(int control);  // once it can be

  void Arm(int button = kButtonAcquire);     // until the sensor waits for its exposure
  void Expose(int button = kButtonAcquire);  // until the exposure was made and comes down
  void Finish();                             // until the dialog is idle

 private:
  static void CALLBACK OnTimer(HWND window, UINT message, UINT_PTR timer, DWORD time);
  void Offer(MSG* message, bool* taken);

  const DWORD thread_ = GetCurrentThreadId();
  HWND window_ = nullptr;
  DsmEntryProc manager_ = nullptr;  // loaded and open
  HMODULE module_ = nullptr;
  DsEntryProc source_ = nullptr;  // null when the source is opened by the manager
  bool open_ = false;
  TW_IDENTITY self_{};
  TW_IDENTITY identity_{};
  TW_USERINTERFACE userInterface_{};
  TW_UINT16 event_ = MSG_NULL;
  std::vector<Step> steps_;
};

unsigned ImagesOnDisk();
unsigned Threads();  // of this process
bool ModuleIsLoaded();

}  // namespace zyr
