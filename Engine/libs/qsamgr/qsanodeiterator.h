#pragma once

#include <cstdint>

class CQSANode;

// A cursor over a tree with a stack of the lists being walked. Doesn't own the tree and leaves it unchanged.
// The bottom of the stack is a list of the iterator's own with the given node as its one element.
class CQSANodeIterator
{
public:
    static constexpr uint32_t c_nMaxStack = 1024;

    // With no memory for its own list the iterator finds nothing.
    explicit CQSANodeIterator(CQSANode* pRoot);
    ~CQSANodeIterator();
    CQSANodeIterator(const CQSANodeIterator&) = delete;
    CQSANodeIterator& operator=(const CQSANodeIterator&) = delete;

    // The list at the top of the stack.
    CQSANode* GetHead() const { return m_pNodeStack[m_nStackPos]; }

    // Index of the element of that list that is looked at next.
    uint32_t GetOffset() const { return m_nOffsetStack[m_nStackPos]; }
    void SetOffset(uint32_t nOffset) { m_nOffsetStack[m_nStackPos] = nOffset; }

    // Goes on with pNode at offset 0. True; a null and a full stack are reported and give false, and nothing
    // changes.
    bool PushNode(CQSANode* pNode);

    // The element at the offset, which stays where it is. Null behind the last one (reported).
    CQSANode* GetCursorElement() const;

    // The next element that is a list, or null; the offset moves behind it, or to the end.
    CQSANode* NextList();

    // The next such list whose first element is an atom equal to pszValue, byte by byte, or null.
    CQSANode* FindNextList(const char* pszValue);

private:
    CQSANode* m_pNodeStack[c_nMaxStack];
    uint32_t m_nOffsetStack[c_nMaxStack];
    uint32_t m_nStackPos = 0;
};
