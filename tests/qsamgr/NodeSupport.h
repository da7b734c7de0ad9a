#pragma once

#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsanode.h"

#include <string>

// A tree as text of one form only: bare values in <>, strings in "", lists in (). Null elements show as
// "null".
inline void AppendTree(const CQSANode* pNode, std::string& sText)
{
    if (pNode == nullptr)
    {
        sText += "null";
    }
    else if (pNode->IsAtom())
    {
        sText += pNode->IsString() ? '"' : '<';
        sText += pNode->GetValue();
        sText += pNode->IsString() ? '"' : '>';
    }
    else
    {
        sText += '(';
        for (uint32_t i = 0; i < pNode->GetNumElements(); ++i)
            AppendTree(pNode->GetElement(i), sText);
        sText += ')';
    }
}
inline std::string TreeText(const CQSANode* pNode)
{
    std::string sText;
    AppendTree(pNode, sText);
    return sText;
}

// The heap allocator with books: how many nodes and blocks are out, and the call that fails.
class CBookAlloc : public CQSADefaultAlloc
{
public:
    explicit CBookAlloc(int nFailAt = 0) : m_nFailAt(nFailAt) {}

    CQSANode* AllocateNode() override
    {
        if (++m_nCalls == m_nFailAt)
            return nullptr;
        ++m_nOut;
        return CQSADefaultAlloc::AllocateNode();
    }
    void FreeNode(CQSANode* pNode) override
    {
        if (pNode != nullptr)
        {
            --m_nOut;
            m_sLog += "n";
        }
        CQSADefaultAlloc::FreeNode(pNode);
    }
    void* AllocateBlock(uint32_t nSize) override
    {
        if (++m_nCalls == m_nFailAt)
            return nullptr;
        ++m_nOut;
        m_sLog += "B";
        return CQSADefaultAlloc::AllocateBlock(nSize);
    }
    void FreeBlock(void* pBlock) override
    {
        if (pBlock != nullptr)
            --m_nOut;
        m_sLog += "b";
        CQSADefaultAlloc::FreeBlock(pBlock);
    }

    int m_nFailAt; // number of the call that gives null; 0 for none
    int m_nCalls = 0;
    int m_nOut = 0;
    std::string m_sLog; // n, b: node, block given back; B: block taken
};

// An empty list that releases what it got through the allocator it came from.
class CRoot : public CQSANode
{
public:
    explicit CRoot(CQSAAllocator& alloc) : m_Alloc(alloc) {}
    ~CRoot() { Free(&m_Alloc); }

private:
    CQSAAllocator& m_Alloc;
};
