#include "browser/TreeFind.h"

#include <algorithm>

#include "model/NameIndex.h"

namespace
{

void FoldCase(std::string& sText)
{
    std::transform(sText.begin(), sText.end(), sText.begin(),
                   [](char c) { return static_cast<char>(FoldNameByte(c)); });
}

class CMatcher
{
public:
    explicit CMatcher(const CFindOptions& options) : m_Options(options), m_sWanted(options.m_sText)
    {
        if (!options.m_bMatchCase)
            FoldCase(m_sWanted);
    }
    bool Matches(const std::string& sText)
    {
        m_sText = sText;
        if (!m_Options.m_bMatchCase)
            FoldCase(m_sText);
        return m_Options.m_bWholeWord ? m_sText == m_sWanted : m_sText.find(m_sWanted) != std::string::npos;
    }

private:
    const CFindOptions& m_Options;
    std::string m_sWanted;
    std::string m_sText; // kept for its room
};

HLibraryItem Sibling(const CLibraryTree& tree, HLibraryItem hItem, bool bDown)
{
    return bDown ? tree.GetNextSiblingItem(hItem) : tree.GetPrevSiblingItem(hItem);
}

HLibraryItem Step(const CLibraryTree& tree, HLibraryItem hItem, bool bDown)
{
    const HLibraryItem hChild = bDown ? tree.GetChildItem(hItem) : tree.GetLastChildItem(hItem);
    if (hChild)
        return hChild;
    HLibraryItem hNext = Sibling(tree, hItem, bDown);
    while (!hNext && (hItem = tree.GetParentItem(hItem)))
        hNext = Sibling(tree, hItem, bDown);
    return hNext;
}

// Where the walk goes on after the end. A file may have brought several roots: upwards it is the last one,
// or the walk would never come round to what lies below that.
HLibraryItem WrapItem(const CLibraryTree& tree, bool bDown)
{
    HLibraryItem hRoot = tree.GetRootItem();
    while (!bDown && tree.GetNextSiblingItem(hRoot))
        hRoot = tree.GetNextSiblingItem(hRoot);
    return hRoot;
}

} // namespace

EFind FindInTree(const CLibraryTree& tree, HLibraryItem hStart, const CFindOptions& options,
                 const std::function<bool()>& goOn, HLibraryItem& hFound)
{
    if (!tree.IsAlive(hStart))
        hStart = tree.GetRootItem();
    if (!hStart || options.m_sText.empty())
        return EFind::eNothing;

    CMatcher matcher(options);
    bool bWrapped = false;
    HLibraryItem hItem = hStart;
    while (true)
    {
        hItem = Step(tree, hItem, options.m_bSearchDown);
        if (!hItem)
        {
            if (bWrapped)
                return EFind::eNotFound;
            bWrapped = true;
            if (!goOn())
                return EFind::eStopped;
            hItem = WrapItem(tree, options.m_bSearchDown);
        }
        if (!hItem || hItem == hStart)
            return EFind::eNotFound;
        if (!tree.HasChildren(hItem) && matcher.Matches(tree.GetItemText(hItem)))
        {
            hFound = hItem;
            return EFind::eFound;
        }
    }
}
