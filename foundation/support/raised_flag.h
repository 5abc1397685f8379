// A flag that is up for as long as something goes on.
#pragma once

#include <utility>

namespace zyr {

// It is as before then: what goes on may begin once more from within itself.
class RaisedFlag {
 public:
  explicit RaisedFlag(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~RaisedFlag() { flag_ = before_; }
  RaisedFlag(const RaisedFlag&) = delete;
  RaisedFlag& operator=(const RaisedFlag&) = delete;

 private:
  bool& flag_;
  const bool before_;
};

}  // namespace zyr
