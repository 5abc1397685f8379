// Turns by right angles. The source stays; the result is new. Null for no image or an invalid one,
// and on cancel.
#pragma once

#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

// By 90 and 270 the resolutions change places. 8 and 24 bits turn by memory rows and 1 bit turns by
// picture rows, so images of 1 bit go round the other way.
std::unique_ptr<CKIPImage> Rotate90(const CKIPImage* image, ProgressCallback progress);
std::unique_ptr<CKIPImage> Rotate180(const CKIPImage* image, ProgressCallback progress);
std::unique_ptr<CKIPImage> Rotate270(const CKIPImage* image, ProgressCallback progress);

// The same ways round as 8 bits. The resolutions keep their places; after 90 and 270 the stride is
// the new width.
std::unique_ptr<CKIPDeepImage> DeepRotate90(const CKIPDeepImage* image, ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepRotate180(const CKIPDeepImage* image, ProgressCallback progress);
std::unique_ptr<CKIPDeepImage> DeepRotate270(const CKIPDeepImage* image, ProgressCallback progress);

}  // namespace zyr
