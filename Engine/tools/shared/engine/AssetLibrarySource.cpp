#include "shared/engine/AssetLibrarySource.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/NameFold.h"
#include "qsamgr/qsanode.h"
#include "qsamgr/qsanodebuilder.h"
#include "qsamgr/qsaparseutils.h"
#include "qsamgr/qsautil.h"
#include "qsassert.h"
#include "qsstrutils.h"

namespace
{

constexpr int32_t c_nFormatVersion = 1;

const char* TextOf(const char* pszText)
{
    return pszText ? pszText : "";
}

void AppendFolded(std::string& sKey, const char* pszText)
{
    const size_t nStart = sKey.size();
    sKey.append(pszText, std::strlen(pszText) + 1);
    for (size_t i = nStart; i < sKey.size(); ++i)
        sKey[i] = FoldChar(sKey[i]);
}

// The value of a record (name value); null when there is none.
const CQSANode* FindValue(const CQSANode* pNode, const char* pszName)
{
    const CQSANode* pList = CQSAUtil::ShallowFindList(pNode, pszName);
    if (!pList || pList->GetNumElements() < 2)
        return nullptr;
    const CQSANode* pValue = pList->GetElement(1);
    return pValue && pValue->IsAtom() ? pValue : nullptr;
}

const char* FindText(const CQSANode* pNode, const char* pszName)
{
    const CQSANode* pValue = FindValue(pNode, pszName);
    return pValue ? pValue->GetValue() : "";
}

int32_t FindNumber(const CQSANode* pNode, const char* pszName)
{
    const CQSANode* pValue = FindValue(pNode, pszName);
    return pValue ? GetInt32(pValue) : 0;
}

// The search takes a list that it doesn't change, but gives its elements for change.
std::vector<CQSANode*> FindAll(const CQSANode* pList, const char* pszName)
{
    std::vector<CQSANode*> found;
    CQSAUtil::ShallowFindAll(found, const_cast<CQSANode*>(pList), pszName);
    return found;
}

// Emits the tree and remembers whether all of it went well.
class CTreeWriter
{
public:
    explicit CTreeWriter(CQSANodeBuilder& builder) : m_Builder(builder) {}

    void Begin(const char* pszName) { m_bOk = m_bOk && m_Builder.PushValue(pszName, false); }
    void End() { m_bOk = m_bOk && m_Builder.Pop() != nullptr; }
    void Text(const char* pszName, const std::string& sText)
    {
        if (sText.empty())
            return;
        std::string sValue = sText;
        std::replace(sValue.begin(), sValue.end(), '"', '\'');
        Begin(pszName);
        m_bOk = m_bOk && m_Builder.AddValue(sValue.c_str(), true);
        End();
    }
    void Number(const char* pszName, int32_t nValue)
    {
        Begin(pszName);
        m_bOk = m_bOk && m_Builder.AddValue(nValue);
        End();
    }
    bool IsOk() const { return m_bOk; }

private:
    CQSANodeBuilder& m_Builder;
    bool m_bOk = true;
};

void WriteParameter(CTreeWriter& writer, const SParameter& parameter)
{
    writer.Begin("parameter");
    writer.Text("name", parameter.m_sName);
    writer.Text("type", parameter.m_sType);
    writer.Text("platform", parameter.m_sPlatform);
    writer.Text("value", parameter.m_sValue);
    writer.End();
}

void WriteResource(CTreeWriter& writer, const SResource& resource)
{
    writer.Begin("resource");
    writer.Text("name", resource.m_sName);
    writer.Text("type", resource.m_sType);
    if (!resource.m_Parameters.empty())
    {
        writer.Begin("parameter-list");
        for (const auto& pParameter : resource.m_Parameters)
        {
            if (pParameter)
                WriteParameter(writer, *pParameter);
        }
        writer.End();
    }
    writer.End();
}

void WriteDependency(CTreeWriter& writer, const SDependency& dependency)
{
    writer.Begin("dependency");
    writer.Text("source", dependency.m_sSource);
    writer.Text("resource", dependency.m_sResource);
    writer.Text("resource-type", dependency.m_sResourceType);
    writer.Text("type", dependency.m_sType);
    writer.Text("platform", dependency.m_sPlatform);
    if (dependency.m_nCount > 1)
        writer.Number("count", static_cast<int32_t>(dependency.m_nCount));
    writer.End();
}

} // namespace

