#include "qsamgr/qsatextwriter.h"

#include <algorithm>
#include <cstring>

#include "qsamgr/qsafile.h"
#include "qsamgr/qsanode.h"
#include "qsmemorytracker.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

// CTextWriter walks the tree and puts bytes at a pointer that has room behind it; room is looked after once
// for each atom and each parenthesis. Where the room comes from is the sink's business: CMemorySink's buffer
// grows, CFileSink's is handed to the file when it is full.
namespace
{
class CMemorySink
{
public:
    explicit CMemorySink(CQSATextBuffer& buffer) : m_Buffer(buffer) {}

    // Takes what was written up to pNext, none for the first call. At least nSize bytes of room from the
    // result on, up to pEnd; null when there are none.
    char* Next(char* pNext, size_t nSize, char*& pEnd)
    {
        Finish(pNext);
        m_pTaken = m_Buffer.Reserve(nSize);
        pEnd = m_pTaken != nullptr ? m_pTaken + m_Buffer.GetRoom() : nullptr;
        return m_pTaken;
    }

    bool Finish(const char* pNext)
    {
        if (m_pTaken != nullptr)
            m_Buffer.Commit(static_cast<size_t>(pNext - m_pTaken));
        m_pTaken = nullptr;
        return true;
    }

private:
    CQSATextBuffer& m_Buffer;
    char* m_pTaken = nullptr;
};

class CFileSink
{
public:
    explicit CFileSink(CQSAFile& file) : m_File(file) {}

    // As CMemorySink's; nSize is at most c_nMost.
    char* Next(char* pNext, size_t, char*& pEnd)
    {
        pEnd = std::end(m_aBytes);
        return pNext == nullptr || Finish(pNext) ? m_aBytes : nullptr;
    }

    bool Finish(const char* pNext)
    {
        return m_File.WriteBlock(m_aBytes, static_cast<uint32_t>(pNext - m_aBytes));
    }

private:
    CQSAFile& m_File;
    char m_aBytes[32 * 1024];
};

constexpr size_t c_nWide = 16; // bytes that are copied at once, however few are meant
// Longest piece of a text or of tabs that is asked room for at once; both sinks have it.
constexpr size_t c_nMaxPiece = 4096;
// Room for a piece and what stands around it: tabs, quotes, a blank.
constexpr size_t c_nRoom = c_nMaxPiece + 4 * c_nWide;

// Length of a text that lies in its node, at most c_nMaxInline.
uint32_t InlineLength(const char* pszText)
{
#if defined(__x86_64__)
    static_assert(sizeof(CQSANode) == 16);
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pszText - CQSANode::c_nInlineBefore));
    const auto nZeros = static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(v, _mm_setzero_si128())));
    return static_cast<uint32_t>(__builtin_ctz(nZeros >> CQSANode::c_nInlineBefore));
#else
    return static_cast<uint32_t>(std::strlen(pszText));
#endif
}

// The place in the text and what stands before the next item go from hand to hand as values, so that they stay
// in registers: behind a byte that is stored a member would have to be looked up again.
template <class TSink>
class CTextWriter
{
public:
    CTextWriter(TSink& sink, CQSATextLayout& layout) : m_Sink(sink), m_Layout(layout) {}

    bool Save(const CQSANode& node)
    {
        char* pNext = m_Sink.Next(nullptr, c_nRoom, m_pEnd);
        if (pNext == nullptr)
            return false;
        pNext = SaveList(&node, m_Layout.m_nDepth, m_Layout.m_bNeedTab, m_Layout.m_bValueWritten, pNext);
        if (pNext == nullptr)
            return false;
        m_Layout.m_bNeedTab = true;
        m_Layout.m_bValueWritten = false;
        return m_Sink.Finish(pNext);
    }

private:
    // All of these take the place to write to and give the place behind; null when the text has to end, which
    // is finished then, and m_Layout tells where.

    char* MakeRoom(char* pNext, uint32_t nDepth, bool bNeedTab, bool bValueWritten)
    {
        if (static_cast<size_t>(m_pEnd - pNext) >= c_nRoom) [[likely]]
            return pNext;
        pNext = m_Sink.Next(pNext, c_nRoom, m_pEnd);
        if (pNext == nullptr)
            m_Layout = {nDepth, bNeedTab, bValueWritten};
        return pNext;
    }
    char* GiveUp(char* pNext, uint32_t nDepth, bool bNeedTab, bool bValueWritten)
    {
        m_Sink.Finish(pNext);
        m_Layout = {nDepth, bNeedTab, bValueWritten};
        return nullptr;
    }

    char* SaveList(const CQSANode* pNode, uint32_t nDepth, bool bNeedTab, bool bValueWritten, char* pNext);
    char* PutAtom(const CQSANode& node, uint32_t nDepth, bool bNeedTab, char* pNext);
    char* PutLongText(const char* pszText, uint32_t nDepth, char* pNext);
    char* PutTabs(uint32_t nCount, uint32_t nDepth, char* pNext);

    TSink& m_Sink;
    CQSATextLayout& m_Layout;
    char* m_pEnd = nullptr;
};

