#include "shell/HistoryList.h"

#include "app/ChangeSpots.h"

std::string CHistoryList::GetText(size_t nRow) const
{
    if (nRow > 0)
        return TellStep(m_History.GetLabel(nRow - 1), m_History.GetChange(nRow - 1));
    switch (m_History.GetStart())
    {
    case EHistoryStart::eNew:
        return "New Library";
    case EHistoryStart::eOpened:
        return "Opened Library";
    default:
        return "Earlier Changes";
    }
}

std::string CHistoryList::GetDescription(size_t nRow) const
{
    return GetText(nRow) + (IsCurrent(nRow) ? ", current" : "") + (IsUndone(nRow) ? ", undone" : "") +
           (IsSaved(nRow) ? ", saved" : "");
}
