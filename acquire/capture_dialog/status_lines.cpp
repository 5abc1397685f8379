#include "acquire/capture_dialog/status_lines.h"

#include "foundation/log/log.h"

namespace zyr {

void StatusLines::Clear() {
  view_.ClearStatus();
  lastLine_ = kNoStatusLine;
  lastText_.clear();
}

int32_t StatusLines::Add(StatusKind kind, const std::string& title, const std::string& text) {
  lastLine_ = view_.AddStatus(kind, title, text);
  lastText_ = text;
  Log().WriteLine("CAPTURE STATUS MESSAGE: %s -> %s", title.c_str(), text.c_str());
  return lastLine_;
}

void StatusLines::AddDetail(const std::string& text) {
  lastText_ += '\n' + text;
  view_.SetLastStatusText(lastText_);
  Log().WriteLine("     %s", text.c_str());
}

void StatusLines::Rewrite(int32_t line, const std::string& title, const std::string& text) {
  view_.SetStatus(line, title, text);
  if (line == lastLine_) lastText_ = text;
}

}  // namespace zyr
