#include "qsamgr/qsatextloader.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <new>

#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsafile.h"
#include "qsamgr/qsanodebuilder.h"
#include "qsamgr/qsanodereader.h"
#include "qsamgr/qsasystem.h"
#include "qsamgr/qsatextscan.h"
#include "qsmemory.h"

// How it works, from the bottom up:
//
// CTreeArena      cuts nodes, element arrays and texts off large chunks: no call per atom, no padding.
// CPendingLists   stands for the token road's builder: the nodes that wait for their list to close.
// CTextLoader     turns masks of 64 bytes into events. A quote always opens or closes a string, since there
// is
//                 no escape, so a running parity of the quotes tells what lies inside strings; what is left
//                 is bit arithmetic. An atom that runs over the end of the text at hand is carried in a
//                 buffer of the size at which atoms are cut anyway.
namespace
{
constexpr size_t c_nMaxAtomLen = CQSANodeReader::c_nMaxAtomLen;

// Nodes and arrays grow from the front of a chunk, texts from its back. So the former stay aligned and the
// latter packed.
class CTreeArena
{
public:
    // nExpectedText is about how long the text will be, 0 when nobody knows.
    CTreeArena(CQSALoadOnlyAlloc& alloc, size_t nExpectedText)
        : m_Alloc(alloc),
          m_nChunkSize(
              std::max<size_t>(alloc.GetBlockSize(), std::min(nExpectedText, c_nMaxChunk) * c_nTreePerText))
    {
    }

    // nLen is at most c_nMaxAtomLen; pReadable is the start of the readable memory around pText. Null when
    // memory is out.
    CQSANode* AddAtom(const char* pText, size_t nLen, bool bString, const char* pReadable)
    {
        if (!HasRoom(sizeof(CQSANode) + nLen + 1))
            return nullptr;
        char* pEnd = m_pBack - 1;
        *pEnd = '\0';
        m_pBack = pEnd - nLen;
        if (nLen <= c_nSlack && pText + nLen >= pReadable + c_nSlack) [[likely]]
        {
            // One wide copy that ends where the text ends. What it writes before the text's start is free.
            std::memcpy(pEnd - c_nSlack, pText + nLen - c_nSlack, c_nSlack);
        }
        else
        {
            std::memcpy(m_pBack, pText, nLen);
        }
        auto* pNode = new (TakeFront(sizeof(CQSANode))) CQSANode;
        pNode->AdoptValue(m_pBack, bString);
        return pNode;
    }

    // A list of nCount elements, copied. Null when memory is out.
    CQSANode* AddList(CQSANode* const* ppElements, uint32_t nCount)
    {
        const size_t nArraySize = nCount * sizeof(CQSANode*);
        if (!HasRoom(sizeof(CQSANode) + nArraySize))
            return nullptr;
        auto* pNode = new (TakeFront(sizeof(CQSANode))) CQSANode;
        if (nCount != 0)
        {
            auto** ppArray = reinterpret_cast<CQSANode**>(TakeFront(nArraySize));
            uint32_t i = 0;
            do // most lists are too short for a call to pay
                ppArray[i] = ppElements[i];
            while (++i < nCount);
            pNode->AdoptElements(ppArray, nCount);
        }
        return pNode;
    }

private:
    // Bytes of the wide copy, kept free between front and back so that it may write before a text.
    static constexpr size_t c_nSlack = 16;
    // Chunks double up to this size. What a last chunk doesn't use is never touched, and so costs no memory.
    static constexpr size_t c_nMaxChunk = 32u << 20;
    // Bytes of tree for a byte of usual text, a little generous.
    static constexpr size_t c_nTreePerText = 4;
    // From here on large pages pay.
    static constexpr size_t c_nLargeChunk = 4u << 20;

    bool HasRoom(size_t nSize)
    {
        return static_cast<size_t>(m_pBack - m_pFront) >= nSize + c_nSlack || StartChunk(nSize + c_nSlack);
    }

    char* TakeFront(size_t nSize)
    {
        char* pResult = m_pFront;
        m_pFront += nSize;
        return pResult;
    }

    bool StartChunk(size_t nNeeded);

