#include "PlainContainer.h"

#include <algorithm>

namespace
{

constexpr uint32_t c_nOffsetBits = 12;
constexpr uint32_t c_nLengthBits = 4;
constexpr uint32_t c_nWindowSize = 1 << c_nOffsetBits;
constexpr uint32_t c_nBreakEven = (1 + c_nOffsetBits + c_nLengthBits) / 9;
constexpr uint32_t c_nShortest = c_nBreakEven + 1;
constexpr uint32_t c_nLookAhead = (1 << c_nLengthBits) + c_nBreakEven;
constexpr uint32_t c_nRoot = c_nWindowSize;

uint32_t Wrap(uint32_t nPos)
{
    return nPos & (c_nWindowSize - 1);
}

class CBitSink
{
public:
    std::vector<uint8_t> m_Bytes;

    void Put(bool bBit)
    {
        if (bBit)
            m_nByte = uint8_t(m_nByte | m_nMask);
        m_nMask = uint8_t(m_nMask << 1);
        if (m_nMask == 0)
        {
            m_Bytes.push_back(m_nByte);
            m_nByte = 0;
            m_nMask = 1;
        }
    }

    void PutField(uint32_t nValue, uint32_t nBits)
    {
        while (nBits-- > 0)
            Put((nValue >> nBits) & 1);
    }

private:
    uint8_t m_nByte = 0;
    uint8_t m_nMask = 1;
};

class CBitSource
{
public:
    CBitSource(const uint8_t* pBytes, size_t nSize) : m_pBytes(pBytes), m_nBits(nSize * 8) {}

    bool Get(bool& bBit)
    {
        if (m_nPos >= m_nBits)
            return false;
        bBit = (m_pBytes[m_nPos / 8] >> (m_nPos % 8)) & 1;
        ++m_nPos;
        return true;
    }

    // A bit beyond the end repeats the one before it.
    uint32_t GetField(uint32_t nBits)
    {
        uint32_t nValue = 0;
        bool bBit = false;
        while (nBits-- > 0)
        {
            Get(bBit);
            nValue = (nValue << 1) | uint32_t(bBit);
        }
        return nValue;
    }

private:
    const uint8_t* m_pBytes;
    size_t m_nBits;
    size_t m_nPos = 0;
};

struct CTreeNode
{
    uint32_t m_nParent = 0;
    uint32_t m_nSmaller = 0;
    uint32_t m_nLarger = 0;
};

class CPlainWindow
{
public:
    CPlainWindow()
    {
        m_Tree[c_nRoot].m_nParent = c_nRoot;
        m_Tree[c_nRoot].m_nLarger = 1;
        m_Tree[1].m_nParent = c_nRoot;
    }

    void AddByte(uint8_t nByte, CBitSink& sink)
    {
        if (!m_bFilled)
        {
            m_Window[m_nPos + m_nAhead] = nByte;
            m_bFilled = ++m_nAhead == c_nLookAhead;
            return;
        }
        if (m_nAhead >= c_nLookAhead)
            WriteToken(sink);
        const uint32_t nNew = Wrap(m_nPos + c_nLookAhead);
        Remove(nNew);
        m_Window[nNew] = nByte;
        if (nNew < c_nLookAhead)
            m_Window[nNew + c_nWindowSize] = nByte;
        m_nPos = Wrap(m_nPos + 1);
        Add(m_nPos);
        ++m_nAhead;
    }

    void Flush(CBitSink& sink)
    {
        if (m_bFilled)
            m_nPos = Wrap(m_nPos - m_nAhead + c_nLookAhead);
        while (m_nAhead != 0)
        {
            m_nMatchLen = 0;
            WriteToken(sink);
            m_nPos = Wrap(m_nPos + 1);
        }
        WriteSpan(0, c_nShortest, sink);
    }

private:
    void WriteToken(CBitSink& sink)
    {
        uint32_t nLen = std::min(m_nMatchLen, m_nAhead);
        if (nLen < c_nShortest)
        {
            sink.Put(true);
            sink.PutField(m_Window[m_nPos], 8);
            nLen = 1;
        }
        else
            WriteSpan(m_nMatchPos, nLen, sink);
        m_nAhead -= nLen;
    }

    static void WriteSpan(uint32_t nOffset, uint32_t nLen, CBitSink& sink)
    {
        sink.Put(false);
        sink.PutField(nOffset, c_nOffsetBits);
        sink.PutField(nLen - c_nShortest, c_nLengthBits);
    }

