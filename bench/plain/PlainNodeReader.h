#pragma once

#include <string>
#include <string_view>
#include <vector>

// The node text syntax in its simplest form: a byte at a time, into a tree that grows as it goes. Shares no
// code with the library, so that each can be checked, and timed, against the other.
struct CPlainNode
{
    bool m_bAtom = false;
    bool m_bString = false;             // an atom that was quoted
    std::string m_sValue;               // an atom's text
    std::vector<CPlainNode> m_Elements; // a list's elements
};

// The top-level nodes of the text. False, with an empty result, when lists nest deeper than 1023, or when
// more than 2,097,152 nodes wait for their list to close.
bool PlainReadNodes(std::string_view text, std::vector<CPlainNode>& nodes);
