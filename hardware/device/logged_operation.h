// Begin and end of an operation in the log.
#pragma once

#include <string>
#include <utility>

#include "foundation/log/log.h"

namespace zyr {

class LoggedOperation {
 public:
  // `name` as in "Device2000::Init()".
  explicit LoggedOperation(std::string name) : name_(std::move(name)) {
    Log().WriteLine("%s::Begin", name_.c_str());
  }
  ~LoggedOperation() { Log().WriteLine("%s::End", name_.c_str()); }
  LoggedOperation(const LoggedOperation&) = delete;
  LoggedOperation& operator=(const LoggedOperation&) = delete;

 private:
  std::string name_;
};

}  // namespace zyr
