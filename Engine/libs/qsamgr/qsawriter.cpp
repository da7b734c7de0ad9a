#include "qsamgr/qsawriter.h"

#include <algorithm>
#include <cstring>

#include "qsassert.h"

CQSAWriter::CQSAWriter(CQSAFile* pFile) : m_pFile(pFile)
{
    QS_ASSERT_MSG(pFile, "Invalid CQSAFile pointer");
}

bool CQSAWriter::IsValid() const
{
    return m_pFile != nullptr && m_pFile->IsOpen();
}

bool CQSAWriter::BeginNode()
{
    QS_ASSERT(IsValid());
    if (!IsValid())
        return false;
    if (m_Layout.m_bValueWritten)
    {
        m_pFile->WriteByte('\n');
        WriteTabs(m_Layout.m_nDepth);
    }
    else
    {
        m_pFile->WriteByte('\t');
    }
    ++m_Layout.m_nDepth;
    m_pFile->WriteByte('(');
    m_Layout.m_bNeedTab = false;
    return true;
}

bool CQSAWriter::EndNode()
{
    QS_ASSERT(IsValid());
    if (!IsValid())
        return false;
    m_pFile->WriteBlock(")\n", 2);
    if (m_Layout.m_nDepth == 0)
    {
        QS_ASSERT(false);
        return false;
    }
    --m_Layout.m_nDepth;
    if (m_Layout.m_nDepth != 0)
        WriteTabs(m_Layout.m_nDepth - 1);
    m_Layout.m_bNeedTab = true;
    m_Layout.m_bValueWritten = false;
    return true;
}

bool CQSAWriter::Write(const void* pBytes, uint32_t nLen, bool bQuote)
{
    QS_ASSERT(IsValid());
    if (!IsValid() || (pBytes == nullptr && nLen != 0))
        return false;
    if (m_Layout.m_bNeedTab)
    {
        m_pFile->WriteByte('\t');
        m_Layout.m_bNeedTab = false;
    }
    m_Layout.m_bValueWritten = true;
    if (bQuote && !m_pFile->WriteByte('"'))
        return false;
    if (!m_pFile->WriteBlock(pBytes, nLen))
        return false;
    if (bQuote && !m_pFile->WriteByte('"'))
        return false;
    return m_pFile->WriteByte(' ');
}

bool CQSAWriter::Write(const char* pszValue, bool bQuote)
{
    const size_t nLen = pszValue != nullptr ? std::strlen(pszValue) : 0;
    return pszValue != nullptr && nLen <= UINT32_MAX && Write(pszValue, static_cast<uint32_t>(nLen), bQuote);
}

bool CQSAWriter::Close()
{
    m_Layout.m_nDepth = 0;
    return m_pFile != nullptr && m_pFile->Close();
}

bool CQSAWriter::WriteTabs(uint32_t nCount)
{
    static constexpr char c_szTabs[] = "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";
    constexpr uint32_t c_nTabs = sizeof(c_szTabs) - 1;
    bool bOk = true;
    for (; nCount != 0; nCount -= std::min(nCount, c_nTabs))
        bOk &= m_pFile->WriteBlock(c_szTabs, std::min(nCount, c_nTabs));
    return bOk;
}
