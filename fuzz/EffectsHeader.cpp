// What a game reads packed files with: whatever it opens can be walked over to the last value, and the same file in the
// other byte order holds the same.

#include "FuzzTools.h"
#include "GameFile.h"
#include "support/TestPlugin.h"

namespace
{
const CEffectTypeTable& Types()
{
    static CTestPlugin s_Plugin;
    if (s_Plugin.table()->m_nNumTypes == 0)
        DescribeStandardTypes(s_Plugin);
    return *s_Plugin.table();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    const std::string sBytes(reinterpret_cast<const char*>(pData), nSize);
    CGameFile file, other;
    if (!file.Open(sBytes, Types()))
    {
        Require(file.m_Error.m_eCode != eEmberdeckError_None && file.m_Error.m_nOffset <= nSize,
                "a refusal without a reason or a place");
        return 0;
    }
    Require(file.m_Error.m_eCode == eEmberdeckError_None, "a reason without a refusal");
    Require(other.Open(InOtherOrder(sBytes, file.m_File), Types()), "the other byte order is refused");
    Require(file.m_File.m_bBigEndian != other.m_File.m_bBigEndian && file.Digest() == other.Digest(),
            "the other byte order holds something else");
    return 0;
}
