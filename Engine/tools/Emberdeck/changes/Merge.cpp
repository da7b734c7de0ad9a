#include "changes/Merge.h"

#include <algorithm>

#include "changes/LibraryMerge.h"
#include "model/MakeOrNull.h"

CMerged Merge(const CLibraryImage& base, const CLibraryImage& mine, const CLibraryImage& theirs,
              const CMergeSettle& settle)
{
    CMerged merged;
    const auto merge = [&]
    {
        const auto borrow = [](const CLibraryImage& image)
        { return std::shared_ptr<const CLibraryImage>(std::shared_ptr<void>(), &image); };
        CMergeNotes notes(settle, merged.m_Conflicts);
        merged.m_pImage = CLibraryMerge({borrow(base), borrow(mine), borrow(theirs)}, notes).Run();
    };
    if (!AllocateAll(merge))
        merged.m_pImage = nullptr;
    return merged;
}
