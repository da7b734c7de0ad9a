// The main window's menus and shortcuts, made from their tables.

#include <QActionGroup>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QShortcut>

#include "app/resources/Menus.h"
#include "qt/frame/MainWindow.h"
#include "qt/frame/ManualWindow.h"
#include "qt/frame/PaneKeys.h"
#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/Appearance.h"
#include "qt/toolkit/KeyCodes.h"

void MainWindow::AddItems(QMenu& menu, const CMenuTable& table)
{
    for (const CMenuItem& item : table)
    {
        if (item.IsSeparator())
            menu.addSeparator();
        else if (item.m_pSubmenu)
        {
            QMenu* pSub = menu.addMenu(QString::fromUtf8(item.GetLabel()));
            AddItems(*pSub, *item.m_pSubmenu);
        }
        else
        {
            // The key behind the label's tab is the accelerator's, which the menu shows by itself.
            QAction* pAction =
                menu.addAction(QString::fromUtf8(item.GetLabel()).section(QLatin1Char('\t'), 0, 0));
            pAction->setData(item.m_nID);
            pAction->setMenuRole(QAction::NoRole);
            pAction->setCheckable(item.m_nID == c_nCmdStandardBar || item.m_nID == c_nCmdSourceControlBar ||
                                  item.m_nID == c_nCmdStatusBar);
            connect(pAction, &QAction::triggered, this, [this, nID = item.m_nID] { RunCommand(nID); });
            m_Actions.push_back(pAction);
        }
    }
    connect(&menu, &QMenu::aboutToShow, this,
            [this, &table]
            {
                m_pFrame->OnMenuOpening(table);
                ShowCommandStates();
            });
}

void MainWindow::BuildMenus()
{
    for (const CMenuItem& item : c_MenuBar)
        if (item.m_pSubmenu)
            AddItems(*menuBar()->addMenu(QString::fromUtf8(item.GetLabel())), *item.m_pSubmenu);
    AddAppearanceItems(*menuBar()->actions().at(1)->menu());
    AddTimelineItems(*menuBar()->actions().at(1)->menu());
    AddManualItems(*menuBar()->actions().constLast()->menu(), this, m_Prompts);
}

// Below the items of the tables, since they are the toolkit's own matter.
void MainWindow::AddAppearanceItems(QMenu& viewMenu)
{
    viewMenu.addSeparator();
    QMenu* pMenu = viewMenu.addMenu(tr("&Appearance"));
    auto* pGroup = new QActionGroup(pMenu);
    const std::pair<EAppearance, QString> choices[] = {{EAppearance::eDesktop, tr("As the &Desktop")},
                                                       {EAppearance::eLight, tr("&Light")},
                                                       {EAppearance::eDark, tr("Da&rk")}};
    for (const auto& [eChoice, sLabel] : choices)
    {
        QAction* pAction = pMenu->addAction(sLabel);
        pAction->setCheckable(true);
        pAction->setChecked(eChoice == LoadAppearance(m_Profile));
        pGroup->addAction(pAction);
        connect(pAction, &QAction::triggered, this,
                [this, eAppearance = eChoice]
                {
                    SaveAppearance(m_Profile, eAppearance);
                    ApplyAppearance(eAppearance);
                });
    }
}

// What the timelines show beyond the plain picture, in all that are open.
void MainWindow::AddTimelineItems(QMenu& viewMenu)
{
    QMenu* pMenu = viewMenu.addMenu(tr("&Timeline"));
    const CTrackViewOptions options = LoadTrackViewOptions(m_Profile);
    for (const CTrackViewSwitch& option : c_TrackViewSwitches)
    {
        QAction* pAction = pMenu->addAction(QString::fromUtf8(option.m_pszLabel));
        pAction->setCheckable(true);
        pAction->setChecked(options.*option.m_pbOption);
        connect(pAction, &QAction::toggled, this,
                [this, &option](bool bOn)
                {
                    SaveTrackViewOption(m_Profile, option, bOn);
                    for (QMdiSubWindow* pChild : m_pArea->subWindowList())
                        if (auto* pTrack = qobject_cast<TrackWidget*>(pChild->widget()))
                            pTrack->SetOptions(LoadTrackViewOptions(m_Profile));
                });
    }
}

void MainWindow::AddShortcuts()
{
    AddPaneKeys(*this);
    for (const CAccelerator& accelerator : c_FrameAccelerators)
    {
        if (!CMainFrame::IsShortcut(accelerator))
            continue;
        int nKey = QtKey(accelerator.m_nKey);
        nKey |= accelerator.m_bCtrl ? int(Qt::CTRL) : 0;
        nKey |= accelerator.m_bShift ? int(Qt::SHIFT) : 0;
        nKey |= accelerator.m_bAlt ? int(Qt::ALT) : 0;
        auto* pShortcut = new QShortcut(QKeySequence(nKey), this);
        connect(pShortcut, &QShortcut::activated, this, [this, nID = accelerator.m_nID] { RunCommand(nID); });
    }
}