    void Add(uint32_t nNew)
    {
        m_nMatchLen = 0;
        m_nMatchPos = 0;
        if (nNew == 0)
            return;
        uint32_t nNode = m_Tree[c_nRoot].m_nLarger;
        for (;;)
        {
            int nDelta = 0;
            uint32_t nEqual = 0;
            for (; nEqual < c_nLookAhead; ++nEqual)
            {
                nDelta = m_Window[nNew + nEqual] - m_Window[nNode + nEqual];
                if (nDelta != 0)
                    break;
            }
            if (nEqual > m_nMatchLen)
            {
                m_nMatchLen = nEqual;
                m_nMatchPos = nNode;
                if (nEqual == c_nLookAhead)
                {
                    Replace(nNode, nNew);
                    return;
                }
            }
            uint32_t& nLink = nDelta > 0 ? m_Tree[nNode].m_nLarger : m_Tree[nNode].m_nSmaller;
            if (nLink == 0)
            {
                nLink = nNew;
                m_Tree[nNew] = {nNode, 0, 0};
                return;
            }
            nNode = nLink;
        }
    }

    void Remove(uint32_t nNode)
    {
        if (nNode == 0 || m_Tree[nNode].m_nParent == 0)
            return;
        if (m_Tree[nNode].m_nLarger == 0)
            Collapse(nNode, m_Tree[nNode].m_nSmaller);
        else if (m_Tree[nNode].m_nSmaller == 0)
            Collapse(nNode, m_Tree[nNode].m_nLarger);
        else
        {
            uint32_t nBefore = m_Tree[nNode].m_nSmaller;
            while (m_Tree[nBefore].m_nLarger != 0)
                nBefore = m_Tree[nBefore].m_nLarger;
            Collapse(nBefore, m_Tree[nBefore].m_nSmaller);
            Replace(nNode, nBefore);
        }
    }

    void Collapse(uint32_t nNode, uint32_t nChild)
    {
        LinkTo(nNode) = nChild;
        m_Tree[nChild].m_nParent = m_Tree[nNode].m_nParent;
        m_Tree[nNode].m_nParent = 0;
    }

    void Replace(uint32_t nOld, uint32_t nNew)
    {
        LinkTo(nOld) = nNew;
        m_Tree[nNew] = m_Tree[nOld];
        m_Tree[m_Tree[nNew].m_nSmaller].m_nParent = nNew;
        m_Tree[m_Tree[nNew].m_nLarger].m_nParent = nNew;
        m_Tree[nOld].m_nParent = 0;
    }

    uint32_t& LinkTo(uint32_t nNode)
    {
        CTreeNode& parent = m_Tree[m_Tree[nNode].m_nParent];
        return parent.m_nSmaller == nNode ? parent.m_nSmaller : parent.m_nLarger;
    }

    uint8_t m_Window[c_nWindowSize + c_nLookAhead] = {};
    CTreeNode m_Tree[c_nWindowSize + 1];
    uint32_t m_nAhead = 0;
    uint32_t m_nPos = 1;
    uint32_t m_nMatchLen = 0;
    uint32_t m_nMatchPos = 0;
    bool m_bFilled = false;
};

} // namespace

std::vector<uint8_t> PlainCompress(const uint8_t* pData, size_t nSize)
{
    CBitSink sink;
    sink.PutField(0, 32);
    CPlainWindow window;
    for (size_t i = 0; i < nSize; ++i)
        window.AddByte(pData[i], sink);
    window.Flush(sink);
    return sink.m_Bytes;
}

bool PlainDecompress(const uint8_t* pFile, size_t nSize, std::vector<uint8_t>& data)
{
    data.clear();
    CBitSource source(pFile, nSize);
    for (uint32_t i = 0; i < 32; ++i)
    {
        bool bBit = false;
        if (source.Get(bBit) && bBit)
            return false;
    }
    uint8_t ring[c_nWindowSize] = {};
    uint32_t nPos = 1;
    const auto Emit = [&](uint8_t nByte)
    {
        ring[nPos] = nByte;
        nPos = Wrap(nPos + 1);
        data.push_back(nByte);
    };
    bool bLiteral = false;
    while (source.Get(bLiteral))
    {
        if (bLiteral)
        {
            Emit(uint8_t(source.GetField(8)));
            continue;
        }
        uint32_t nFrom = source.GetField(c_nOffsetBits);
        if (nFrom == 0)
            break;
        for (uint32_t nLeft = source.GetField(c_nLengthBits) + c_nShortest; nLeft > 0; --nLeft)
        {
            Emit(ring[nFrom]);
            nFrom = Wrap(nFrom + 1);
        }
    }
    return true;
}
