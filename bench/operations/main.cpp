// bench_operations [WORD]: each operation beside OpenCV's nearest same work on one thread, one run
// of each in turn, the best times. With a WORD only those whose name holds it.
#include <algorithm>
#include <chrono>
#include <climits>
#include <cmath>
#include <cstdio>
#include <opencv2/core.hpp>

#include "bench/operations/comparison.h"
#include "platform/host/escape_key.h"

namespace zyr::bench {
namespace {

constexpr FrameSize kSizes[] = {{1156, 1600}, {798, 1070}};
constexpr int kLeastRuns = 5;
constexpr int kMostRuns = 200;
constexpr double kEnough = 120;  // milliseconds for a pair

double Milliseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

struct Times {
  double ours;
  double theirs;

  double Ratio() const { return ours / theirs; }
};

Times Measure(const Comparison& comparison) {
  comparison.ours();  // touches all memory and builds what is built once
  comparison.theirs();
  Times best = {INFINITY, INFINITY};
  double spent = 0;
  for (int run = 0; run < kMostRuns && (run < kLeastRuns || spent < kEnough); ++run) {
    const Times times = {Milliseconds(comparison.ours), Milliseconds(comparison.theirs)};
    best = {std::min(best.ours, times.ours), std::min(best.theirs, times.theirs)};
    spent += times.ours + times.theirs;
  }
  return best;
}

std::vector<Comparison> AllOperations(FrameSize size) {
  std::vector<Comparison> list;
  AddPointOperations(size, &list);
  AddMaskFilters(size, &list);
  AddMedians(size, &list);
  AddGeometry(size, &list);
  AddChains(size, &list);
  return list;
}

// What is told at the end.
class Summary {
 public:
  void Add(const std::string& name, double ratio) {
    logarithms_ += std::log(ratio);
    ++count_;
    if (ratio > worst_) {
      worst_ = ratio;
      worstName_ = name;
    }
  }

  void Print() const {
    if (count_ == 0) return;
    std::printf("\ngeometric mean of %d ratios: %.3f\nworst: %.3f, %s\n", count_,
                std::exp(logarithms_ / count_), worst_, worstName_.c_str());
  }

 private:
  double logarithms_ = 0;
  int count_ = 0;
  double worst_ = 0;
  std::string worstName_;
};

void Run(const std::string& word) {
  cv::setNumThreads(1);
  Summary summary;
  for (const FrameSize& size : kSizes) {
    std::printf(
        "%-44s %10s %10s %8s\n",
        ("frames of " + std::to_string(size.width) + " x " + std::to_string(size.height)).c_str(),
        "ours ms", "OpenCV ms", "ratio");
    for (const Comparison& comparison : AllOperations(size)) {
      if (comparison.name.find(word) == std::string::npos) continue;
      const Times times = Measure(comparison);
      std::printf("%-44s %10.3f %10.3f %8.3f\n", comparison.name.c_str(), times.ours, times.theirs,
                  times.Ratio());
      std::fflush(stdout);
      summary.Add(comparison.name + " at " + std::to_string(size.width), times.Ratio());
    }
  }
  summary.Print();
}

}  // namespace
}  // namespace zyr::bench

int main(int argc, char** argv) {
  // As under Windows, where the system is asked for keys once in a while only.
  zyr::platform::host::AnswerTooSoon(INT_MAX);
  zyr::bench::Run(argc > 1 ? argv[1] : "");
  return 0;
}
