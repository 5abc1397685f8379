// Test control of the password hash double: quick, and the same in every run. It keeps no secret.
#pragma once

namespace zyr::platform::host {

void FailRandomBytes(bool fail);
void FailPasswordKeys(bool fail);
// Calls of DerivePasswordKey so far.
int DerivedPasswordKeys();

void ResetPasswordHash();

}  // namespace zyr::platform::host
