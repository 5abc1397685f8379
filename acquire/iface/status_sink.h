// The way of status lines from a capture to the window that lists them.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "platform/messages.h"

namespace zyr {

inline constexpr int32_t kNoStatusLine = -1;

// Kinds of the lines that come from a capture.
enum StatusLineKind : int32_t {
  kStatusLineFinal = 2,
  kStatusLineNew = 3,
  kStatusLineUpdate = 4,
};

// What the window gets, by pointer, for the length of the call.
struct StatusRecord {
  int32_t line = kNoStatusLine;  // the one to update
  std::string title;
  std::string text;
};

// Any thread. A line is sent, not posted: whoever posts one waits until the window has handled it.
class StatusSink {
 public:
  // Returns the line's number, which takes the place of the window's.
  using Callback = int32_t (*)(void* data, int32_t kind, const std::string& title,
                               const std::string& text, int32_t line);

  // The window gets `message` with the kind and a StatusRecord, and answers with the number of the
  // line. Null for nobody.
  void SetTarget(platform::Window window, uint32_t message);
  void SetCallback(Callback callback, void* data);
  // Whether names in the titles of progress lines go through RenameForDisplay.
  void SetRename(bool rename);
  // The next report of each kind of progress begins a new line.
  void ResetLines();

  // The number of the line; kNoStatusLine without window and callback.
  int32_t Post(int32_t kind, const std::string& title, const std::string& text, int32_t line);

  // Progress in percent, each on one line of its own.
  void StatusFlush(const std::string& family, const std::string& sensor, int32_t percent);
  void StatusRetrieve(const std::string& family, const std::string& sensor, int32_t percent);
  void StatusWait(const std::string& family, const std::string& sensor, int32_t percent);

 private:
  struct Target {
    platform::Window window = nullptr;
    uint32_t message = 0;
    Callback callback = nullptr;
    void* callbackData = nullptr;
  };

  void ShowProgress(int32_t* line, std::string title, const char* text);

  std::mutex mutex_;  // never held while a line is sent
  Target target_;
  int32_t flushLine_ = kNoStatusLine;
  int32_t retrieveLine_ = kNoStatusLine;
  int32_t waitLine_ = kNoStatusLine;
  bool rename_ = false;
};

// The one of the process, constructed at first use.
StatusSink& CaptureStatus();

}  // namespace zyr
