#pragma once

#include <memory>

#include "changes/LibraryImage.h"

// Align for libraries in which effects, prefabs or groups were renamed: one whose name the library doesn't have is the
// same as one whose name the other doesn't have, if they are made of the same by half at least. Of several the one that
// is most alike. Groups only within one parent.
std::shared_ptr<const CLibraryImage> AlignRenamed(const CLibraryImage& library, const CLibraryImage& other);
