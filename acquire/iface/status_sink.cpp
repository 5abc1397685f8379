#include "acquire/iface/status_sink.h"

#include <utility>

#include "acquire/iface/display_name.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

std::string ProgressTitle(const char* format, const std::string& family, const std::string& sensor,
                          int32_t percent) {
  return FormatText(GetFormatPhrase(format).c_str(), family.c_str(), sensor.c_str(), percent);
}

}  // namespace

void StatusSink::SetTarget(platform::Window window, uint32_t message) {
  const std::lock_guard lock(mutex_);
  target_.window = window;
  target_.message = message;
}

void StatusSink::SetCallback(Callback callback, void* data) {
  const std::lock_guard lock(mutex_);
  target_.callback = callback;
  target_.callbackData = data;
}

void StatusSink::SetRename(bool rename) {
  const std::lock_guard lock(mutex_);
  rename_ = rename;
}

void StatusSink::ResetLines() {
  const std::lock_guard lock(mutex_);
  flushLine_ = retrieveLine_ = waitLine_ = kNoStatusLine;
}

int32_t StatusSink::Post(int32_t kind, const std::string& title, const std::string& text,
                         int32_t line) {
  Target target;
  {
    const std::lock_guard lock(mutex_);
    target = target_;
  }
  int32_t result = kNoStatusLine;
  if (platform::IsWindowAlive(target.window)) {
    const StatusRecord record{line, title, text};
    result = static_cast<int32_t>(platform::SendToWindow(target.window, target.message,
                                                         static_cast<uintptr_t>(kind),
                                                         reinterpret_cast<intptr_t>(&record)));
  }
  if (target.callback != nullptr) {
    result = target.callback(target.callbackData, kind, title, text, line);
  }
  return result;
}

void StatusSink::StatusFlush(const std::string& family, const std::string& sensor,
                             int32_t percent) {
  ShowProgress(&flushLine_,
               ProgressTitle(PhraseKey("Flushing %s ( %s ) - %d%%"), family, sensor, percent),
               PhraseKey("Flushing the sensor to get it ready for image acquisition."));
}

void StatusSink::StatusRetrieve(const std::string& family, const std::string& sensor,
                                int32_t percent) {
  ShowProgress(
      &retrieveLine_,
      ProgressTitle(PhraseKey("Retrieving Image %s ( %s ) - %d%%"), family, sensor, percent),
      PhraseKey("Downloading the image from the hardware."));
}

void StatusSink::StatusWait(const std::string& family, const std::string& sensor, int32_t percent) {
  ShowProgress(&waitLine_,
               ProgressTitle(PhraseKey("Waiting for %s ( %s ) - %d%%"), family, sensor, percent),
               PhraseKey("Waiting for the image from the hardware."));
}

void StatusSink::ShowProgress(int32_t* line, std::string title, const char* text) {
  int32_t present = kNoStatusLine;
  bool rename = false;
  {
    const std::lock_guard lock(mutex_);
    present = *line;
    rename = rename_;
  }
  if (rename) title = RenameForDisplay(std::move(title));
  if (present != kNoStatusLine) {
    Post(kStatusLineUpdate, title, GetPhrase(text), present);
    return;
  }
  const int32_t made = Post(kStatusLineNew, title, GetPhrase(text), kNoStatusLine);
  const std::lock_guard lock(mutex_);
  *line = made;
}

StatusSink& CaptureStatus() {
  static StatusSink sink;
  return sink;
}

}  // namespace zyr
