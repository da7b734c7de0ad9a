#include "qsamgr/lzsswindow.h"

#include "qsamgr/qsabitfile.h"

using namespace LZSS;

namespace
{

// A finger that shares fewer bytes than this is worse than a new search.
constexpr uint32_t c_nUsefulShared = 2 + 1;

} // namespace

void CLZSSWindow::Reset()
{
    m_Index.Reset();
    m_nEnd = CLZSSIndex::c_nFirstIndex;
    m_nPos = CLZSSIndex::c_nFirstIndex;
    m_nTokenStart = CLZSSIndex::c_nFirstIndex;
    m_nSource = 0;
    m_Finger = {};
    m_nBits = 0;
    m_nBitCount = 0;
    m_nOut = 0;
}

bool CLZSSWindow::AddByte(uint8_t nByte, CQSABitFile* pFile)
{
    m_Index.GetData()[m_nEnd++] = nByte;
    if (m_nEnd == CLZSSIndex::c_nBufferSize)
        AddBlock(nullptr, 0, pFile);
    return true;
}

bool CLZSSWindow::AddBlock(const void* pData, size_t nLen, CQSABitFile* pFile)
{
    Take(static_cast<const uint8_t*>(pData), nLen,
         [pFile](const uint8_t* pBytes, uint32_t nBytes) { pFile->SetBits(pBytes, nBytes * 8); });
    return true;
}

void CLZSSWindow::AddBlock(const void* pData, size_t nLen, std::vector<uint8_t>& out)
{
    Take(static_cast<const uint8_t*>(pData), nLen,
         [&out](const uint8_t* pBytes, uint32_t nBytes) { out.insert(out.end(), pBytes, pBytes + nBytes); });
}

void CLZSSWindow::Flush(CQSABitFile* pFile)
{
    FinishTokens();
    pFile->SetBits(m_aOut, m_nOut * 8 + m_nBitCount);
}

void CLZSSWindow::Flush(std::vector<uint8_t>& out)
{
    FinishTokens();
    out.insert(out.end(), m_aOut, m_aOut + m_nOut);
}

template <class TSink>
void CLZSSWindow::Take(const uint8_t* pData, size_t nLen, const TSink& sink)
{
    for (;;)
    {
        const size_t nPart = std::min(nLen, size_t(CLZSSIndex::c_nBufferSize - m_nEnd));
        if (nPart != 0)
            std::memcpy(m_Index.GetData() + m_nEnd, pData, nPart);
        m_nEnd += uint32_t(nPart);
        if (m_nEnd < CLZSSIndex::c_nBufferSize)
            return;
        pData += nPart;
        nLen -= nPart;
        Encode();
        sink(m_aOut, m_nOut);
        m_nOut = 0;

        m_Index.Slide();
        m_nEnd -= CLZSSIndex::c_nSlide;
        m_nPos -= CLZSSIndex::c_nSlide;
        m_nTokenStart -= CLZSSIndex::c_nSlide;
        if (m_nSource != 0)
            m_nSource -= CLZSSIndex::c_nSlide;
        if (m_Finger.m_nShared != 0)
            m_Finger.m_nIndex -= CLZSSIndex::c_nSlide;
    }
}

// Enters every string, and writes every token, behind which a further byte is known. So the last 17 bytes of
// a stream stay out, as they do in the format's own encoder.
void CLZSSWindow::Encode()
{
    while (m_nPos + c_nLookAheadSize < m_nEnd)
    {
        if (m_nSource != 0 && EncodeRun())
            continue;
        m_Index.Expire(m_nPos - CLZSSIndex::c_nReach - 1);
        if (WrapPosition(m_nPos) != 0)
        {
            EncodeString(FindPlace());
            continue;
        }
        // Position 0 is no match target and finds no match.
        if (m_nTokenStart == m_nPos)
            PutLiteral();
        m_Index.SkipPosition();
        m_nSource = 0;
        m_Finger = {};
        ++m_nPos;
    }
}

