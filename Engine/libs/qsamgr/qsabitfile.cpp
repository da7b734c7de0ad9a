#include "qsamgr/qsabitfile.h"

#include "qsassert.h"

bool CQSABitFile::Open(const char* pszFilename, EOpenMode eMode, uint32_t nCacheSize, bool bAppend)
{
    m_nBitBuffer = 0;
    m_nBitMask = 0;
    if (!CQSAFileBuffer::Open(pszFilename, eMode, nCacheSize, bAppend))
        return false;
    if (eMode == OPEN_WRITE)
        m_nBitMask = 1;
    return true;
}

bool CQSABitFile::GetBit(uint8_t* pBit)
{
    QS_ASSERT(GetMode() == CQSAFileBuffer::OPEN_READ);
    if (GetMode() != OPEN_READ)
        return false;
    if (m_nBitMask == 0)
    {
        if (!ReadByte(&m_nBitBuffer))
            return false;
        m_nBitMask = 1;
    }
    *pBit = m_nBitBuffer & m_nBitMask;
    m_nBitMask = uint8_t(m_nBitMask << 1);
    return true;
}

bool CQSABitFile::SetBit(uint8_t nBit)
{
    QS_ASSERT(GetMode() == CQSAFileBuffer::OPEN_WRITE);
    if (GetMode() != OPEN_WRITE)
        return false;
    if (nBit != 0)
        m_nBitBuffer |= m_nBitMask;
    if (m_nBitMask < 0x80)
    {
        m_nBitMask = uint8_t(m_nBitMask << 1);
        return true;
    }
    if (!WriteByte(m_nBitBuffer))
        return false;
    m_nBitBuffer = 0;
    m_nBitMask = 1;
    return true;
}

bool CQSABitFile::SetBits(const uint8_t* pBytes, uint32_t nCount)
{
    QS_ASSERT(GetMode() == CQSAFileBuffer::OPEN_WRITE);
    if (GetMode() != OPEN_WRITE)
        return false;
    bool bResult = true;
    uint32_t nDone = 0;
    if (m_nBitMask == 1)
    {
        bResult = WriteBlock(pBytes, nCount / 8);
        nDone = nCount / 8 * 8;
    }
    for (; nDone < nCount; ++nDone)
        bResult &= SetBit((pBytes[nDone / 8] >> (nDone % 8)) & 1);
    return bResult;
}

CBitCursor CQSABitFile::GetCursor()
{
    return {GetUnread(), GetUnreadEnd(), m_nBitBuffer, m_nBitMask, &RefillCursor, this};
}

void CQSABitFile::SetCursor(const CBitCursor& cursor)
{
    SetUnread(cursor.m_pNext);
    m_nBitBuffer = cursor.m_nBitBuffer;
    m_nBitMask = cursor.m_nBitMask;
}

bool CQSABitFile::RefillCursor(CBitCursor& cursor)
{
    CQSABitFile* const pFile = static_cast<CQSABitFile*>(cursor.m_pUser);
    const bool bFilled = pFile->FillCache();
    cursor.m_pNext = pFile->GetUnread();
    cursor.m_pEnd = pFile->GetUnreadEnd();
    return bFilled;
}
