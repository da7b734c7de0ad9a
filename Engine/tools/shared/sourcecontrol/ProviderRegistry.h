#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "shared/sourcecontrol/SourceControlProvider.h"

// The source control providers that this program has.
class CProviderRegistry
{
public:
    // Null, or a CSourceControlError with a sentence to show, when there is none to be had.
    using CFactory = std::function<std::unique_ptr<ISourceControlProvider>()>;

    struct CEntry
    {
        CClassId m_Id;
        std::string m_sName; // short, as a project may name it without regard to case: "Git"
        CFactory m_Make;
    };

    // A zero id, an empty factory and an id that is there already are refused.
    bool Register(const CClassId& id, const std::string& sName, CFactory make);
    const std::vector<CEntry>& Entries() const { return m_Entries; } // in order of registration

    bool IsRegistered(const CClassId& id) const { return Find(id) != nullptr; }
    // A class id in its own form, registered or not, or the short name of a registered provider without
    // regard to case. Blanks around it don't count. All zero for anything else.
    CClassId IdFromText(std::string_view sText) const;
    // Null when the id isn't registered. What the factory throws goes through.
    std::unique_ptr<ISourceControlProvider> Make(const CClassId& id) const;

private:
    const CEntry* Find(const CClassId& id) const;

    std::vector<CEntry> m_Entries;
};

// Answers for a run in which nobody can be asked: no source control.
class CSilentLocator final : public ISourceControlLocator
{
public:
    CSourceControlStatus SelectProvider(CClassId& id, bool) override
    {
        id = CClassId();
        return {};
    }
};
