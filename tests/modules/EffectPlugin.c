#include "effecttypes.h"

#include <stdlib.h>

/*
 * Plug-ins for the tests of loading one, in C as the contract allows. Each keeps a record of its calls in an
 * environment variable: "g" for EmberdeckGetInfo, "r" for EmberdeckReleaseInfo with a table, "n" with null.
 */

static void Record(char c)
{
    char szCalls[16] = {0};
    const char* pszSoFar = getenv("EMBERDECK_TEST_CALLS");
    int i = 0;
    for (; pszSoFar && pszSoFar[i] && i < 14; ++i)
        szCalls[i] = pszSoFar[i];
    szCalls[i] = c;
    setenv("EMBERDECK_TEST_CALLS", szCalls, 1);
}

static const CEffectPropertyDesc s_Props[] = {{.m_szName = "Size", .m_eType = ePropType_Float}};
static const CEffectTypeDesc s_Types[] = {{.m_szName = "Spark", .m_nNumProps = 1, .m_pProps = s_Props}};
static CEffectTypeTable s_Table = {.m_nVersion = 7,
#ifdef PLUGIN_WILD
                                   .m_nNumTypes = 0x7FFFFFFF,
#else
                                   .m_nNumTypes = 1,
#endif
                                   .m_pTypes = s_Types};

EMBERDECK_EXPORT void EmberdeckGetInfo(CEffectTypeTable** ppTable)
{
    Record('g');
#ifdef PLUGIN_EMPTY
    (void)ppTable;
    (void)s_Table;
#else
    *ppTable = &s_Table;
#endif
}

#ifndef PLUGIN_HALF
EMBERDECK_EXPORT void EmberdeckReleaseInfo(CEffectTypeTable* pTable)
{
    Record(pTable ? 'r' : 'n');
}
#endif
