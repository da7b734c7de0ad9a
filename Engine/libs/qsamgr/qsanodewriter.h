#pragma once

class CQSANode;
class CQSAWriter;

// Writes whole trees.
class CQSANodeWriter
{
public:
    // Writes a list with all that is in it. False at the first value that can't be written; the lists around
    // it stay unterminated. A null or an atom is reported and gives false. Several top-level nodes take one
    // call each.
    static bool SaveNode(const CQSANode* pNode, CQSAWriter* pWriter);
};
