#include "model/Key.h"

#include "model/MakeOrNull.h"

std::unique_ptr<CKey> CKey::Clone() const
{
    return MakeOrNull<CKey>(*this);
}

void CKey::Link(uint32_t nID)
{
    m_bMotionLinked = true;
    m_nMotionLinkID = nID;
}

void CKey::Unlink()
{
    m_bMotionLinked = false;
    m_nMotionLinkID = 0;
}
