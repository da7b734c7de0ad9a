#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "changes/LibraryChange.h"

// A change as node text, one difference a line, for people to read and for programs to read back:
//
//     ( key-start ( effect "Campfire" 17 ) ( object "12" 93 ) ( before ( number 100 ) ) ( after ( number 200 ) ) )
//
// The number behind a name tells apart what bears the same one. Values stand in the form of their kind, floats with as
// many digits as bring back the same float. As in an effect file, a double quote in a text becomes a single one.
std::string WriteChangeText(const CLibraryChange& change);

// What the objects and items of another process' texts are called in this one. Numbers mean nothing beyond the process
// that gave them out: here each gets a new one, when it is first met. One for all texts that belong together.
class CChangeNumbers
{
public:
    uint64_t Object(uint64_t nThere);                // a serial; 0 stays 0
    uint32_t Item(ETreeSide eSide, uint32_t nThere); // a handle in a tree in which nothing else has ever been

private:
    std::unordered_map<uint64_t, uint64_t> m_Objects;
    std::unordered_map<uint32_t, uint32_t> m_Items[c_nNumSides];
};

// Reads such a text. Strict: false, with the reason, for anything that the writer wouldn't have written, blanks and
// lines aside. Of memory it takes no more than a fixed multiple of the text's length. pNumbers null: the text is of this
// process.
bool ReadChangeText(std::string_view sText, CLibraryChange& change, std::string& sError,
                    CChangeNumbers* pNumbers = nullptr);
