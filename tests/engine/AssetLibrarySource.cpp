#include "shared/engine/AssetLibrarySource.h"

#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsanode.h"
#include "qsamgr/qsanodebuilder.h"
#include "qsstrutils.h"

namespace
{

void Print(const CQSANode* pNode, std::string& sText)
{
    if (pNode->IsAtom())
    {
        const char* pszQuote = pNode->IsString() ? "\"" : "";
        sText += std::string(sText.ends_with('(') ? "" : " ") + pszQuote + pNode->GetValue() + pszQuote;
        return;
    }
    sText += '(';
    for (uint32_t i = 0; i < pNode->GetNumElements(); ++i)
        Print(pNode->GetElement(i), sText);
    sText += ')';
}

// A tree made by a builder, released with it.
class CTree
{
public:
    ~CTree() { m_Alloc.FreeNode(m_pNode); }

    explicit CTree(const CAssetLibrarySource& source)
    {
        CQSANodeBuilder builder(&m_Alloc);
        EXPECT_TRUE(source.WriteTo(&builder));
        EXPECT_EQ(1u, builder.GetNumHeads());
        m_pNode = builder.DetachHead();
    }
    // From words: ( and ) stand alone.
    explicit CTree(const std::vector<std::string>& words)
    {
        CQSANodeBuilder builder(&m_Alloc);
        for (const std::string& sWord : words)
        {
            if (sWord == "(")
                builder.Push();
            else if (sWord == ")")
                builder.Pop();
            else
                builder.AddValue(sWord.c_str(), true);
        }
        m_pNode = builder.DetachHead();
    }
    std::string Text() const
    {
        std::string sText;
        Print(m_pNode, sText);
        return sText;
    }
    CQSANode* Node() const { return m_pNode; }

private:
    CQSADefaultAlloc m_Alloc;
    CQSANode* m_pNode = nullptr;
};

std::vector<std::string> Words(const std::string& sText)
{
    std::vector<std::string> words;
    for (size_t i = 0; i < sText.size();)
    {
        const size_t nEnd = std::min(sText.find(' ', i), sText.size());
        words.push_back(sText.substr(i, nEnd - i));
        i = nEnd + 1;
    }
    return words;
}

} // namespace

TEST(AssetLibrarySource, WritesWhatItHoldsAndNothingEmpty)
{
    CAssetLibrarySource source;
    EXPECT_EQ("(resource-database(version 1))", CTree(source).Text());
    source.AddResource("Smoke", "FX");
    SResource* pResource = source.AddResource(nullptr, "");
    source.AddParameter(pResource, "n", "", "PC", "say \"v\"");
    EXPECT_EQ(nullptr, source.AddParameter(nullptr, "n", "", "", ""));
    source.AddDependency("Smoke", "a.dds", nullptr, "FX", nullptr, 1);
    source.AddDependency("Smoke", "Run", "Animation", "FX", "PC", 3);
    EXPECT_EQ("(resource-database(version 1)"
              "(resource-list(resource(name \"Smoke\")(type \"FX\"))"
              "(resource(parameter-list(parameter(name \"n\")(platform \"PC\")(value \"say 'v'\")))))"
              "(dependency-list(dependency(source \"Smoke\")(resource \"a.dds\")(type \"FX\"))"
              "(dependency(source \"Smoke\")(resource \"Run\")(resource-type \"Animation\")(type \"FX\")"
              "(platform \"PC\")(count 3))))",
              CTree(source).Text());
}

