#include "shared/sourcecontrol/BuiltInProviders.h"

#include "shared/sourcecontrol/GitProvider.h"
#include "shared/sourcecontrol/SubversionProvider.h"

void RegisterBuiltInProviders(CProviderRegistry& registry, const CProviderHost& host)
{
    registry.Register(CGitProvider::c_Id, "Git", [host] { return std::make_unique<CGitProvider>(host); });
    registry.Register(CSubversionProvider::c_Id, "Subversion",
                      [host] { return std::make_unique<CSubversionProvider>(host); });
}

bool IsBuiltInProvider(const CClassId& id)
{
    return id == CGitProvider::c_Id || id == CSubversionProvider::c_Id;
}

CClassId FindBuiltInProvider(const std::string& sFile, IPrompts* pPrompts)
{
    const CProviderHost host{pPrompts, nullptr, {}};
    if (CGitProvider(host).Covers(sFile))
        return CGitProvider::c_Id;
    return CSubversionProvider(host).Covers(sFile) ? CSubversionProvider::c_Id : CClassId();
}

std::string FindWorkCopyThatKeeps(const std::string& sFile, IPrompts* pPrompts)
{
    const CProviderHost host{pPrompts, nullptr, {}};
    CGitProvider git(host);
    CSubversionProvider subversion(host);
    for (CWorkCopyProvider* pProvider :
         {static_cast<CWorkCopyProvider*>(&git), static_cast<CWorkCopyProvider*>(&subversion)})
    {
        if (pProvider->Keeps(sFile))
            return std::string("the ") + pProvider->SystemName() + " work copy " + pProvider->Top();
    }
    return std::string();
}
