// A text that loads without a finding comes out of load and save with all that was in it.

#include <algorithm>
#include <random>

#include "FormatsTest.h"
#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsatextloader.h"
#include "qsnumber.h"

namespace
{

// A node of a text, to be changed at will.
struct CPiece
{
    std::string m_sText;            // of an atom
    bool m_bString = false;         // an atom in quotes
    bool m_bAtom = false;           // else a list
    std::vector<CPiece> m_Elements; // of a list

    std::string Name() const
    {
        return m_Elements.empty() || !m_Elements[0].m_bAtom ? "()" : m_Elements[0].m_sText;
    }
    // Behind the name of the first list of that name.
    std::string Value(const char* pszName) const
    {
        for (const CPiece& piece : m_Elements)
            if (!piece.m_bAtom && piece.Name() == pszName && piece.m_Elements.size() > 1)
                return piece.m_Elements[1].m_sText;
        return std::string();
    }
};

CPiece PieceOf(const CQSANode& node)
{
    CPiece piece;
    piece.m_bAtom = node.IsAtom();
    if (piece.m_bAtom)
    {
        piece.m_sText = node.GetValue();
        piece.m_bString = node.IsString();
        return piece;
    }
    for (uint32_t i = 0; i < node.GetNumElements(); ++i)
        piece.m_Elements.push_back(PieceOf(*node.GetElement(i)));
    return piece;
}
CPiece Parsed(const std::string& sText)
{
    CQSALoadOnlyAlloc alloc(65536);
    CQSANode root;
    EXPECT_TRUE(QSALoadText(sText.data(), sText.size(), &root, &alloc));
    CPiece piece = PieceOf(root);
    root.Free(&alloc);
    return piece;
}
void Print(const CPiece& piece, std::string& sText)
{
    if (piece.m_bAtom)
    {
        const bool bString = piece.m_bString || piece.m_sText.empty() ||
                             piece.m_sText.find_first_of(" \t\r\n()") != std::string::npos;
        sText += bString ? "\"" + piece.m_sText + "\" " : piece.m_sText + " ";
        return;
    }
    sText += "(";
    for (const CPiece& element : piece.m_Elements)
        Print(element, sText);
    sText += ")\n";
}
std::string Printed(const CPiece& root)
{
    std::string sText;
    for (const CPiece& piece : root.m_Elements)
        Print(piece, sText);
    return sText;
}

std::string Lower(std::string sText)
{
    for (char& c : sText)
        c = c >= 'A' && c <= 'Z' ? char(c + 32) : c;
    return sText;
}
std::string WholeText(const std::string& sText)
{
    int64_t nValue = 0;
    return QSParseInt(sText, nValue) ? std::to_string(nValue) : sText;
}
std::string IdText(const std::string& sText) // 32 bits, written either way
{
    int64_t nValue = 0;
    return QSParseInt(sText, nValue) ? std::to_string(uint32_t(nValue)) : sText;
}
std::string FloatText(const std::string& sText)
{
    float fValue = 0;
    return QSParseFloat(sText, fValue) ? QSFormat("%.9g", double(fValue == 0 ? 0 : fValue)) : sText;
}

// What an atom says, whatever its spelling. sKind is that of the property it belongs to.
std::string Meaning(const std::string& sList, const std::string& sOwner, const std::string& sKind,
                    const std::string& sText)
{
    if (sList == "time" || (sList == "data" && (sKind == "float" || sKind == "vector")))
        return FloatText(sText);
    if (sList == "id" || sList == "track")
        return IdText(sText);
    if (sList == "start-time" || sList == "end-time" || sList == "length" || sList == "version" ||
        (sList == "data" && (sKind == "int" || sKind == "color")))
        return WholeText(sText);
    if (sList == "type" || sList == "parent" || (sList == "name" && sOwner == "property"))
        return Lower(sText);
    return sText;
}

// Everything that a list says, each with its place; in the order that saving gives it.
void Gather(const CPiece& list, const std::string& sPath, const std::string& sOwner, std::string sKind,
            std::vector<std::string>& facts)
{
    const bool bRoot = sPath.empty();
    const std::string sName = bRoot ? "" : list.Name();
    if (sName == "property")
        sKind = Lower(list.Value("type"));
    std::vector<const CPiece*> elements;
    for (size_t i = bRoot || sName == "()" ? 0 : 1; i < list.m_Elements.size(); ++i)
        elements.push_back(&list.m_Elements[i]);
    const auto sortBy = [&](const auto& value)
    {
        std::stable_sort(elements.begin(), elements.end(),
                         [&](const CPiece* p, const CPiece* q) { return value(*p) < value(*q); });
    };
    if (sName == "key-list")
        sortBy(
            [](const CPiece& key)
            {
                return std::pair(uint32_t(QSTextToInt(key.Value("track").c_str())),
                                 QSTextToInt(key.Value("start-time").c_str()));
            });
    if (sName == "value-list")
        sortBy([](const CPiece& value) { return QSTextToFloat(value.Value("time").c_str()); });

    const bool bOrdered = sName == "children" || sName == "key-list" || sName == "value-list";
    std::map<std::string, int> counts;
    for (size_t i = 0; i < elements.size(); ++i)
    {
        const CPiece& piece = *elements[i];
        if (piece.m_bAtom)
        {
            if (!(sOwner == "key" && sName == "name" && piece.m_sText.empty())) // the same as none
                facts.push_back(sPath + "[" + std::to_string(i) + "] " +
                                Meaning(sName, sOwner, sKind, piece.m_sText));
            continue;
        }
        std::string sPlace = piece.Name();
        if (bRoot && sPlace == "resource-database") // made anew
            continue;
        if (sName == "properties")
            sPlace += " " + Lower(piece.Value("name"));
        sPlace = sPath + "/" + sPlace + "#" + std::to_string(bOrdered ? int(i) : counts[sPlace]++);
        const bool bNoName = sOwner.empty() ? false : sName == "key" && piece.Name() == "name";
        if (!bNoName || piece.m_Elements.size() != 2)
            facts.push_back(sPlace);
        Gather(piece, sPlace, sName, sKind, facts);
    }
}
std::vector<std::string> Facts(const CPiece& root)
{
    std::vector<std::string> facts;
    Gather(root, "", "", "", facts);
    std::sort(facts.begin(), facts.end());
    return facts;
}
std::string Lost(const CPiece& before, const CPiece& after)
{
    const std::vector<std::string> all = Facts(before);
    const std::vector<std::string> kept = Facts(after);
    std::vector<std::string> lost;
    std::set_difference(all.begin(), all.end(), kept.begin(), kept.end(), std::back_inserter(lost));
    std::string sLost;
    for (const std::string& sFact : lost)
        sLost += sFact + "\n";
    return sLost;
}

class CMutator
{
public:
    explicit CMutator(unsigned nSeed) : m_Random(nSeed) {}