    CQSALoadOnlyAlloc& m_Alloc;
    size_t m_nChunkSize;
    char* m_pFront = nullptr;
    char* m_pBack = nullptr;
};

bool CTreeArena::StartChunk(size_t nNeeded)
{
    // A whole number of nodes, so that the front stays aligned up to the back. At most 2,097,152 elements and
    // a node are ever needed at once, far from the ends of 32 bits.
    nNeeded = (nNeeded + sizeof(CQSANode) - 1) & ~(sizeof(CQSANode) - 1);
    size_t nSize = std::max(m_nChunkSize, nNeeded);
    void* pChunk = m_Alloc.AllocateAligned(static_cast<uint32_t>(nSize));
    if (pChunk == nullptr && nSize > nNeeded)
    {
        nSize = nNeeded; // the last memory goes further in small pieces
        pChunk = m_Alloc.AllocateAligned(static_cast<uint32_t>(nSize));
    }
    if (pChunk == nullptr)
        return false;
    if (nSize >= c_nLargeChunk)
        QSAAdviseLargePages(pChunk, nSize);
    m_nChunkSize = std::max(m_nChunkSize, std::min(m_nChunkSize * 2, c_nMaxChunk));
    m_pFront = static_cast<char*>(pChunk);
    m_pBack = m_pFront + nSize;
    return true;
}

// The nodes that wait for their list to close, and where each open list began among them.
class CPendingLists
{
public:
    CPendingLists() = default;
    ~CPendingLists() { QSFree(m_ppNodes); }
    CPendingLists(const CPendingLists&) = delete;
    CPendingLists& operator=(const CPendingLists&) = delete;

    bool Open()
    {
        if (m_nDepth >= CQSANodeBuilder::c_nMaxOpen)
            return false;
        m_aFirst[m_nDepth++] = m_nCount;
        return true;
    }

    // Gives the elements of the innermost open list, which leaves with them; they stay readable up to the
    // next Add. False with nothing open.
    bool Close(CQSANode* const*& ppElements, uint32_t& nCount)
    {
        if (m_nDepth == 0)
            return false;
        const uint32_t nFirst = m_aFirst[--m_nDepth];
        ppElements = m_ppNodes + nFirst;
        nCount = m_nCount - nFirst;
        m_nCount = nFirst;
        return true;
    }

    // False at the limit and when memory is out.
    bool Add(CQSANode* pNode)
    {
        if (m_nCount == m_nCapacity && !Grow())
            return false;
        m_ppNodes[m_nCount++] = pNode;
        return true;
    }

    bool IsFull() const { return m_nCount == CQSANodeBuilder::c_nMaxPending; }
    uint32_t GetDepth() const { return m_nDepth; }
    uint32_t GetCount() const { return m_nCount; }
    CQSANode* const* GetNodes() const { return m_ppNodes; }

private:
    bool Grow()
    {
        if (IsFull())
            return false;
        const uint32_t nCapacity =
            std::clamp<uint32_t>(m_nCapacity * 2, 1024, CQSANodeBuilder::c_nMaxPending);
        auto** ppNodes = static_cast<CQSANode**>(QSAllocate(nCapacity * sizeof(CQSANode*)));
        if (ppNodes == nullptr)
            return false;
        if (m_nCount != 0)
            std::memcpy(ppNodes, m_ppNodes, m_nCount * sizeof(CQSANode*));
        QSFree(m_ppNodes);
        m_ppNodes = ppNodes;
        m_nCapacity = nCapacity;
        return true;
    }

    CQSANode** m_ppNodes = nullptr;
    uint32_t m_nCount = 0;
    uint32_t m_nCapacity = 0;
    uint32_t m_nDepth = 0;
    uint32_t m_aFirst[CQSANodeBuilder::c_nMaxOpen];
};

// Bit i of the result is the parity of bits 0 to i.
uint64_t PrefixXor(uint64_t nBits)
{
    nBits ^= nBits << 1;
    nBits ^= nBits << 2;
    nBits ^= nBits << 4;
    nBits ^= nBits << 8;
    nBits ^= nBits << 16;
    return nBits ^ nBits << 32;
}

class CTextLoader
{
public:
    CTextLoader(CQSALoadOnlyAlloc* pAlloc, size_t nExpectedText)
        : m_pAlloc(pAlloc),
          m_Arena(*pAlloc, nExpectedText)
    {
    }

    // The next whole blocks of the text. After a false the load is over.
    bool Feed(const char* pText, size_t nBlocks);

    // The last bytes, fewer than a block. Then the end: all that is open is closed and hung under the root.
    bool Finish(const char* pTail, size_t nTail, CQSANode* pRoot);

private:
    // What the masks of a block come to. An atom ends at the first end behind its start, of whichever kind:
    // no other kind comes between.
    struct SEvents
    {
        uint64_t m_nStarts; // parentheses outside strings, opening quotes, first bytes of values
        uint64_t m_nEnds;   // closing quotes, first bytes behind a value
    };
    SEvents FindEvents(const CQSATextMasks& masks);

