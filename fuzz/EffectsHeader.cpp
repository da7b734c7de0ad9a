// What a game reads packed files with: whatever it opens can be walked over to the last value, and the same file in the
// other byte order holds the same.

#include "CurvesPlugin.h"
#include "FuzzTools.h"
#include "GameFile.h"

namespace
{
// The version that the file asks for tells which of two tables it is read with.
const CEffectTypeTable& TypesOf(const CEmberdeckFile& file)
{
    static CTestPlugin s_Standard, s_Curves;
    static const CEffectTypeTable& s_StandardTypes = *DescribeStandardTypes(s_Standard).table();
    static const CEffectTypeTable& s_CurveTypes = *DescribeCurves(s_Curves).table();
    return file.m_nTypeTableVersion == s_CurveTypes.m_nVersion ? s_CurveTypes : s_StandardTypes;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    const std::string sBytes(reinterpret_cast<const char*>(pData), nSize);
    CGameFile file, other;
    file.Open(sBytes, {0, 0, nullptr}); // refused, but its header is read
    const CEffectTypeTable& types = TypesOf(file.m_File);
    if (!file.Open(sBytes, types))
    {
        Require(file.m_Error.m_eCode != eEmberdeckError_None && file.m_Error.m_nOffset <= nSize,
                "a refusal without a reason or a place");
        return 0;
    }
    Require(file.m_Error.m_eCode == eEmberdeckError_None, "a reason without a refusal");
    Require(other.Open(InOtherOrder(sBytes, file.m_File), types), "the other byte order is refused");
    Require(file.m_File.m_bBigEndian != other.m_File.m_bBigEndian && file.Digest() == other.Digest(),
            "the other byte order holds something else");
    return 0;
}
