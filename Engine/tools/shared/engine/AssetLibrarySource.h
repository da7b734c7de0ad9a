#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class CQSANode;
class CQSANodeBuilder;

// A value that goes with a resource.
struct SParameter
{
    std::string m_sName;
    std::string m_sType;
    std::string m_sPlatform; // which platform the value is for; empty: any
    std::string m_sValue;
};

// Something that a source file defines.
struct SResource
{
    std::string m_sName;
    std::string m_sType;
    std::vector<std::unique_ptr<SParameter>> m_Parameters; // in order of addition
};

// One resource needs another.
struct SDependency
{
    std::string m_sSource;       // the resource that depends
    std::string m_sResource;     // the resource depended on
    std::string m_sResourceType; // kind of that resource
    std::string m_sType;         // type of the source resource
    std::string m_sPlatform;     // empty: any
    uint32_t m_nCount = 1;       // how many references this stands for, at least 1
};

// What a source file provides and what it depends on, for an asset pipeline to read: a list of
// resources and a list of dependencies, written at the head of a file as a "resource-database" list.
//
// A null text counts as empty everywhere. Records belong to this object and live as long as it does;
// the texts of a dependency aren't to be changed, since later ones are compared with them.
class CAssetLibrarySource
{
public:
    // Adds the records of a "resource-database" list to what is there. False, and nothing added, for
    // anything else and for a format version other than 1. A list with a name and no value is empty.
    virtual bool ReadFrom(const CQSANode* pNode);

    // Adds the list to the builder, closed. A double quote in a text becomes a single one, since a text
    // with one inside would not load again. False when memory is out.
    virtual bool WriteTo(CQSANodeBuilder* pBuilder) const;

    CAssetLibrarySource() = default;
    virtual ~CAssetLibrarySource() = default;
    CAssetLibrarySource(const CAssetLibrarySource&) = delete;
    CAssetLibrarySource& operator=(const CAssetLibrarySource&) = delete;

    // A new record at the end, always: resources aren't merged. Null when memory is out.
    SResource* AddResource(const char* pszName, const char* pszType);

    // At the end of the resource's parameters. Null for a null resource, which is reported, and when
    // memory is out.
    SParameter* AddParameter(SResource* pResource, const char* pszName, const char* pszType,
                             const char* pszPlatform, const char* pszValue);

    // The first record whose source, resource and two types are the same without regard to case counts
    // one more, whatever nCount is, and is the result. Else a new record of at least 1 at the end. The
    // platform isn't compared. Null when memory is out.
    SDependency* AddDependency(const char* pszSource, const char* pszResource, const char* pszResourceType,
                               const char* pszType, const char* pszPlatform, uint32_t nCount);

    const std::vector<std::unique_ptr<SResource>>& Resources() const { return m_Resources; }
    const std::vector<std::unique_ptr<SDependency>>& Dependencies() const { return m_Dependencies; }

private:
    void ReadResource(const CQSANode* pResource);
    void ReadDependency(const CQSANode* pDependency);

    std::vector<std::unique_ptr<SResource>> m_Resources;
    std::vector<std::unique_ptr<SDependency>> m_Dependencies;
    std::unordered_map<std::string, SDependency*> m_Index; // by the four compared texts, folded
    std::string m_sKey;                                    // of the one that is looked for
};
