#pragma once

#include "qsassert.h"

// Puts the question of a failed assertion to the user, in a box of its own, and gives the answer. On any other
// thread than the window's there is nobody to ask: it goes on. Esc and the frame go on, too.
int32_t AskAboutAssert(const CAssertReport& report);

// From here on failed assertions of the program are asked about; false when the assertion library takes no
// handler.
bool AskAboutAsserts();
