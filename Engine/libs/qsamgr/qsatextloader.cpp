#include "qsamgr/qsatextloader.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsafile.h"
#include "qsamgr/qsanodebuilder.h"
#include "qsamgr/qsanodereader.h"
#include "qsamgr/qsasystem.h"
#include "qsamgr/qsatextscan.h"
#include "qsmemorytracker.h"

// How it works, from the bottom up:
//
// CTreeArena      cuts arrays of nodes and long texts off large chunks: no call per atom, no padding.
// CPendingLists   stands for the token road's builder: the nodes that wait for their list to close, which
//                 moves them side by side into the arena. A short text lies in its node.
// CTextLoader     turns masks of 64 bytes into events. A quote always opens or closes a string, since there is
//                 no escape, so a running parity of the quotes tells what lies inside strings; what is left
//                 is bit arithmetic. An atom that runs over the end of the text at hand is carried in a
//                 buffer of the size at which atoms are cut anyway.
//
// All three stand in one file: they are one loop, whose calls the compiler has to see through.
namespace
{
constexpr size_t c_nMaxAtomLen = CQSANodeReader::c_nMaxAtomLen;

// Arrays of nodes grow from the front of a chunk, texts from its back. So the former stay aligned and the
// latter packed.
class CTreeArena
{
public:
    // nExpectedText is about how long the text will be, 0 when nobody knows.
    CTreeArena(CQSALoadOnlyAlloc& alloc, size_t nExpectedText)
        : m_Alloc(alloc),
          m_nChunkSize(
              std::max<size_t>(alloc.GetBlockSize(),
                               static_cast<size_t>(static_cast<double>(std::min(nExpectedText, c_nMaxChunk)) *
                                                   c_fTreePerText)))
    {
    }

    // A terminated copy; nLen is at most c_nMaxAtomLen. Null when memory is out.
    char* AddText(const char* pText, size_t nLen)
    {
        if (!HasRoom(nLen + 1))
            return nullptr;
        char* pEnd = m_pBack - 1;
        m_pBack = pEnd - nLen;
        *pEnd = '\0';
        size_t i = 0;
        for (; i + 8 <= nLen; i += 8) // most are too short for a call to pay
            std::memcpy(m_pBack + i, pText + i, 8);
        for (; i < nLen; ++i)
            m_pBack[i] = pText[i];
        return m_pBack;
    }

    // Moves nCount nodes, at least one, side by side. c_nWide nodes must be readable from pNodes. Null when
    // memory is out. pOwner is what their list is told.
    CQSANode* AddNodes(const CQSANode* pNodes, uint32_t nCount, const CQSANode::SOwner*& pOwner)
    {
        CQSANode* pResult = NewNodes(nCount, pOwner);
        if (pResult == nullptr)
            return nullptr;
        // Most lists are that short; it takes no time to move a few for nothing, but to find out how many.
        CQSANode::Relocate(pResult, pNodes, c_nWide);
        if (nCount > c_nWide) [[unlikely]]
            CQSANode::Relocate(pResult + c_nWide, pNodes + c_nWide, nCount - c_nWide);
        return pResult;
    }

    // The same for nodes that the caller makes there.
    CQSANode* NewNodes(uint32_t nCount, const CQSANode::SOwner*& pOwner)
    {
        if (!HasRoom((size_t(nCount) + c_nWide) * sizeof(CQSANode)))
            return nullptr;
        auto* pResult = reinterpret_cast<CQSANode*>(m_pFront);
        m_pFront += nCount * sizeof(CQSANode);
        pOwner = m_pOwner;
        return pResult;
    }

    static constexpr uint32_t c_nWide = 6; // nodes that are moved at once, however few are meant

private:
    // Chunks double up to this size. What a last chunk doesn't use is never touched, and so costs no memory.
    static constexpr size_t c_nMaxChunk = 32u << 20;
    // Bytes of tree for a byte of usual text, a little generous.
    static constexpr double c_fTreePerText = 1.5;
    // From here on large pages pay: what of the last one stays empty counts little.
    static constexpr size_t c_nLargeChunk = 2 * c_nQSALargePage;

