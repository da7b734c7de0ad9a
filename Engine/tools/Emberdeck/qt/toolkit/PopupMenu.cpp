#include "qt/toolkit/PopupMenu.h"

#include <QMenu>
#include <QPointer>

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
