// Files of the frames that devices hand out, for looking into a sensor's trouble.
#pragma once

#include "hardware/correction/sensor_image.h"
#include "imaging/formats/image_test_saver.h"

namespace zyr {

// The one saver of the process, constructed at first use, and off until someone switches it on.
CKIPImageTestSaver& ImageTestSaver();

// Only if the saver is on.
void SaveFinishedFrame(const SensorImage& frame);

}  // namespace zyr