    std::unique_ptr<CTestLibrary> GetLibrary()
    {
        CLibraryBuilder builder = aLibrary();
        if (Below(2))
            builder.prefab("Sprite", "Puff").value("Size", 3.5);
        const bool bPuff = builder.lastSet() != nullptr;
        builder.prefabGroup("Lights").prefab("Light", "Lamp");
        for (int nEffect = 1 + Below(2); nEffect > 0; --nEffect)
        {
            if (Below(3) == 0)
                builder.group("G" + std::to_string(nEffect));
            builder.effect("E" + std::to_string(nEffect)).length(Below(9000));
            for (int nKeys = 1 + Below(2); nKeys > 0; --nKeys)
            {
                if (Below(2))
                    builder.track();
                const bool bSprite = Below(2);
                builder.key(bSprite ? "Sprite" : "Light").name(Below(3) ? "K" : "");
                if (Below(2) && (bPuff || !bSprite))
                    builder.onPrefab(bSprite ? "Puff" : "Lamp");
                if (builder.lastKey()->m_nKeyID > 0 && Below(3) == 0)
                    builder.link(0);
                if (bSprite && Below(2))
                    builder.value("Count", 1 + Below(99))
                        .curve("Frame", std::vector<std::pair<float, int>>{{0.0f, 1}, {0.25f, 2}});
                else if (!bSprite)
                    builder.curve("Flicker", std::vector<std::pair<float, float>>{
                                                 {0.0f, 1.0f}, {0.5f, 9.1f}, {1.0f, 0.3f}});
            }
            builder.key("Marker");
        }
        return builder.build();
    }

