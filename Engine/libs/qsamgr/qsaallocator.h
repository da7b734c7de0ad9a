#pragma once

#include <cstdint>

#include "qsamgr/qsanode.h"

// Where a tree's nodes, texts and element arrays come from. Every operation on a tree is handed one, always
// the same for one tree.
class CQSAAllocator
{
public:
    virtual ~CQSAAllocator() = default;

    // A new empty node, or null when memory is out.
    virtual CQSANode* AllocateNode() = 0;
    // Gives a node and everything below it back; null does nothing.
    virtual void FreeNode(CQSANode* pNode) = 0;
    // nSize bytes for a text or an element array, or null. No alignment is promised.
    virtual void* AllocateBlock(uint32_t nSize) = 0;
    // Gives a block back.
    virtual void FreeBlock(void* pBlock) = 0;
};

// For trees that are edited: each node and each block has a place of its own on the program's heap.
class CQSADefaultAlloc : public CQSAAllocator
{
public:
    CQSANode* AllocateNode() override;
    void FreeNode(CQSANode* pNode) override;
    void* AllocateBlock(uint32_t nSize) override;
    void FreeBlock(void* pBlock) override;
};

// The one instance that the node iterators share. It has no state.
CQSADefaultAlloc& GetSharedDefaultAlloc();

// For trees that are loaded, read and dropped: memory is cut off large blocks and comes back only with
// FreeAll or the destructor, all at once. Freeing a node or a block does nothing.
//
// Teardown of a tree whose root stands elsewhere: root.Free(&alloc), then the allocator, then the root.
class CQSALoadOnlyAlloc final : public CQSAAllocator
{
public:
    // nBlockSize is the smallest size of a new block in bytes, above 1024 to be of any use.
    explicit CQSALoadOnlyAlloc(uint32_t nBlockSize);
    ~CQSALoadOnlyAlloc() override;
    CQSALoadOnlyAlloc(const CQSALoadOnlyAlloc&) = delete;
    CQSALoadOnlyAlloc& operator=(const CQSALoadOnlyAlloc&) = delete;

    // Aligned for a node, unlike what AllocateBlock gives.
    CQSANode* AllocateNode() override;
    void FreeNode(CQSANode* pNode) override;
    // Unaligned. A request above what is left starts a new block of the larger of nSize and the block size,
    // and abandons the rest of the one before.
    void* AllocateBlock(uint32_t nSize) override;
    void FreeBlock(void* pBlock) override;

    // As AllocateBlock, at an address that is a multiple of a node's alignment.
    void* AllocateAligned(uint32_t nSize);

    uint32_t GetBlockSize() const { return m_nBlockSize; }

    // Ends every node and every text of every tree made here.
    void FreeAll();

    // The same, but keeps the blocks for what is allocated next: for whoever loads one text after the other,
    // and so gets memory that is at hand and has been touched.
    void Reset();

private:
    struct MemBlock
    {
        char* m_pMemory;
        char* m_pCursor; // next free byte
        uint32_t m_nSize;
        MemBlock* m_pNext;
    };

    bool StartBlock(uint32_t nSize);
    bool ReuseBlock(uint32_t nSize);
    void* Take(uint32_t nSize);
    static void FreeBlocks(MemBlock*& pFirst);

    uint32_t m_nMemLeft = 0; // bytes left in the head block
    uint32_t m_nBlockSize;
    MemBlock* m_pHead = nullptr;  // newest block
    MemBlock* m_pSpare = nullptr; // kept by Reset, empty
};