    bool HasRoom(size_t nSize)
    {
        return static_cast<size_t>(m_pBack - m_pFront) >= nSize || StartChunk(nSize);
    }
    bool StartChunk(size_t nNeeded);
    char* TakeLarge(size_t& nSize);
    char* Take(size_t nSize)
    {
        return static_cast<char*>(m_Alloc.AllocateAligned(static_cast<uint32_t>(nSize)));
    }

    CQSALoadOnlyAlloc& m_Alloc;
    size_t m_nChunkSize;
    char* m_pFront = nullptr;
    char* m_pBack = nullptr;
    const CQSANode::SOwner* m_pOwner = nullptr; // at the chunk's start
};

bool CTreeArena::StartChunk(size_t nNeeded)
{
    // A whole number of nodes, so that the front stays aligned up to the back. At most 2,097,152 nodes are
    // ever needed at once, far from the ends of 32 bits.
    nNeeded =
        (nNeeded + sizeof(CQSANode) - 1) / sizeof(CQSANode) * sizeof(CQSANode) + sizeof(CQSANode::SOwner);
    size_t nSize = std::max(m_nChunkSize, nNeeded);
    char* pChunk = nSize >= c_nLargeChunk ? TakeLarge(nSize) : Take(nSize);
    if (pChunk == nullptr && nSize > nNeeded)
    {
        nSize = nNeeded; // the last memory goes further in small pieces
        pChunk = Take(nSize);
    }
    if (pChunk == nullptr)
        return false;
    m_nChunkSize = std::max(m_nChunkSize, std::min(m_nChunkSize * 2, c_nMaxChunk));
    m_pOwner = new (pChunk) CQSANode::SOwner{&m_Alloc};
    m_pFront = pChunk + sizeof(CQSANode::SOwner);
    m_pBack = pChunk + nSize;
    return true;
}

// Whole large pages, nSize or more. What lies before and behind them is never touched.
char* CTreeArena::TakeLarge(size_t& nSize)
{
    const size_t nWhole = (nSize + c_nQSALargePage - 1) / c_nQSALargePage * c_nQSALargePage;
    char* pMemory = Take(nWhole + c_nQSALargePage);
    if (pMemory == nullptr)
        return nullptr;
    nSize = nWhole;
    pMemory += -reinterpret_cast<uintptr_t>(pMemory) % c_nQSALargePage;
    QSAAdviseLargePages(pMemory, nSize);
    return pMemory;
}

// The nodes that wait for their list to close, and where each open list began among them.
class CPendingLists
{
public:
    CPendingLists() = default;
    ~CPendingLists() { QSFree(m_pNodes); } // trees below them live in the arena
    CPendingLists(const CPendingLists&) = delete;
    CPendingLists& operator=(const CPendingLists&) = delete;

    bool Open()
    {
        if (m_nDepth >= CQSANodeBuilder::c_nMaxOpen)
            return false;
        m_apFirst[m_nDepth++] = m_pTop;
        return true;
    }

    // Gives the elements of the innermost open list, which leaves with them; they stay readable up to the
    // next Add, and so do CTreeArena::c_nWide nodes from there on. False with nothing open.
    bool Close(const CQSANode*& pElements, uint32_t& nCount)
    {
        if (m_nDepth == 0)
            return false;
        CQSANode* pFirst = m_apFirst[--m_nDepth];
        pElements = pFirst;
        nCount = static_cast<uint32_t>(m_pTop - pFirst);
        m_pTop = pFirst;
        return true;
    }

    // A place for a node that the caller makes there at once. Null at the limit and when memory is out.
    CQSANode* Add()
    {
        if (m_pTop == m_pLimit && !Grow()) [[unlikely]]
            return nullptr;
        return m_pTop++;
    }