    bool LoadBlock(const char* pBlock, const CQSATextMasks& masks);
    bool StartAtom(const char* pBlock, uint32_t nStart, bool bString, uint64_t nEnds);
    bool EndOpenAtom(const char* pEnd);
    void CarryOpenAtom(const char* pEnd);
    bool AddAtom(const char* pText, size_t nLen, bool bString, const char* pReadable);
    bool CloseList();

    CQSALoadOnlyAlloc* m_pAlloc;
    CTreeArena m_Arena;
    CPendingLists m_Pending;
    QSAScanFn m_pfnScan = QSAPickScan();

    uint64_t m_nInString = 0;          // all ones when the block before ended inside a string
    uint64_t m_nAfterValue = 0;        // 1 when its last byte was a value's
    const char* m_pReadable = nullptr; // start of the text at hand

    bool m_bAtomOpen = false; // an atom has begun and not ended
    bool m_bOpenIsString = false;
    const char* m_pOpenStart = nullptr; // where it begins, or goes on, in the text at hand
    size_t m_nCarried = 0;              // bytes of it from texts before
    char m_szCarried[c_nMaxAtomLen];
};

CTextLoader::SEvents CTextLoader::FindEvents(const CQSATextMasks& masks)
{
    // Set from each opening quote to the byte before the closing one.
    const uint64_t nInString = PrefixXor(masks.m_nQuote) ^ m_nInString;
    m_nInString = 0 - (nInString >> 63);
    const uint64_t nValue = ~(masks.m_nQuote | masks.m_nParen | masks.m_nWhite | nInString);
    const uint64_t nBehindValue = nValue << 1 | m_nAfterValue;
    m_nAfterValue = nValue >> 63;
    return {(masks.m_nParen & ~nInString) | (masks.m_nQuote & nInString) | (nValue & ~nBehindValue),
            (masks.m_nQuote & ~nInString) | (nBehindValue & ~nValue)};
}

bool CTextLoader::Feed(const char* pText, size_t nBlocks)
{
    m_pReadable = m_pOpenStart = pText;
    const char* pEnd = pText + nBlocks * c_nTextBlock;
    // So many blocks at once that text and masks stay in the first-level cache.
    CQSATextMasks aMasks[64];
    while (nBlocks != 0)
    {
        const size_t nBatch = std::min(nBlocks, std::size(aMasks));
        m_pfnScan(pText, nBatch, aMasks);
        for (size_t i = 0; i < nBatch; ++i, pText += c_nTextBlock)
        {
            if (!LoadBlock(pText, aMasks[i]))
                return false;
        }
        nBlocks -= nBatch;
    }
    if (m_bAtomOpen)
        CarryOpenAtom(pEnd);
    return true;
}

bool CTextLoader::LoadBlock(const char* pBlock, const CQSATextMasks& masks)
{
    const SEvents events = FindEvents(masks);
    if (m_bAtomOpen)
    {
        if (events.m_nEnds == 0)
            return true;
        if (!EndOpenAtom(pBlock + std::countr_zero(events.m_nEnds)))
            return false;
    }
    for (uint64_t nStarts = events.m_nStarts; nStarts != 0; nStarts &= nStarts - 1)
    {
        const auto nStart = static_cast<uint32_t>(std::countr_zero(nStarts));
        const char c = pBlock[nStart];
        bool bOk;
        if (c == '(')
            bOk = m_Pending.Open();
        else if (c == ')')
            bOk = CloseList();
        else if (c == '"')
            bOk = StartAtom(pBlock, nStart + 1, true, events.m_nEnds);
        else
            bOk = StartAtom(pBlock, nStart, false, events.m_nEnds);
        if (!bOk)
            return false;
    }
    return true;
}

// An atom whose text begins at a byte of the block, or just behind the block. Most end in the same block.
bool CTextLoader::StartAtom(const char* pBlock, uint32_t nStart, bool bString, uint64_t nEnds)
{
    nEnds = nStart < c_nTextBlock ? nEnds >> nStart : 0;
    if (nEnds != 0)
        return AddAtom(pBlock + nStart, static_cast<size_t>(std::countr_zero(nEnds)), bString, m_pReadable);
    m_bAtomOpen = true;
    m_bOpenIsString = bString;
    m_pOpenStart = pBlock + nStart;
    m_nCarried = 0;
    return true;
}

bool CTextLoader::EndOpenAtom(const char* pEnd)
{
    m_bAtomOpen = false;
    if (m_nCarried == 0)
        return AddAtom(m_pOpenStart, static_cast<size_t>(pEnd - m_pOpenStart), m_bOpenIsString, m_pReadable);
    CarryOpenAtom(pEnd);
    return AddAtom(m_szCarried, m_nCarried, m_bOpenIsString, m_szCarried);
}

// Keeps what the text at hand, up to pEnd, holds of the open atom. What is beyond an atom's length is
// dropped.
void CTextLoader::CarryOpenAtom(const char* pEnd)
{
    const size_t nLen = std::min(static_cast<size_t>(pEnd - m_pOpenStart), sizeof(m_szCarried) - m_nCarried);
    std::memcpy(m_szCarried + m_nCarried, m_pOpenStart, nLen);
    m_nCarried += nLen;
}

inline bool CTextLoader::AddAtom(const char* pText, size_t nLen, bool bString, const char* pReadable)
{
    CQSANode* pNode = m_Arena.AddAtom(pText, std::min(nLen, c_nMaxAtomLen), bString, pReadable);
    return pNode != nullptr && m_Pending.Add(pNode);
}

inline bool CTextLoader::CloseList()
{
    CQSANode* const* ppElements;
    uint32_t nCount;
    if (!m_Pending.Close(ppElements, nCount))
        return true; // a stray parenthesis
    CQSANode* pList = m_Arena.AddList(ppElements, nCount);
    // An empty list that finds no place is dropped, as the builder's Pop drops it.
    return pList != nullptr && (m_Pending.Add(pList) || m_Pending.IsFull());
}

bool CTextLoader::Finish(const char* pTail, size_t nTail, CQSANode* pRoot)
{
    // Blanks behind the end close a value and nothing else.
    char szBlock[c_nTextBlock];
    std::memset(szBlock, ' ', sizeof(szBlock));
    if (nTail != 0)
        std::memcpy(szBlock, pTail, nTail);
    CQSATextMasks masks;
    m_pfnScan(szBlock, 1, &masks);
    m_pReadable = m_pOpenStart = szBlock;
    if (!LoadBlock(szBlock, masks))
        return false;
    if (m_bAtomOpen && !EndOpenAtom(szBlock + nTail))
        return false;

    // Counted before the lists are closed, as the builder counts its heads: a list at the top that is open
    // and holds nothing finished has no place in the count, and goes.
    const uint32_t nMaxHeads = m_Pending.GetCount();
    while (m_Pending.GetDepth() != 0)
    {
        if (!CloseList())
            return false;
    }
    const uint32_t nHeads = std::min(m_Pending.GetCount(), nMaxHeads);
    return nHeads == 0 || pRoot == nullptr || pRoot->AppendElements(m_Pending.GetNodes(), nHeads, m_pAlloc);
}
} // namespace

