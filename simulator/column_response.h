// How the columns of a 303 detector differ: each adds a polynomial of the value that it reads out.
#pragma once

#include <cstdint>
#include <vector>

#include "simulator/physics.h"

namespace zyr::simulator {

// A column that reads v has added (c v^2 + b v + a) / 10^7 to what it saw.
struct ColumnPolynomial {
  int32_t a = 0;
  int32_t b = 0;
  int32_t c = 0;
};

// One for each column. Neighbouring columns differ, larger areas do not: a pattern that is smooth
// could not be told from a dark signal that is.
std::vector<ColumnPolynomial> ChooseColumnPolynomials(const DetectorOptions& options,
                                                      uint32_t width);

// What the column reads when it sees `level`.
double ReadThrough(const ColumnPolynomial& column, double level);

}  // namespace zyr::simulator
