// What each operation does beside its work, row by row.
#pragma once

#include <cstdint>

#include "foundation/support/progress.h"

namespace zyr {

// Starts a cancellable operation over `rows` rows.
class RowProgress {
 public:
  RowProgress(ProgressCallback progress, uint32_t rows) : progress_(progress), rows_(rows) {
    cancel_monitor::Reset();
  }

  // After each row: tells the fraction done, and is false once the user has cancelled.
  bool Continue(uint32_t row) const {
    if (progress_ != nullptr) progress_(static_cast<double>(row) / rows_);
    return !cancel_monitor::IsCancelled();
  }

 private:
  ProgressCallback progress_;
  double rows_;
};

}  // namespace zyr