bool QSALoadText(const char* pText, size_t nLen, CQSANode* pRoot, CQSALoadOnlyAlloc* pAlloc)
{
    QS_ASSERT(pAlloc);
    if (pAlloc == nullptr || (pText == nullptr && nLen != 0))
        return false;
    CTextLoader loader(pAlloc, nLen);
    const size_t nWhole = nLen & ~(c_nTextBlock - 1);
    return loader.Feed(pText, nWhole / c_nTextBlock) && loader.Finish(pText + nWhole, nLen - nWhole, pRoot);
}

bool QSALoadFile(CQSAFile& file, size_t nExpectedLen, CQSANode* pRoot, CQSALoadOnlyAlloc* pAlloc)
{
    QS_ASSERT(pAlloc);
    if (pAlloc == nullptr)
        return false;
    CTextLoader loader(pAlloc, nExpectedLen);
    // Small enough that the text is still in the second-level cache when it is scanned.
    char szWindow[64 * 1024];
    uint32_t nLen;
    while ((nLen = file.ReadBlock(szWindow, sizeof(szWindow))) == sizeof(szWindow))
    {
        if (!loader.Feed(szWindow, sizeof(szWindow) / c_nTextBlock))
            return false;
    }
    const uint32_t nWhole = nLen & ~uint32_t(c_nTextBlock - 1);
    if (!loader.Feed(szWindow, nWhole / c_nTextBlock) ||
        !loader.Finish(szWindow + nWhole, nLen - nWhole, pRoot))
        return false;
    file.Close();
    return true;
}
