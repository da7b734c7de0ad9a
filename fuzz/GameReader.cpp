// The sample game's reader, in a namespace: see FuzzLibrary.h.

#include <dlfcn.h>

#include "FuzzLibrary.h"

namespace bonfire
{
#include "game/PackedFile.cpp"
#include "game/PlugIn.cpp"
} // namespace bonfire