// Recurses as deep as lists nest.
template <class TSink>
char* CTextWriter<TSink>::SaveList(const CQSANode* pNode, uint32_t nDepth, bool bNeedTab, bool bValueWritten,
                                   char* pNext)
{
    QS_ASSERT(pNode);
    if (pNode == nullptr) // a slot that nobody filled
        return GiveUp(pNext, nDepth, bNeedTab, bValueWritten);
    QS_ASSERT(pNode->IsList());
    if (!pNode->IsList())
        return GiveUp(pNext, nDepth, bNeedTab, bValueWritten);

    *pNext++ = bValueWritten ? '\n' : '\t';
    if (bValueWritten && !(pNext = PutTabs(nDepth, nDepth, pNext)))
        return nullptr;
    ++nDepth;
    *pNext++ = '(';
    bNeedTab = false;
    const uint32_t nCount = pNode->GetNumElements();
    const CQSANode* pNodes = pNode->GetNodes();
    for (uint32_t i = 0; i < nCount; ++i)
    {
        if (!(pNext = MakeRoom(pNext, nDepth, bNeedTab, bValueWritten)))
            return nullptr;
        const CQSANode* pElement = pNodes != nullptr ? pNodes + i : pNode->GetElement(i);
        const bool bAtom = pElement != nullptr && pElement->IsAtom();
        pNext = bAtom ? PutAtom(*pElement, nDepth, bNeedTab, pNext)
                      : SaveList(pElement, nDepth, bNeedTab, bValueWritten, pNext);
        if (pNext == nullptr)
            return nullptr;
        bNeedTab = !bAtom;
        bValueWritten = bAtom;
    }
    if (!(pNext = MakeRoom(pNext, nDepth, bNeedTab, bValueWritten)))
        return nullptr;
    *pNext++ = ')';
    *pNext++ = '\n';
    --nDepth;
    return nDepth == 0 ? pNext : PutTabs(nDepth - 1, nDepth, pNext);
}

template <class TSink>
inline char* CTextWriter<TSink>::PutTabs(uint32_t nCount, uint32_t nDepth, char* pNext)
{
    while (nCount > c_nWide)
    {
        std::memset(pNext, '\t', c_nWide);
        if (!(pNext = MakeRoom(pNext + c_nWide, nDepth, false, false)))
            return nullptr;
        nCount -= c_nWide;
    }
    std::memset(pNext, '\t', c_nWide);
    return pNext + nCount;
}

template <class TSink>
inline char* CTextWriter<TSink>::PutAtom(const CQSANode& node, uint32_t nDepth, bool bNeedTab, char* pNext)
{
    const char* pszText = node.GetValue();
    const bool bString = node.IsString();
    *pNext = '\t';
    pNext += bNeedTab;
    *pNext = '"';
    pNext += bString;
    if (node.HoldsText()) [[likely]]
    {
        const uint32_t nLen = InlineLength(pszText);
        std::memcpy(pNext, pszText, CQSANode::c_nMaxInline + 1);
        pNext += nLen;
    }
    else if (!(pNext = PutLongText(pszText, nDepth, pNext)))
    {
        return nullptr;
    }
    *pNext = '"';
    pNext += bString;
    *pNext = ' ';
    return pNext + 1;
}

// By pieces, since nothing limits an atom's length.
template <class TSink>
char* CTextWriter<TSink>::PutLongText(const char* pszText, uint32_t nDepth, char* pNext)
{
    for (size_t nLen = std::strlen(pszText); nLen != 0;)
    {
        const size_t nPiece = std::min(nLen, c_nMaxPiece);
        std::memcpy(pNext, pszText, nPiece);
        pszText += nPiece;
        nLen -= nPiece;
        if (!(pNext = MakeRoom(pNext + nPiece, nDepth, false, true)))
            return nullptr;
    }
    return pNext;
}
} // namespace

CQSATextBuffer::~CQSATextBuffer()
{
    QSFree(m_pBegin);
}

char* CQSATextBuffer::Reserve(size_t nSize)
{
    if (GetRoom() < nSize)
    {
        constexpr size_t c_nFirst = 64 * 1024;
        if (nSize > SIZE_MAX / 4 - m_nCapacity)
            return nullptr;
        const size_t nCapacity = std::max(c_nFirst, 2 * (m_nCapacity + nSize));
        auto* pBegin = static_cast<char*>(QSAllocateTracked(nCapacity));
        if (pBegin == nullptr)
            return nullptr;
        if (m_nUsed != 0)
            std::memcpy(pBegin, m_pBegin, m_nUsed);
        QSFree(m_pBegin);
        m_pBegin = pBegin;
        m_nCapacity = nCapacity;
    }
    return m_pBegin + m_nUsed;
}

bool QSASaveText(const CQSANode& node, CQSATextLayout& layout, CQSATextBuffer& buffer)
{
    CMemorySink sink(buffer);
    return CTextWriter<CMemorySink>(sink, layout).Save(node);
}

bool QSASaveText(const CQSANode& node, CQSATextLayout& layout, CQSAFile& file)
{
    CFileSink sink(file);
    return CTextWriter<CFileSink>(sink, layout).Save(node);
}
