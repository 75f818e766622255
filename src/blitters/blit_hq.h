// Test seam of the HQ blitters: which instruction set draws.
#pragma once

namespace lvhq
{

// True when the AVX2 path is in use (the processor has it and it is allowed).
bool UsesAvx2();
// Allows or forbids the AVX2 path (allowed by default); tests compare both paths.
void AllowAvx2(bool allowed);

} // namespace lvhq