// Passes over the strings that equal known ones one for one. False when there is none at m_nPos.
bool CLZSSWindow::EncodeRun()
{
    const uint8_t* const pData = m_Index.GetData();
    const auto ToWrap = [](uint32_t nIndex) { return c_nWindowSize - WrapPosition(nIndex); };
    const uint32_t nLimit = WrapPosition(m_nPos) == 0
                                ? 0
                                : std::min({m_nEnd - c_nLookAheadSize - m_nPos, ToWrap(m_nPos),
                                            ToWrap(m_nSource), ToWrap(m_nPos - CLZSSIndex::c_nReach - 1)});
    const uint8_t* const pNew = pData + m_nPos + c_nLookAheadSize - 1;
    const uint8_t* const pOld = pData + m_nSource + c_nLookAheadSize - 1;
    uint32_t nRun = 0;
    while (nRun < nLimit)
    {
        const uint64_t nDiff = Load64(pNew + nRun) ^ Load64(pOld + nRun);
        if (nDiff != 0)
        {
            nRun += uint32_t(std::countr_zero(nDiff)) / 8;
            break;
        }
        nRun += 8;
    }
    nRun = std::min(nRun, nLimit);
    if (nRun == 0)
        return false;

    constexpr uint32_t c_nBlock = 16;
    uint32_t aOld[c_nBlock];
    const uint32_t nDistance = m_nPos - m_nSource;
    for (const uint32_t nStop = m_nPos + nRun; m_nPos < nStop;)
    {
        const uint32_t nCount = std::min(nStop - m_nPos, c_nBlock);
        m_Index.TakeOverRun(m_nPos - nDistance, m_nPos, nCount, aOld);
        if (m_nTokenStart < m_nPos + nCount) // one at most, since a span is longer than a block
            PutSpan(aOld[m_nTokenStart - m_nPos], c_nLookAheadSize);
        m_nPos += nCount;
    }
    m_nSource = m_nPos - nDistance;
    if (WrapPosition(m_nSource) == 0)
        m_nSource = 0;
    m_Finger = {};
    return true;
}

inline CLZSSIndex::CPlace CLZSSWindow::FindPlace() const
{
    if (m_nSource != 0)
    {
        const uint8_t* const pLast = m_Index.GetData() + c_nLookAheadSize - 1;
        const uint32_t nDirection = pLast[m_nPos] > pLast[m_nSource] ? CLZSSIndex::UP : CLZSSIndex::DOWN;
        return m_Index.FindFrom(m_nPos,
                                {m_Index.GetEntryAt(m_nSource), m_nSource, nDirection, c_nLookAheadSize});
    }
    if (m_Finger.m_nShared != 0)
    {
        CFinger finger = m_Finger;
        finger.m_nEntry = m_Index.GetEntryAt(finger.m_nIndex);
        return m_Index.FindFrom(m_nPos, finger);
    }
    return m_Index.Find(m_nPos);
}

inline void CLZSSWindow::EncodeString(const CPlace& place)
{
    if (place.m_nEqual != CLZSSIndex::c_nNone)
    {
        const uint32_t nOld = m_Index.TakeOver(place.m_nEqual, m_nPos);
        if (m_nTokenStart == m_nPos)
            PutSpan(nOld, c_nLookAheadSize);
        m_nSource = WrapPosition(nOld + 1) == 0 ? 0 : nOld + 1;
        m_Finger = {};
    }
    else
    {
        if (m_nTokenStart == m_nPos)
            EncodeMatch(place);
        m_Index.Insert(m_nPos, place);
        m_nSource = 0;
        if (place.m_nSharedFar < place.m_Near.m_nShared)
            SetFinger(place.m_Near);
        else
            SetFinger({place.m_nFar, place.m_nFarIndex, place.m_Near.m_nDirection ^ 1, place.m_nSharedFar});
    }
    ++m_nPos;
}

void CLZSSWindow::EncodeMatch(const CPlace& place)
{
    const uint32_t nShared = std::max(place.m_Near.m_nShared, place.m_nSharedFar);
    if (nShared > c_nShortestSpan)
        PutSpan(m_Index.GetNewest(m_Index.FindMatch(place, nShared)), nShared - 1);
    else
        PutLiteral();
}

// Moves a neighbour of the string just entered on by one byte: it stands on the same side of the next string,
// and shares one byte less with it.
inline void CLZSSWindow::SetFinger(const CFinger& finger)
{
    m_Finger.m_nIndex = finger.m_nIndex + 1;
    m_Finger.m_nDirection = finger.m_nDirection;
    m_Finger.m_nShared =
        finger.m_nShared > c_nUsefulShared && WrapPosition(m_Finger.m_nIndex) != 0 ? finger.m_nShared - 1 : 0;
}

// The rest goes out as literals, whatever match it has.
void CLZSSWindow::FinishTokens()
{
    Encode();
    while (m_nTokenStart < m_nEnd)
        PutLiteral();
    PutBits(0, c_nSpanBits);
}

inline void CLZSSWindow::PutBits(uint32_t nBits, uint32_t nCount)
{
    m_nBits |= uint64_t(nBits) << m_nBitCount;
    m_nBitCount += nCount;
    Store64(m_aOut + m_nOut, m_nBits);
    m_nOut += m_nBitCount / 8;
    m_nBits >>= m_nBitCount / 8 * 8;
    m_nBitCount %= 8;
}

inline void CLZSSWindow::PutLiteral()
{
    PutBits(LiteralToken(m_Index.GetData()[m_nTokenStart]), c_nLiteralBits);
    ++m_nTokenStart;
}

inline void CLZSSWindow::PutSpan(uint32_t nIndex, uint32_t nLen)
{
    PutBits(SpanToken(WrapPosition(nIndex), nLen), c_nSpanBits);
    m_nTokenStart += nLen;
}