    // Whether a list could be opened now and so many nodes put into it.
    bool CanAdd(ptrdiff_t nCount) const
    {
        return m_pLimit - m_pTop >= nCount && m_nDepth < CQSANodeBuilder::c_nMaxOpen;
    }
    bool IsFull() const { return GetCount() == CQSANodeBuilder::c_nMaxPending; }
    uint32_t GetDepth() const { return m_nDepth; }
    uint32_t GetCount() const { return static_cast<uint32_t>(m_pTop - m_pNodes); }
    const CQSANode* GetNodes() const { return m_pNodes; }

private:
    bool Grow()
    {
        if (IsFull())
            return false;
        const uint32_t nCount = GetCount();
        const uint32_t nCapacity = std::clamp<uint32_t>(nCount * 2, 1024, CQSANodeBuilder::c_nMaxPending);
        auto* pNodes =
            static_cast<CQSANode*>(QSAllocateTracked((nCapacity + CTreeArena::c_nWide) * sizeof(CQSANode)));
        if (pNodes == nullptr)
            return false;
        if (nCount != 0)
            CQSANode::Relocate(pNodes, m_pNodes, nCount);
        for (uint32_t i = 0; i < m_nDepth; ++i)
            m_apFirst[i] = pNodes + (m_apFirst[i] - m_pNodes);
        QSFree(m_pNodes);
        m_pNodes = pNodes;
        m_pTop = pNodes + nCount;
        m_pLimit = pNodes + nCapacity;
        return true;
    }

