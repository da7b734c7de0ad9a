/* SPDX-License-Identifier: 0BSD (copy it freely, without any warranty) */
/* The smallest plug-in: one effect type with two properties. */

#include "effecttypes.h"

#include <string.h>

static CEffectPropertyDesc s_SparkProps[] = {
    {
        .m_szName = "Texture",
        .m_szData = "Textures (*.dds)|*.dds||",
        .m_szHelp = "What the spark shows",
        .m_eType = ePropType_Filename,
        .m_Default = "textures\\spark.dds",
    },
    {
        .m_szName = "Size",
        .m_szData = "0.01;10",
        .m_szHelp = "Edge in metres over the life of the key",
        .m_eType = ePropType_Float,
        .m_bFunctionCurve = 1,
        .m_bInterpolate = 1,
    },
};

static const CEffectTypeDesc s_Types[] = {
    {
        .m_szName = "Spark",
        .m_nTypeID = 0,
        .m_nNumProps = 2,
        .m_pProps = s_SparkProps,
    },
};

static CEffectTypeTable s_Table = {
    .m_nVersion = 1,
    .m_nNumTypes = 1,
    .m_pTypes = s_Types,
};

EMBERDECK_EXPORT void EmberdeckGetInfo(CEffectTypeTable** ppTable)
{
    const float fSize = 0.25f; /* a number stands in the bytes of the default as it does in memory */
    memcpy(s_SparkProps[1].m_Default, &fSize, sizeof(fSize));
    *ppTable = &s_Table;
}

EMBERDECK_EXPORT void EmberdeckReleaseInfo(CEffectTypeTable* pTable)
{
    (void)pTable; /* nothing was made at run time */
}
