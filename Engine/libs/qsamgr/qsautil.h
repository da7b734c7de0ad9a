#pragma once

#include <cstdint>
#include <vector>

class CQSANode;

// Node files hold named records: lists whose first element is an atom with the name, as in (version 1). These
// find them among the direct children of a node; deeper ones aren't looked at. Names are compared byte by
// byte. Atoms, empty lists and lists that begin with a list are passed over.
class CQSAUtil
{
public:
    // Whether a node is such a list of that name. False for a null.
    static bool IsListNamed(const CQSANode* pNode, const char* pszValue);

    // The first child list of that name, or null. An atom and a null have none.
    static CQSANode* ShallowFindList(const CQSANode* pNode, const char* pszValue);

    // Appends all child lists of that name to the vector, in order, and gives how many. A null root has none;
    // an atom has none and is reported, as is a null name.
    static uint32_t ShallowFindAll(std::vector<CQSANode*>& list, CQSANode* pRoot, const char* pszValue);

    // Whether a file is compressed node text, by the last letter of its name alone: c or C.
    static bool IsFileCompressed(const char* pszFilename);
};
