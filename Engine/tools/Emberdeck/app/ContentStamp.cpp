#include "app/ContentStamp.h"

#include <utility>

#include "app/StoreNames.h"
#include "model/MakeOrNull.h"

CContentStamp::CContentStamp(std::string sPath, uint64_t nSize, std::string sHash)
    : m_sPath(std::move(sPath)),
      m_sHash(std::move(sHash))
{
    m_Version.m_nSize = nSize;
}

const std::string& CContentStamp::GetHash()
{
    if (!m_sHash.empty() || m_Version.m_nFile == 0 || FileVersion(m_sPath) != m_Version)
        return m_sHash;
    TryAllocating(
        [this]
        {
            std::string sContent;
            // What was written while it was read is another version.
            if (ReadOrdinaryFile(m_sPath, sContent, c_nMaxFile) && FileVersion(m_sPath) == m_Version)
                m_sHash = HashOf(sContent);
        });
    return m_sHash;
}

CContentStamp::EState CContentStamp::Look()
{
    const CFileVersion now = FileVersion(m_sPath);
    if (m_sPath.empty() || (m_Version.m_nFile == 0 && m_sHash.empty()))
        return EState::eUnknown;
    if (now.m_nFile == 0)
        return EState::eGone;
    if (now == m_Version)
        return EState::eSame;
    if (now.m_nSize != m_Version.m_nSize)
        return EState::eOther;
    // The same bytes may have been written anew. Those of a file that has changed before it was read are lost.
    if (m_sHash.empty())
        return EState::eOther;
    CContentStamp there(m_sPath);
    if (there.GetHash().empty())
        return EState::eUnknown;
    if (there.m_sHash != m_sHash)
        return EState::eOther;
    m_Version = there.m_Version;
    return EState::eSame;
}
