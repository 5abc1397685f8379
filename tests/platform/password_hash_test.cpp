#include "tests/platform/password_hash_contract.h"
