#pragma once

#include <string>

// Gives the owner the right to write to a file; the other rights stay. True when it has that already.
// False for what isn't there, and where the machine refuses.
bool MakeFileWritable(const std::string& sPath);
// Who may read and write it, the lowest nine bits of the mode without those to run it. 0666 when it isn't there.
unsigned FileMode(const std::string& sPath);
// Takes a file or folder's rights from everybody but its owner. False where that can't be had.
bool MakePrivate(const std::string& sPath);
