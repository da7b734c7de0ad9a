#include "qsamgr/qsareader.h"

#include <array>

#include "qsassert.h"

namespace
{
constexpr std::array<bool, 256> MakeWhiteTable()
{
    std::array<bool, 256> table{};
    table[' '] = table['\t'] = table['\n'] = table['\r'] = true;
    return table;
}

constexpr std::array<bool, 256> c_White = MakeWhiteTable();

bool EndsValue(uint8_t nByte)
{
    return c_White[nByte] || nByte == '(' || nByte == ')' || nByte == '"';
}
} // namespace

bool CQSAReader::Open(const char* pszFilename, bool bCompressed)
{
    Close();
    return m_File.Open(pszFilename, true, bCompressed, false);
}

bool CQSAReader::Close()
{
    m_cPushback = ' ';
    return m_File.Close();
}

EQSAToken CQSAReader::NextToken(char* pszValueBuffer, uint32_t nBufferLen)
{
    QS_ASSERT(pszValueBuffer);
    QS_ASSERT(nBufferLen > 0);
    if (pszValueBuffer == nullptr || nBufferLen < 2)
        return TOKEN_END;

    uint8_t nByte = m_cPushback;
    m_cPushback = ' ';
    while (c_White[nByte])
    {
        if (!m_File.ReadByte(&nByte))
            return TOKEN_END;
    }
    switch (nByte)
    {
    case '(':
        return TOKEN_OPEN;
    case ')':
        return TOKEN_CLOSE;
    case '"':
        return ReadString(pszValueBuffer, nBufferLen);
    default:
        return ReadValue(nByte, pszValueBuffer, nBufferLen);
    }
}

EQSAToken CQSAReader::ReadString(char* pszValueBuffer, uint32_t nBufferLen)
{
    uint32_t nStored = 0;
    uint8_t nByte;
    while (m_File.ReadByte(&nByte) && nByte != '"')
    {
        if (nStored < nBufferLen - 1)
            pszValueBuffer[nStored++] = static_cast<char>(nByte);
    }
    pszValueBuffer[nStored] = '\0';
    return TOKEN_STRING;
}

EQSAToken CQSAReader::ReadValue(uint8_t nFirst, char* pszValueBuffer, uint32_t nBufferLen)
{
    pszValueBuffer[0] = static_cast<char>(nFirst);
    uint32_t nStored = 1;
    uint8_t nByte;
    while (m_File.ReadByte(&nByte))
    {
        if (EndsValue(nByte))
        {
            m_cPushback = nByte;
            break;
        }
        if (nStored < nBufferLen - 1)
            pszValueBuffer[nStored++] = static_cast<char>(nByte);
    }
    pszValueBuffer[nStored] = '\0';
    return TOKEN_VALUE;
}
