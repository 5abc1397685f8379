// The diagnostic trace: one text file, each line headed by the time.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "foundation/support/buffered_file.h"
#include "foundation/support/format.h"

namespace zyr {

// Yields where a log is to go.
class LogFileChooser {
 public:
  virtual ~LogFileChooser() = default;
  virtual std::string Directory() = 0;
  virtual std::string FileName() = 0;
};

// Every write is silently nothing while no file is attached, so callers do not ask first. Any
// thread may write, and a line goes out whole; files are attached and closed while one thread alone
// does. Nothing is reported to anyone; a log that cannot be written is no log.
class LogFile {
 public:
  LogFile();
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

  virtual void WriteTimeStamp();
  // Blanks as wide as the time stamp. Only for a log with a file attached.
  virtual void WriteIndent();
  virtual ~LogFile();
  virtual void OpenFromChooser(LogFileChooser* chooser);
  // Closes a previous log and writes the header block to `file`, which is not owned. It stays
  // attached after Close(), closed, until another file takes its place: it must live that long, or
  // longer than this object.
  virtual void Attach(BufferedFile* file);
  virtual void Open(const std::string& directory, const std::string& name);
  virtual void OpenInModuleDirectory(const std::string& name);
  virtual void Close();
  virtual bool IsOpen() const;
  virtual void SetFlushEachLine(bool flag);
  virtual void SetTimeStamps(bool flag);
  virtual void WriteIndentedLine(uint32_t indent, const char* format, ...) ZYR_PRINTF(3, 4);
  virtual void WriteLine(const char* format, ...) ZYR_PRINTF(2, 3);
  virtual void WriteIndentedText(uint32_t indent, const std::string& text);
  virtual void WriteText(const std::string& text);
  virtual void WriteIndentedPartial(uint32_t indent, const char* format, ...) ZYR_PRINTF(3, 4);
  virtual void WritePartial(const char* format, ...) ZYR_PRINTF(2, 3);
  virtual void LogComputerName();
  virtual void LogUserName();
  virtual void LogIpAddress();
  virtual void LogOsVersion();
  virtual void LogLabelledFileDetails(const std::string& label, const std::string& path);
  virtual void LogFileDetails(const std::string& path);
  virtual void LogHostFileDetails();
  virtual void WriteBanner(const std::string& title);
  virtual void WriteDateBanner();
  // Keeps the text's line breaks: each line has blanks in place of the time stamp.
  virtual void WriteBlock(uint32_t indent, const std::string& text);
  virtual void WriteBlock(const std::string& text);

 private:
  void Put(uint32_t indent, const std::string& text, bool endLine);
  std::string TimeStamp() const;
  void WriteBytes(const std::string& bytes);

  std::mutex mutex_;
  BufferedFile* file_ = nullptr;
  BufferedFile ownFile_;
  bool flushEachLine_ = false;
  int64_t startTime_ = 0;  // seconds since 1970
  bool timeStamps_ = true;
};

// The one log of the process, constructed at first use.
LogFile& Log();

}  // namespace zyr
