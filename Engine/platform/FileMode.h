#pragma once

#include <string>

// Gives the owner the right to write to a file; the other rights stay. True when it has that already.
// False for what isn't there, and where the machine refuses.
bool MakeFileWritable(const std::string& sPath);
