#include "tests/platform/clock_contract.h"
