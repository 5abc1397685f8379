// Frames to work on, in both libraries' form.
#pragma once

#include <cstdint>
#include <memory>
#include <opencv2/core.hpp>

#include "bench/operations/comparison.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr::bench {

// A radiograph of 12 bits with its noise, always the same.
std::shared_ptr<const CKIPDeepImage> DeepFrame(FrameSize size);
// Its upper 8 bits, grey.
std::shared_ptr<const CKIPImage> GreyFrame(FrameSize size);
// The same in three channels.
std::shared_ptr<const CKIPImage> ColorFrame(FrameSize size);

// The pixels of these, not copied: the image must stay.
cv::Mat MatOf(const CKIPDeepImage& image);
cv::Mat MatOf(const CKIPImage& image);

}  // namespace zyr::bench
