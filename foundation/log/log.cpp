#include "foundation/log/log.h"

#include <algorithm>
#include <cstdarg>
#include <string_view>

#include "foundation/support/file_version.h"
#include "foundation/support/files.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/clock.h"
#include "platform/directories.h"
#include "platform/files.h"
#include "platform/own_module.h"
#include "platform/system_info.h"

namespace zyr {
namespace {

constexpr size_t kBufferSize = 51200;
constexpr size_t kTimeStampWidth = 15;
constexpr size_t kRuleWidth = 40;
constexpr char kLineEnd[] = "\r\n";

std::string CurrentTimeText() { return platform::LongDateTimeText(platform::Now()); }

std::string Replaced(const std::string& text, std::string_view from, std::string_view to) {
  std::string replaced;
  size_t start = 0;
  for (size_t found; (found = text.find(from, start)) != std::string::npos;) {
    replaced.append(text, start, found - start);
    replaced += to;
    start = found + from.size();
  }
  return replaced.append(text, start);
}

}  // namespace

LogFile::LogFile() : ownFile_(kBufferSize) {}

LogFile::~LogFile() { LogFile::Close(); }

void LogFile::WriteTimeStamp() {
  if (file_ != nullptr) WriteBytes(TimeStamp());
}

void LogFile::WriteIndent() {
  if (timeStamps_) WriteBytes(std::string(kTimeStampWidth, ' '));
}

std::string LogFile::TimeStamp() const {
  if (!timeStamps_) return {};
  const platform::TimeOfDay time = platform::UtcTimeOfDay();
  return FormatText("%02lu:%02lu:%02lu:%04lu  ", Lu(time.hour), Lu(time.minute), Lu(time.second),
                    Lu(time.millisecond));
}

void LogFile::OpenFromChooser(LogFileChooser* chooser) {
  if (chooser != nullptr) Open(chooser->Directory(), chooser->FileName());
}

void LogFile::Attach(BufferedFile* file) {
  Close();
  file_ = file;
  startTime_ = platform::Now();
  WriteLine("Logging enabled @ %s\r\n", platform::LongDateTimeText(startTime_).c_str());
  LogComputerName();
  LogUserName();
  LogIpAddress();
  LogOsVersion();
  WriteLine(" ");
}

void LogFile::Open(const std::string& directory, const std::string& name) {
  Close();
  ownFile_.OpenWrite(FormatText("%s\\%s", directory.c_str(), name.c_str()), true);
  Attach(&ownFile_);
}

void LogFile::OpenInModuleDirectory(const std::string& name) {
  Open(DirectoryOf(platform::ModulePath()), name);
}

void LogFile::Close() {
  if (file_ == nullptr) return;
  WriteBytes(kLineEnd);
  WriteLine("Logging closed @ %s", CurrentTimeText().c_str());
  file_->Close();
  if (file_ == &ownFile_) file_ = nullptr;
}

bool LogFile::IsOpen() const { return file_ != nullptr && file_->IsWritable(); }

void LogFile::SetFlushEachLine(bool flag) { flushEachLine_ = flag; }

void LogFile::SetTimeStamps(bool flag) { timeStamps_ = flag; }

void LogFile::WriteIndentedLine(uint32_t indent, const char* format, ...) {
  if (file_ == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  Put(indent, FormatTextV(format, arguments), true);
  va_end(arguments);
}

void LogFile::WriteLine(const char* format, ...) {
  if (file_ == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  Put(0, FormatTextV(format, arguments), true);
  va_end(arguments);
}

void LogFile::WriteIndentedText(uint32_t indent, const std::string& text) {
  Put(indent, text, true);
}

void LogFile::WriteText(const std::string& text) { Put(0, text, true); }

void LogFile::WriteIndentedPartial(uint32_t indent, const char* format, ...) {
  if (file_ == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  Put(indent, FormatTextV(format, arguments), false);
  va_end(arguments);
}

void LogFile::WritePartial(const char* format, ...) {
  if (file_ == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  Put(0, FormatTextV(format, arguments), false);
  va_end(arguments);
}

void LogFile::LogComputerName() {
  const auto name = platform::ComputerName();
  WriteLine("Computer's Name: %s", name.value_or("<Unknown Computer Name>").c_str());
}

void LogFile::LogUserName() {
  const auto name = platform::UserName();
  WriteLine("Users's Name: %s", name.value_or("<Unknown User Name>").c_str());
}

void LogFile::LogIpAddress() {
  if (file_ == nullptr) return;
  std::string address;
  switch (platform::FirstIpAddress(&address)) {
    case platform::AddressLookup::kFound:
      break;
    case platform::AddressLookup::kNoHost:
      address = "Unable to obtain host-by-name";
      break;
    case platform::AddressLookup::kNoAddress:
      address = GetPhrase("<Unknown IP Address>");
      break;
  }
  WriteLine("Computer's IP: %s", address.c_str());
}

void LogFile::LogOsVersion() {
  if (file_ == nullptr) return;
  const platform::OsVersion version = platform::OperatingSystemVersion();
  WriteLine("Computer's OS: %lu.%lu.%lu  Platform: %lu", Lu(version.major), Lu(version.minor),
            Lu(version.build), Lu(version.platform));
}

void LogFile::LogLabelledFileDetails(const std::string& label, const std::string& path) {
  WriteText(label);
  LogFileDetails(path);
}

void LogFile::LogFileDetails(const std::string& path) {
  const bool exists = FileExists(path);
  WriteLine("File details:");
  WriteLine("    Filename: %s", path.c_str());
  WriteLine("    File Exists? %s", exists ? "Yes" : "No");
  if (!exists) return;
  const auto status = platform::StatusOf(path).value_or(platform::FileStatus{});
  WriteLine("       Created: %s", platform::LongDateTimeText(status.createdTime).c_str());
  WriteLine("       Modified: %s", platform::LongDateTimeText(status.modifiedTime).c_str());
  WriteLine("    Version: %s", GetFileVersionText(path).c_str());
}

void LogFile::LogHostFileDetails() { LogFileDetails(platform::HostProgramArgument()); }

void LogFile::WriteBanner(const std::string& title) {
  const std::string rule(kRuleWidth, '=');
  WriteText(" ");
  WriteText(" ");
  WriteText(rule);
  WriteText(title);
  WriteText(rule);
}

void LogFile::WriteDateBanner() { WriteBanner(CurrentTimeText()); }

void LogFile::WriteBlock(uint32_t indent, const std::string& text) {
  const std::string lines = Replaced(text, "\r\n", "\n");
  for (size_t start = 0; start < lines.size();) {
    const size_t end = std::min(lines.find('\n', start), lines.size());
    WriteBytes(std::string((timeStamps_ ? kTimeStampWidth : 0) + indent, ' ') +
               lines.substr(start, end - start) + kLineEnd);
    start = end + 1;
  }
}

void LogFile::WriteBlock(const std::string& text) { WriteBlock(0, text); }

// A line never breaks: line ends in the text become "; ".
void LogFile::Put(uint32_t indent, const std::string& text, bool endLine) {
  if (file_ == nullptr) return;
  std::string line = TimeStamp() + std::string(indent, ' ');
  line += Replaced(Replaced(text, "\r\n", "; "), "\n", "; ");
  if (endLine) line += kLineEnd;
  WriteBytes(line);
}

// What the file does not take is lost; nobody is told. As the process ends, a thread that is dead
// by now may have the lock.
void LogFile::WriteBytes(const std::string& bytes) {
  if (file_ == nullptr) return;
  std::unique_lock lock(mutex_, std::defer_lock);
  if (!platform::ProcessIsEnding()) lock.lock();
  file_->Write(bytes.data(), bytes.size());
  if (flushEachLine_) file_->Flush();
}

LogFile& Log() {
  static LogFile log;
  return log;
}

}  // namespace zyr