    CQSANode* m_pNodes = nullptr;
    CQSANode* m_pTop = nullptr;   // behind the last one
    CQSANode* m_pLimit = nullptr; // as many have room
    uint32_t m_nDepth = 0;
    CQSANode* m_apFirst[CQSANodeBuilder::c_nMaxOpen];
};

bool IsWhite(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// Outside strings.
bool IsValueByte(char c)
{
    return !IsWhite(c) && c != '(' && c != ')' && c != '"';
}

constexpr size_t c_nMarkLen = 7; // of the lines that a merge leaves around what it could not join

// Edges of a list of two atoms.
constexpr ptrdiff_t c_nPairEdges = 6;

class CTextLoader
{
public:
    CTextLoader(CQSALoadOnlyAlloc* pAlloc, size_t nExpectedText)
        : m_pAlloc(pAlloc),
          m_Arena(*pAlloc, nExpectedText)
    {
    }

    // Bytes around the text that it helps to be allowed to read: a short atom is copied with what surrounds it.
    static constexpr size_t c_nAround = sizeof(CQSANode);

    // The next whole blocks of the text. nBefore and nBehind bytes around them may be read, too. After a
    // false the load is over.
    bool Feed(const char* pText, size_t nBlocks, size_t nBefore, size_t nBehind);

    // The stream's end, with the last bytes before it, fewer than a block. bInAtom tells whether it cut an atom,
    // which is taken as far as it goes; a text may be fed then that stands behind the end.
    bool End(const char* pTail, size_t nTail, bool& bInAtom);

    // Closes all that is open and hangs it under the root.
    bool Finish(CQSANode* pRoot);

    CQSATextOutcome& Outcome() { return m_Outcome; }
    uint64_t GetConflictAt() const { return m_nConflictAt; }

private:
    bool LoadBatch(const char* pText, size_t nBlocks);
    bool LoadEdges(const char* pText, uint32_t nCount);
    bool LoadPair(const char* pText, const uint16_t* pEdge);
    bool EndOpenAtom(const char* pEnd);
    void CarryOpenAtom(const char* pEnd);
    bool AddAtom(const char* pText, size_t nLen, bool bString);
    bool AddOtherAtom(CQSANode& node, const char* pText, size_t nLen, bool bString);
    void NoteConflict(const char* pText);
    bool CloseList();
    bool HangUnder(CQSANode& root, uint32_t nHeads);

    CQSALoadOnlyAlloc* m_pAlloc;
    CTreeArena m_Arena;
    CPendingLists m_Pending;
    QSAScanFn m_pfnScan = QSAPickScan();
    QSAIndexFn m_pfnIndex = QSAPickIndex();

    CQSATextState m_State;
    bool m_bWide = false;            // c_nAround bytes may be read on either side of the blocks at hand
    uint16_t m_aEdges[c_nIndexRoom]; // of the blocks at hand

    bool m_bAtomOpen = false; // an atom has begun and not ended
    bool m_bOpenIsString = false;
    const char* m_pOpenStart = nullptr; // where it begins, or goes on, in the text at hand
    bool m_bCarriedCut = false;         // m_szCarried had no room for more of it
    size_t m_nCarried = 0;              // bytes of it from texts before
    char m_szCarried[c_nMaxAtomLen];

    // Where something stands, for marks of a merge.
    struct CPlace
    {
        uint64_t m_nAt; // bytes of the stream before it
        bool m_bBeginsLine;
    };
    CPlace PlaceOf(const char* pText) const
    {
        const char cBefore = pText == m_pTextStart ? m_cBefore : pText[-1];
        return {m_nTextAt + static_cast<uint64_t>(pText - m_pTextStart), cBefore == '\n'};
    }
    void EndText(const char* pEnd);

    const char* m_pTextStart = nullptr; // of the text at hand
    uint64_t m_nTextAt = 0;             // bytes before it
    char m_cBefore = '\n';              // the last of them
    CPlace m_CarriedPlace{};            // of what is in m_szCarried
    uint64_t m_nConflictAt = c_nNoConflict;
    CQSATextOutcome m_Outcome;
};

bool CTextLoader::Feed(const char* pText, size_t nBlocks, size_t nBefore, size_t nBehind)
{
    m_pOpenStart = m_pTextStart = pText;
    const char* pEnd = pText + nBlocks * c_nTextBlock;
    while (pText != pEnd)
    {
        const size_t nBatch = std::min(static_cast<size_t>(pEnd - pText) / c_nTextBlock, c_nIndexBlocks);
        const char* pNext = pText + nBatch * c_nTextBlock;
        m_bWide = nBefore >= c_nAround && static_cast<size_t>(pEnd - pNext) + nBehind >= c_nAround;
        if (!LoadBatch(pText, nBatch))
            return false;
        pText = pNext;
        nBefore = c_nAround;
    }
    if (m_bAtomOpen)
        CarryOpenAtom(pEnd);
    EndText(pEnd);
    return true;
}

void CTextLoader::EndText(const char* pEnd)
{
    if (pEnd == m_pTextStart)
        return;
    m_Outcome.m_bNul |= std::memchr(m_pTextStart, 0, static_cast<size_t>(pEnd - m_pTextStart)) != nullptr;
    m_nTextAt += static_cast<uint64_t>(pEnd - m_pTextStart);
    m_cBefore = pEnd[-1];
}

// So many blocks at once that text, masks and edges stay in the first-level cache.
bool CTextLoader::LoadBatch(const char* pText, size_t nBlocks)
{
    CQSATextMasks aMasks[c_nIndexBlocks];
    m_pfnScan(pText, nBlocks, aMasks);
    return LoadEdges(pText, m_pfnIndex(aMasks, nBlocks, m_State, m_aEdges));
}

bool CTextLoader::LoadEdges(const char* pText, uint32_t nCount)
{
    const uint16_t* pEdge = m_aEdges;
    const uint16_t* pEnd = m_aEdges + nCount;
    if (m_bAtomOpen && pEdge != pEnd)
    {
        const char* pAtomEnd = pText + *pEdge;
        const bool bOnlyEnd = m_bOpenIsString || IsWhite(*pAtomEnd);
        if (!EndOpenAtom(pAtomEnd))
            return false;
        pEdge += bOnlyEnd;
    }
    // Where to go on is decided by branches that are foreseen, not computed from bytes that must be looked up
    // first.
    while (pEdge != pEnd)
    {
        const char* pStart = pText + *pEdge;
        if (*pStart == '(')
        {
            if (pEnd - pEdge >= c_nPairEdges && LoadPair(pText, pEdge))
            {
                pEdge += c_nPairEdges;
                continue;
            }
            if (!m_Pending.Open())
                return false;
            ++pEdge;
            continue;
        }
        if (*pStart == ')')
        {
            if (!CloseList())
                return false;
            ++pEdge;
            continue;
        }
        const bool bString = *pStart == '"';
        pStart += bString;
        if (++pEdge == pEnd)
        {
            m_bAtomOpen = true;
            m_bOpenIsString = bString;
            m_pOpenStart = pStart;
            m_nCarried = 0;
            m_bCarriedCut = false;
            return true;
        }
        const char* pAtomEnd = pText + *pEdge;
        if (!AddAtom(pStart, static_cast<size_t>(pAtomEnd - pStart), bString))
            return false;
        if (!bString && !IsWhite(*pAtomEnd)) [[unlikely]]
            continue; // it begins something, too
        ++pEdge;
    }
    return true;
}

// ( NAME VALUE ) as the writers put it, which half of all lists are, straight into the arena. False for
// anything else, and when something is short: the usual way tells then.
inline bool CTextLoader::LoadPair(const char* pText, const uint16_t* pEdge)
{
    // What begins with a byte above the parentheses is surely a value; letters, digits and signs do.
    const auto IsPlain = [](char c) { return static_cast<unsigned char>(c) > ')'; };
    const auto At = [&](uint32_t n) { return pText + pEdge[n]; };
    const bool bString = *At(3) == '"';
    const char* pName = At(1);
    const char* pValue = At(3) + bString;
    const auto nName = static_cast<size_t>(At(2) - pName);
    const auto nValue = static_cast<size_t>(At(4) - pValue);
    // All at once: one thing to foresee instead of many.
    const bool bPair = (*At(5) == ')') & IsPlain(*pName) & (*At(2) == ' ') &
                       (bString | (IsPlain(*pValue) & (*At(4) == ' '))) & (nName <= CQSANode::c_nMaxInline) &
                       (nValue <= CQSANode::c_nMaxInline);
    if (!bPair || !m_bWide || !m_Pending.CanAdd(2))
        return false;
    const CQSANode::SOwner* pOwner;
    CQSANode* pPair = m_Arena.NewNodes(2, pOwner);
    if (pPair == nullptr)
        return false;
    pPair[0].AdoptInline(pName, static_cast<uint32_t>(nName), false);
    pPair[1].AdoptInline(pValue, static_cast<uint32_t>(nValue), bString);
    m_Pending.Add()->AdoptNodes(pPair, 2, pOwner);
    return true;
}

bool CTextLoader::EndOpenAtom(const char* pEnd)
{
    m_bAtomOpen = false;
    if (m_nCarried == 0)
        return AddAtom(m_pOpenStart, static_cast<size_t>(pEnd - m_pOpenStart), m_bOpenIsString);
    CarryOpenAtom(pEnd);
    m_Outcome.m_nLongAtoms += m_bCarriedCut;
    return AddAtom(m_szCarried, m_nCarried, m_bOpenIsString);
}

// Keeps what the text at hand, up to pEnd, holds of the open atom. What is beyond an atom's length is
// dropped.
void CTextLoader::CarryOpenAtom(const char* pEnd)
{
    const auto nAll = static_cast<size_t>(pEnd - m_pOpenStart);
    const size_t nLen = std::min(nAll, sizeof(m_szCarried) - m_nCarried);
    if (m_nCarried == 0)
        m_CarriedPlace = PlaceOf(m_pOpenStart);
    m_bCarriedCut |= nLen != nAll;
    std::memcpy(m_szCarried + m_nCarried, m_pOpenStart, nLen);
    m_nCarried += nLen;
}

inline bool CTextLoader::AddAtom(const char* pText, size_t nLen, bool bString)
{
    CQSANode* pNode = m_Pending.Add();
    if (pNode == nullptr)
        return false;
    if (nLen == c_nMarkLen && !bString) [[unlikely]]
        NoteConflict(pText);
    if (nLen <= CQSANode::c_nMaxInline && m_bWide) [[likely]]
    {
        pNode->AdoptInline(pText, static_cast<uint32_t>(nLen), bString);
        return true;
    }
    m_Outcome.m_nLongAtoms += nLen > c_nMaxAtomLen;
    return AddOtherAtom(*pNode, pText, std::min(nLen, c_nMaxAtomLen), bString);
}

// A value that may be a mark of a merge: seven equal signs at the begin of a line. Pairs needn't be looked at:
// what stands behind a mark isn't on a line with its list's end.
void CTextLoader::NoteConflict(const char* pText)
{
    if (m_nConflictAt != c_nNoConflict || std::strchr("<=>|", *pText) == nullptr ||
        std::memcmp(pText, pText + 1, c_nMarkLen - 1) != 0)
        return;
    const CPlace place = pText == m_szCarried ? m_CarriedPlace : PlaceOf(pText);
    if (place.m_bBeginsLine)
        m_nConflictAt = place.m_nAt;
}

bool CTextLoader::AddOtherAtom(CQSANode& node, const char* pText, size_t nLen, bool bString)
{
    if (nLen <= CQSANode::c_nMaxInline)
    {
        char szText[sizeof(CQSANode)] = {};
        std::memcpy(szText + CQSANode::c_nInlineBefore, pText, nLen);
        node.AdoptInline(szText + CQSANode::c_nInlineBefore, static_cast<uint32_t>(nLen), bString);
        return true;
    }
    char* pszText = m_Arena.AddText(pText, nLen);
    if (pszText == nullptr)
        return false;
    (new (&node) CQSANode)->AdoptValue(pszText, bString);
    return true;
}

inline bool CTextLoader::CloseList()
{
    const CQSANode* pElements;
    uint32_t nCount;
    if (!m_Pending.Close(pElements, nCount))
    {
        ++m_Outcome.m_nStrayCloses;
        return true;
    }
    if (nCount == 0)
    {
        CQSANode* pEmpty = m_Pending.Add();
        if (pEmpty != nullptr)
            new (pEmpty) CQSANode;
        // One that finds no place is dropped, as the builder's Pop drops it.
        return pEmpty != nullptr || m_Pending.IsFull();
    }
    const CQSANode::SOwner* pOwner;
    CQSANode* pNodes = m_Arena.AddNodes(pElements, nCount, pOwner);
    if (pNodes == nullptr)
        return false;
    m_Pending.Add()->AdoptNodes(pNodes, nCount, pOwner); // where its first element stood
    return true;
}

bool CTextLoader::End(const char* pTail, size_t nTail, bool& bInAtom)
{
    // Blanks behind the end close a value and nothing else.
    char szBlock[c_nTextBlock];
    std::memset(szBlock, ' ', sizeof(szBlock));
    if (nTail != 0)
        std::memcpy(szBlock, pTail, nTail);
    bInAtom = nTail != 0 ? IsValueByte(szBlock[nTail - 1]) : m_bAtomOpen;
    m_pOpenStart = m_pTextStart = szBlock;
    m_bWide = false;
    if (!LoadBatch(szBlock, 1))
        return false;
    bInAtom |= m_bAtomOpen; // a string
    m_Outcome.m_bOpenString |= m_bAtomOpen;
    m_State = {};
    const bool bEnded = !m_bAtomOpen || EndOpenAtom(szBlock + nTail);
    EndText(szBlock + nTail);
    return bEnded;
}

bool CTextLoader::Finish(CQSANode* pRoot)
{
    // Counted before the lists are closed, as the builder counts its heads: a list at the top that is open
    // and holds nothing finished has no place in the count, and goes.
    const uint32_t nMaxHeads = m_Pending.GetCount();
    m_Outcome.m_nOpenLists = m_Pending.GetDepth();
    while (m_Pending.GetDepth() != 0)
    {
        if (!CloseList())
            return false;
    }
    const uint32_t nHeads = std::min(m_Pending.GetCount(), nMaxHeads);
    return nHeads == 0 || pRoot == nullptr || HangUnder(*pRoot, nHeads);
}

bool CTextLoader::HangUnder(CQSANode& root, uint32_t nHeads)
{
    const CQSANode::SOwner* pOwner;
    CQSANode* pNodes = m_Arena.AddNodes(m_Pending.GetNodes(), nHeads, pOwner);
    return pNodes != nullptr && root.AppendNodes(pNodes, nHeads, m_pAlloc);
}
} // namespace

bool QSALoadText(const char* pText, size_t nLen, CQSANode* pRoot, CQSALoadOnlyAlloc* pAlloc,
                 CQSATextOutcome* pOutcome)
{
    QS_ASSERT(pAlloc);
    if (pAlloc == nullptr || (pText == nullptr && nLen != 0))
        return false;
    CTextLoader loader(pAlloc, nLen);
    const size_t nWhole = nLen & ~(c_nTextBlock - 1);
    bool bInAtom;
    const bool bLoaded = loader.Feed(pText, nWhole / c_nTextBlock, 0, nLen - nWhole) &&
                         loader.End(pText + nWhole, nLen - nWhole, bInAtom) && loader.Finish(pRoot);
    if (pOutcome != nullptr)
        *pOutcome = loader.Outcome();
    if (pOutcome != nullptr && loader.GetConflictAt() != c_nNoConflict)
        pOutcome->m_nConflictLine =
            1 + static_cast<uint64_t>(std::count(pText, pText + loader.GetConflictAt(), '\n'));
    return bLoaded;
}

namespace
{
bool LoadStream(CTextLoader& loader, CQSAFile& file)
{
    // Small enough that the text is still in the second-level cache when it is scanned.
    constexpr uint32_t c_nWindow = 64 * 1024;
    constexpr size_t c_nAround = CTextLoader::c_nAround;
    char szMemory[c_nAround + c_nWindow + c_nAround] = {};
    char* szWindow = szMemory + c_nAround;
    for (bool bMore = true; bMore;)
    {
        const uint32_t nLen = file.ReadBlock(szWindow, c_nWindow);
        const uint32_t nWhole = nLen & ~uint32_t(c_nTextBlock - 1);
        if (!loader.Feed(szWindow, nWhole / c_nTextBlock, c_nAround, c_nAround))
            return false;
        // An end within an atom ends that alone, as it does for the tokens: behind the end of a damaged
        // container there may be more.
        if (nLen != c_nWindow && !loader.End(szWindow + nWhole, nLen - nWhole, bMore))
            return false;
    }
    return true;
}
} // namespace

bool QSALoadFile(CQSAFile& file, size_t nExpectedLen, CQSANode* pRoot, CQSALoadOnlyAlloc* pAlloc,
                 CQSATextOutcome& outcome, uint64_t& nConflictAt)
{
    QS_ASSERT(pAlloc);
    if (pAlloc == nullptr)
        return false;
    CTextLoader loader(pAlloc, nExpectedLen);
    bool bLoaded = LoadStream(loader, file);
    loader.Outcome().m_bOpenStream = !file.EndsInStream();
    // What could not be read looks like the end until the file is asked.
    bLoaded = bLoaded && file.Close() && loader.Finish(pRoot);
    outcome = loader.Outcome();
    nConflictAt = loader.GetConflictAt();
    return bLoaded;
}