SResource* CAssetLibrarySource::AddResource(const char* pszName, const char* pszType)
{
    try
    {
        auto pResource = std::make_unique<SResource>();
        pResource->m_sName = TextOf(pszName);
        pResource->m_sType = TextOf(pszType);
        m_Resources.push_back(std::move(pResource));
        return m_Resources.back().get();
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

SParameter* CAssetLibrarySource::AddParameter(SResource* pResource, const char* pszName, const char* pszType,
                                              const char* pszPlatform, const char* pszValue)
{
    QS_ASSERT_MSG(pResource, "Invalid resource object");
    if (!pResource)
        return nullptr;
    try
    {
        auto pParameter = std::make_unique<SParameter>();
        pParameter->m_sName = TextOf(pszName);
        pParameter->m_sType = TextOf(pszType);
        pParameter->m_sPlatform = TextOf(pszPlatform);
        pParameter->m_sValue = TextOf(pszValue);
        pResource->m_Parameters.push_back(std::move(pParameter));
        return pResource->m_Parameters.back().get();
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

SDependency* CAssetLibrarySource::AddDependency(const char* pszSource, const char* pszResource,
                                                const char* pszResourceType, const char* pszType,
                                                const char* pszPlatform, uint32_t nCount)
{
    try
    {
        m_sKey.clear(); // keeps its memory: most dependencies have been met before
        for (const char* pszText : {pszSource, pszResource, pszResourceType, pszType})
            AppendFolded(m_sKey, TextOf(pszText));
        auto it = m_Index.find(m_sKey);
        if (it != m_Index.end() && it->second)
        {
            if (it->second->m_nCount < UINT32_MAX)
                ++it->second->m_nCount;
            return it->second;
        }
        if (it == m_Index.end())
            it = m_Index.emplace(m_sKey, nullptr).first;
        auto pDependency = std::make_unique<SDependency>();
        pDependency->m_sSource = TextOf(pszSource);
        pDependency->m_sResource = TextOf(pszResource);
        pDependency->m_sResourceType = TextOf(pszResourceType);
        pDependency->m_sType = TextOf(pszType);
        pDependency->m_sPlatform = TextOf(pszPlatform);
        pDependency->m_nCount = std::max(nCount, 1u);
        m_Dependencies.push_back(std::move(pDependency));
        // Last, so that a record that couldn't be made isn't found.
        it->second = m_Dependencies.back().get();
        return it->second;
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

bool CAssetLibrarySource::WriteTo(CQSANodeBuilder* pBuilder) const
{
    QS_ASSERT(pBuilder);
    if (!pBuilder)
        return false;
    CTreeWriter writer(*pBuilder);
    writer.Begin("resource-database");
    writer.Number("version", c_nFormatVersion);
    if (!m_Resources.empty())
    {
        writer.Begin("resource-list");
        for (const auto& pResource : m_Resources)
        {
            if (pResource)
                WriteResource(writer, *pResource);
        }
        writer.End();
    }
    if (!m_Dependencies.empty())
    {
        writer.Begin("dependency-list");
        for (const auto& pDependency : m_Dependencies)
        {
            if (pDependency)
                WriteDependency(writer, *pDependency);
        }
        writer.End();
    }
    writer.End();
    return writer.IsOk();
}

bool CAssetLibrarySource::ReadFrom(const CQSANode* pNode)
{
    if (!pNode || !pNode->IsList() || pNode->GetNumElements() == 0)
        return false;
    const CQSANode* pName = pNode->GetElement(0);
    if (!pName || !pName->IsAtom() || !QSStrIEquals(pName->GetValue(), "resource-database"))
        return false;
    if (FindNumber(pNode, "version") != c_nFormatVersion)
        return false;
    for (const CQSANode* pResource : FindAll(CQSAUtil::ShallowFindList(pNode, "resource-list"), "resource"))
        ReadResource(pResource);
    for (const CQSANode* pDependency :
         FindAll(CQSAUtil::ShallowFindList(pNode, "dependency-list"), "dependency"))
        ReadDependency(pDependency);
    return true;
}

void CAssetLibrarySource::ReadResource(const CQSANode* pResource)
{
    SResource* pRecord = AddResource(FindText(pResource, "name"), FindText(pResource, "type"));
    if (!pRecord)
        return;
    const CQSANode* pList = CQSAUtil::ShallowFindList(pResource, "parameter-list");
    for (const CQSANode* pParameter : FindAll(pList, "parameter"))
        AddParameter(pRecord, FindText(pParameter, "name"), FindText(pParameter, "type"),
                     FindText(pParameter, "platform"), FindText(pParameter, "value"));
}

void CAssetLibrarySource::ReadDependency(const CQSANode* pDependency)
{
    AddDependency(FindText(pDependency, "source"), FindText(pDependency, "resource"),
                  FindText(pDependency, "resource-type"), FindText(pDependency, "type"),
                  FindText(pDependency, "platform"), static_cast<uint32_t>(FindNumber(pDependency, "count")));
}
