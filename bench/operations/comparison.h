// Pairs of the same work: ours and OpenCV's on one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zyr::bench {

struct FrameSize {
  uint32_t width;
  uint32_t height;
};

struct Comparison {
  std::string name;             // "median 3 x 3, 16 bit"
  std::function<void()> ours;   // once
  std::function<void()> theirs; // the nearest same work, once
};

// Each adds its operations for frames of that size; what they work on lives in the functions.
void AddPointOperations(FrameSize size, std::vector<Comparison>* list);
void AddMaskFilters(FrameSize size, std::vector<Comparison>* list);
void AddMedians(FrameSize size, std::vector<Comparison>* list);
void AddGeometry(FrameSize size, std::vector<Comparison>* list);
void AddChains(FrameSize size, std::vector<Comparison>* list);  // of a whole capture

}  // namespace zyr::bench
