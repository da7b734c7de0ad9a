#pragma once

#include <string>
#include <string_view>

#include "changes/LibraryChange.h"

// A change as node text, one difference a line, for people to read and for programs to read back:
//
//     ( key-start ( effect "Campfire" 17 ) ( object "12" 93 ) ( before ( number 100 ) ) ( after ( number 200 ) ) )
//
// The number behind a name tells apart what bears the same one. Values stand in the form of their kind, floats with as
// many digits as bring back the same float. As in an effect file, a double quote in a text becomes a single one.
std::string WriteChangeText(const CLibraryChange& change);

// Reads such a text. Strict: false, with the reason, for anything that the writer wouldn't have written, blanks and
// lines aside. Of memory it takes no more than a fixed multiple of the text's length.
bool ReadChangeText(std::string_view sText, CLibraryChange& change, std::string& sError);
