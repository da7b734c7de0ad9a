#include "changes/ChangeWords.h"
#include "changes/Merge.h"

namespace
{

bool IsNothing(const CChangeValue& value)
{
    return std::holds_alternative<std::monostate>(value);
}

std::string OtherOf(const CMergeConflict& conflict)
{
    return conflict.m_eWhy == EMergeConflict::eOverlap || conflict.m_eWhy == EMergeConflict::eLinkTarget
               ? "key " + conflict.m_Other.m_sName
               : "\"" + conflict.m_Other.m_sName + "\"";
}

// The side that has nothing there any more.
std::string DeletedBy(const CMergeConflict& conflict, const char* pszOther)
{
    const bool bMine = IsNothing(conflict.m_Mine.m_After);
    return std::string(bMine ? "mine" : "theirs") + " deleted it, " + (bMine ? "theirs " : "mine ") +
           pszOther;
}

std::string TellWhy(const CMergeConflict& conflict)
{
    const CDifference& mine = conflict.m_Mine;
    switch (conflict.m_eWhy)
    {
    case EMergeConflict::eDeleted:
        return ": " + DeletedBy(conflict, "changed it");
    case EMergeConflict::eAdded:
        return ": each side made one of this name";
    case EMergeConflict::eName:
        return IsNothing(mine.m_After) || IsNothing(conflict.m_Theirs)
                   ? std::string(": its name is that of one that the other side has")
                   : ": mine " + TellValue(mine, mine.m_After) + ", theirs " +
                         TellValue(mine, conflict.m_Theirs) + ", which is the name of another one by now";
    case EMergeConflict::eOverlap:
        return ": it would lie on " + OtherOf(conflict);
    case EMergeConflict::eTimes:
        return ": of both sides' times it would end before it starts";
    case EMergeConflict::eUsed:
        return ": " + DeletedBy(conflict, "put it to new use: ") + OtherOf(conflict);
    case EMergeConflict::eLinkTarget:
        return " " + OtherOf(conflict) + ", which the other side deleted";
    case EMergeConflict::eCircle:
        return ": prefabs would stand on each other";
    case EMergeConflict::eTracks:
        return ": it would have too many tracks";
    case EMergeConflict::eMoved:
    case EMergeConflict::eField:
        break;
    }
    return ": " + TellValue(mine, mine.m_Before) + ", mine " + TellValue(mine, mine.m_After) + ", theirs " +
           TellValue(mine, conflict.m_Theirs);
}

} // namespace

std::string Tell(const CMergeConflict& conflict)
{
    return TellAbout(conflict.m_Mine) + (conflict.m_eWhy == EMergeConflict::eMoved ? ", group" : "") +
           TellWhy(conflict) +
           (conflict.m_eStands == EMergeSide::eMine ? "; mine stands" : "; theirs stands");
}