TEST(AssetLibrarySource, CountsDependenciesAsALinearSearchWould)
{
    CAssetLibrarySource source;
    SDependency* pFirst = source.AddDependency("Smoke", "A.dds", "", "FX", "PC", 0);
    EXPECT_EQ(1u, pFirst->m_nCount);
    EXPECT_EQ(pFirst, source.AddDependency("SMOKE", "a.DDS", nullptr, "fx", "Xenon", 7));
    EXPECT_EQ(2u, pFirst->m_nCount);
    EXPECT_EQ("PC", pFirst->m_sPlatform);
    // Texts that only look alike when they are joined stay apart.
    source.AddDependency("Smok", "eA.dds", "", "FX", "", 1);
    source.AddDependency("Smoke", "A.dds", "FX", "", "", 1);
    EXPECT_EQ(3u, source.Dependencies().size());

    const char* const names[] = {"", "a", "A", "b", "ab"};
    CAssetLibrarySource many;
    for (int i = 0; i < 5 * 5 * 5 * 5; ++i)
        many.AddDependency(names[i % 5], names[i / 5 % 5], names[i / 25 % 5], names[i / 125], "", 1);
    uint32_t nTotal = 0;
    for (size_t i = 0; i < many.Dependencies().size(); ++i)
    {
        const SDependency& record = *many.Dependencies()[i];
        nTotal += record.m_nCount;
        for (size_t j = 0; j < i; ++j)
        {
            const SDependency& earlier = *many.Dependencies()[j];
            ASSERT_FALSE(QSStrIEquals(record.m_sSource.c_str(), earlier.m_sSource.c_str()) &&
                         QSStrIEquals(record.m_sResource.c_str(), earlier.m_sResource.c_str()) &&
                         QSStrIEquals(record.m_sResourceType.c_str(), earlier.m_sResourceType.c_str()) &&
                         QSStrIEquals(record.m_sType.c_str(), earlier.m_sType.c_str()));
        }
    }
    EXPECT_EQ(625u, nTotal);
    EXPECT_EQ(256u, many.Dependencies().size());
}

TEST(AssetLibrarySource, ReadsBackByAdding)
{
    CAssetLibrarySource source;
    source.AddParameter(source.AddResource("Smoke", "FX"), "n", "t", "PC", "v");
    source.AddDependency("Smoke", "a.dds", "", "FX", "PC", 3);
    const CTree tree(source);
    CAssetLibrarySource copy;
    EXPECT_TRUE(copy.ReadFrom(tree.Node()));
    EXPECT_EQ(tree.Text(), CTree(copy).Text());
    EXPECT_TRUE(copy.ReadFrom(tree.Node()));
    EXPECT_EQ(2u, copy.Resources().size());
    EXPECT_EQ(4u, copy.Dependencies()[0]->m_nCount);
}

TEST(AssetLibrarySource, ReadsOddTreesWithoutHarm)
{
    const CTree odd(
        Words("( RESOURCE-Database ( x ) ( version 1 ) atom ( ) ( Resource-List ( resource ) ) "
              "( resource-list ( resource ( name ) ( type ( inner ) ) ( parameter-list ( parameter ) "
              "( parameter ( value ) ) ) ) resource ( resource ( name N 2 ) ) ) "
              "( dependency-list ( dependency ( count -5 ) ) ( dependency ( source s ) ( count ) ) ) )"));
    CAssetLibrarySource source;
    ASSERT_TRUE(source.ReadFrom(odd.Node()));
    ASSERT_EQ(2u, source.Resources().size());
    EXPECT_EQ("", source.Resources()[0]->m_sName);
    EXPECT_EQ("", source.Resources()[0]->m_sType);
    EXPECT_EQ(2u, source.Resources()[0]->m_Parameters.size());
    EXPECT_EQ("N", source.Resources()[1]->m_sName);
    EXPECT_EQ(2u, source.Dependencies().size());

    for (const char* pszText :
         {"( resource-database )", "( resource-database ( version 2 ) )", "( )",
          "( resource-database ( version ) )", "( resource-database ( version ( 1 ) ) )",
          "( resource-data ( version 1 ) )", "( ( resource-database ) ( version 1 ) )", "resource-database"})
    {
        EXPECT_FALSE(source.ReadFrom(CTree(Words(pszText)).Node())) << pszText;
    }
    EXPECT_FALSE(source.ReadFrom(nullptr));
    EXPECT_EQ(2u, source.Resources().size());
}
