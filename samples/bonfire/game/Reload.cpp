// SPDX-License-Identifier: 0BSD
#include "game/Reload.h"

#include <sys/stat.h>

CFileStamp StampOf(const std::string& sPath)
{
    CFileStamp stamp;
    struct stat info;
    if (stat(sPath.c_str(), &info) != 0)
        return stamp;
    stamp.m_bThere = true;
    stamp.m_nSize = uint64_t(info.st_size);
    stamp.m_nTime = int64_t(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
    stamp.m_nFile = uint64_t(info.st_ino);
    return stamp;
}

void CReloadWatch::Loaded(const CFileStamp& stamp)
{
    m_Shown = m_Seen = stamp;
}

EReload CReloadWatch::Ask(const CFileStamp& stamp, double fNow)
{
    if (stamp != m_Seen)
    {
        m_Seen = stamp;
        m_fSeen = fNow;
    }
    if (m_Seen == m_Shown)
        return EReload::eNothing;
    if (fNow - m_fSeen < (stamp.m_bThere ? c_fSettle : c_fGone))
        return EReload::eWait;
    m_Shown = stamp;
    return stamp.m_bThere ? EReload::eLoad : EReload::eGone;
}