    void Change(CPiece& root)
    {
        std::vector<CPlace> places;
        Collect(root, places);
        CPlace& at = Pick(places);
        CPlace& other = Pick(places);
        CPiece& piece = at.Piece();
        auto& list = at.m_pList->m_Elements;
        const auto here = list.begin() + ptrdiff_t(at.m_nIndex);
        switch (Below(22))
        {
        case 0: // no reference into the list while it grows
            list.insert(here, CPiece(piece));
            break;
        case 1:
            list.erase(here);
            break;
        case 2:
            std::swap(list[at.m_nIndex], list[size_t(Below(unsigned(list.size())))]);
            break;
        case 3:
            if (piece.m_bAtom && other.Piece().m_bAtom)
                std::swap(piece, other.Piece());
            break;
        case 4:
            list.insert(here, CPiece(other.Piece()));
            break;
        case 5:
            list.insert(here + 1, Atom());
            break;
        case 6:
            piece = List(piece);
            break;
        case 7:
            if (piece.m_bAtom && !piece.m_sText.empty())
                piece.m_sText[0] ^= 0x20;
            break;
        case 8:
            piece.m_bString = !piece.m_bString;
            break;
        case 9:
        case 10:
            if (piece.m_bAtom)
                piece = Atom();
            break;
        default: // what a hand or a merge would do
            for (CPlace* p = &at;; p = &Pick(places))
            {
                if (!p->Piece().m_bAtom || p->m_nIndex == 0)
                    continue;
                p->Piece().m_sText += "0123456789x "[Below(12)];
                break;
            }
            break;
        }
    }
    int Below(unsigned n) { return int(m_Random() % n); }

private:
    struct CPlace
    {
        CPiece* m_pList;
        size_t m_nIndex;
        CPiece& Piece() const { return m_pList->m_Elements[m_nIndex]; }
    };
    static void Collect(CPiece& list, std::vector<CPlace>& places)
    {
        for (size_t i = 0; i < list.m_Elements.size(); ++i)
        {
            if (list.m_Elements[i].Name() == "resource-database")
                continue;
            places.push_back({&list, i});
            Collect(list.m_Elements[i], places);
        }
    }
    CPlace& Pick(std::vector<CPlace>& places) { return places[size_t(Below(unsigned(places.size())))]; }
    static CPiece List(CPiece piece)
    {
        CPiece list;
        list.m_Elements.push_back(std::move(piece));
        return list;
    }
    CPiece Atom()
    {
        static const std::string c_aTexts[] = {"0",
                                               "1",
                                               "-1",
                                               "7",
                                               "0.5",
                                               "1.5",
                                               "1",
                                               "250.3",
                                               "0.1234567",
                                               "12.0000001",
                                               "1e3",
                                               "1e-9",
                                               "-0",
                                               "007",
                                               "+5",
                                               "1.0",
                                               "99",
                                               "4294967295",
                                               "2147483648",
                                               "-2147483648",
                                               "nan",
                                               "inf",
                                               "16777217",
                                               "3.4e38",
                                               "1e39",
                                               "0x10",
                                               "",
                                               " 5",
                                               "5x",
                                               "name",
                                               "data",
                                               "value",
                                               "property",
                                               "key",
                                               "Puff",
                                               "puff",
                                               "Lamp",
                                               "Sprite",
                                               "light",
                                               "Marker",
                                               "Add",
                                               " alpha ",
                                               "Int",
                                               "FLOAT",
                                               "Float",
                                               "String",
                                               "None",
                                               "UI",
                                               "Vector",
                                               "Size",
                                               "frame",
                                               "Spare",
                                               "UIType_TextLine",
                                               "Label",
                                               "two words",
                                               "a\nb",
                                               "\xE4\xFF",
                                               std::string(130, 'e'),
                                               std::string(300, 't'),
                                               std::string(1100, 'l'),
                                               std::string("a\0b", 3),
                                               "=======",
                                               "'",
                                               ";"};
        CPiece atom;
        atom.m_bAtom = true;
        atom.m_bString = Below(2);
        atom.m_sText = c_aTexts[Below(std::size(c_aTexts))];
        return atom;
    }

    std::mt19937 m_Random;
};

} // namespace

TEST(TextLosses, WhatIsFoundSoundLosesNothing)
{
    const auto pModule = std::make_shared<CTestModule>();
    constexpr int c_nRounds = 2500;
    constexpr int c_nPerLibrary = 40;
    int nSound = 0;
    CPiece base;
    std::vector<std::string> baseFacts;
    for (int nRound = 0; nRound < c_nRounds; ++nRound)
    {
        CMutator mutator{unsigned(nRound)};
        const bool bFirst = nRound % c_nPerLibrary == 0;
        if (bFirst)
        {
            base = Parsed(SavedBytes(*mutator.GetLibrary()));
            baseFacts = Facts(base);
        }
        CPiece changed = base;
        for (int n = bFirst ? 0 : 1 + (mutator.Below(4) == 0); n > 0; --n)
            mutator.Change(changed);
        const std::string sText = Printed(changed);
        const CLoaded loaded = LoadText(sText, pModule);
        EXPECT_TRUE(!bFirst || loaded.m_bLoaded) << loaded.m_sError;
        EXPECT_EQ("", bFirst ? loaded.Findings() : "");
        if (!loaded.m_bLoaded || !loaded.m_Findings.empty())
            continue;
        nSound += baseFacts != Facts(changed);
        EXPECT_EQ("", Lost(changed, Parsed(SavedBytes(*loaded.m_pLibrary)))) << nRound;
    }
    EXPECT_GT(nSound, c_nRounds / 20); // it says something else than before, and still nothing is found
}
