// Fatal assertions with the failed condition's own text, as the user sees it.
#pragma once

#include <lumivex/lumivex.h>

// Shows "Fatal Assertion Failure" with "cond\nfile, line N" and ends the process.
#define KS_ASSERT(cond)                                   \
    do {                                                  \
        if (!(cond)) KSAssert(#cond, __FILE__, __LINE__); \
    } while (0)

// Reports a condition whose text differs from the code that tests it (for example
// the literal "0" of an impossible branch).
#define KS_FAIL(text) KSAssert(text, __FILE__, __LINE__)
