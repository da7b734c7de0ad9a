#include "qt/toolkit/PopupMenu.h"

#include <QMenu>
#include <QPointer>

#include "qt/toolkit/QtText.h"

namespace
{
void AddEntries(QMenu& menu, const std::vector<CMenuEntry>& entries)
{
    for (const CMenuEntry& entry : entries)
    {
        if (entry.IsSeparator())
        {
            menu.addSeparator();
            continue;
        }
        QString sLabel = QtText::ToQt(entry.m_sLabel);
        if (!entry.m_sKey.empty())
            sLabel += QLatin1Char('\t') + QtText::ToQt(entry.m_sKey);
        if (entry.m_nID == 0)
        {
            AddEntries(*menu.addMenu(sLabel), entry.m_Entries);
            continue;
        }
        QAction* pAction = menu.addAction(sLabel);
        pAction->setData(entry.m_nID);
        pAction->setEnabled(entry.m_bEnabled);
        if (entry.m_bDefault)
            menu.setDefaultAction(pAction);
    }
}
} // namespace

QMenu* MakePopup(QWidget* pView, const std::vector<CMenuEntry>& entries)
{
    auto* pMenu = new QMenu(pView);
    AddEntries(*pMenu, entries);
    return pMenu;
}

std::optional<int> RunPopup(QMenu* pMenu, const QPoint& at)
{
    const QPointer<QMenu> pShown(pMenu);
    const QAction* pChosen = pShown->exec(at);
    if (!pShown)
        return std::nullopt;
    const int nChosen = pChosen ? pChosen->data().toInt() : 0;
    delete pShown; // before the command: that may be the end of the view
    return nChosen;
}
