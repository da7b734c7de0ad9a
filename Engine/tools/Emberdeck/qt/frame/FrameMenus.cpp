#include "qt/frame/FrameMenus.h"

#include <QActionGroup>
#include <QMainWindow>
#include <QMenuBar>
#include <QShortcut>

#include "qt/frame/ManualWindow.h"
#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/Appearance.h"
#include "qt/toolkit/KeyCodes.h"
#include "qt/toolkit/QtText.h"

FrameMenus::FrameMenus(QMainWindow& window, CMainFrame& frame, std::function<void(int32_t)> run)
    : m_Window(window),
      m_Frame(frame),
      m_Run(std::move(run))
{
    for (const CMenuItem& item : c_MenuBar)
    {
        QMenu* pMenu = m_Window.menuBar()->addMenu(QString::fromUtf8(item.GetLabel()));
        AddItems(*pMenu, *item.m_pSubmenu);
        if (item.m_pSubmenu == &menu_items::c_FileMenu)
            m_pFile = pMenu;
        else if (item.m_pSubmenu == &menu_items::c_ViewMenu)
            m_pView = pMenu;
        else if (item.m_pSubmenu == &menu_items::c_HelpMenu)
            m_pHelp = pMenu;
    }
    AddShortcuts();
    ShowStates();
}

void FrameMenus::AddItems(QMenu& menu, const CMenuTable& table)
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
            QAction* pAction = menu.addAction(QString());
            pAction->setData(item.m_nID);
            pAction->setMenuRole(QAction::NoRole);
            const CCommand* pCommand = FindCommand(item.m_nID);
            pAction->setCheckable(pCommand && pCommand->m_eOwner == ECommandOwner::eFrame);
            QObject::connect(pAction, &QAction::triggered, &m_Window,
                             [this, nID = item.m_nID] { m_Run(nID); });
            m_Actions.emplace_back(pAction, &item);
        }
    }
    QObject::connect(&menu, &QMenu::aboutToShow, &m_Window,
                     [this, &table]
                     {
                         m_Frame.OnMenuOpening(table);
                         ShowStates();
                     });
}

void FrameMenus::ShowStates()
{
    for (const auto& [pAction, pItem] : m_Actions)
    {
        // The key behind the label's tab is the accelerator's, which the menu shows by itself.
        pAction->setText(QtText::ToQt(m_Frame.GetLabel(*pItem)).section(QLatin1Char('\t'), 0, 0));
        pAction->setEnabled(m_Frame.IsEnabled(pItem->m_nID));
        if (pAction->isCheckable())
            pAction->setChecked(m_Frame.IsChecked(pItem->m_nID));
    }
}

void FrameMenus::AddAppearance(IProfile& profile)
{
    m_pView->addSeparator();
    QMenu* pMenu = m_pView->addMenu(QObject::tr("&Appearance"));
    auto* pGroup = new QActionGroup(pMenu);
    const std::pair<EAppearance, QString> choices[] = {
        {EAppearance::eDesktop, QObject::tr("As the &Desktop")},
        {EAppearance::eLight, QObject::tr("&Light")},
        {EAppearance::eDark, QObject::tr("Da&rk")}};
    for (const auto& [eChoice, sLabel] : choices)
    {
        QAction* pAction = pMenu->addAction(sLabel);
        pAction->setCheckable(true);
        pAction->setChecked(eChoice == LoadAppearance(profile));
        pGroup->addAction(pAction);
        QObject::connect(pAction, &QAction::triggered, &m_Window,
                         [&profile, eAppearance = eChoice]
                         {
                             SaveAppearance(profile, eAppearance);
                             ApplyAppearance(eAppearance);
                         });
    }
}

void FrameMenus::AddTimelineOptions(IProfile& profile, const std::function<void()>& changed)
{
    QMenu* pMenu = m_pView->addMenu(QObject::tr("&Timeline"));
    const CTrackViewOptions options = LoadTrackViewOptions(profile);
    for (const CTrackViewSwitch& option : c_TrackViewSwitches)
    {
        QAction* pAction = pMenu->addAction(QString::fromUtf8(option.m_pszLabel));
        pAction->setCheckable(true);
        pAction->setChecked(options.*option.m_pbOption);
        QObject::connect(pAction, &QAction::toggled, &m_Window,
                         [&profile, &option, changed](bool bOn)
                         {
                             SaveTrackViewOption(profile, option, bOn);
                             changed();
                         });
    }
}

void FrameMenus::AddManual(IPrompts& prompts)
{
    AddManualItems(*m_pHelp, &m_Window, prompts);
}

QMenu& FrameMenus::AddRecover()
{
    m_pFile->addSeparator();
    return *m_pFile->addMenu(QObject::tr("&Recover"));
}

void FrameMenus::AddShortcuts()
{
    for (const CAccelerator& accelerator : c_FrameAccelerators)
    {
        if (!CMainFrame::IsShortcut(accelerator))
            continue;
        int nKey = QtKey(accelerator.m_nKey);
        nKey |= accelerator.m_bCtrl ? int(Qt::CTRL) : 0;
        nKey |= accelerator.m_bShift ? int(Qt::SHIFT) : 0;
        nKey |= accelerator.m_bAlt ? int(Qt::ALT) : 0;
        auto* pShortcut = new QShortcut(QKeySequence(nKey), &m_Window);
        QObject::connect(pShortcut, &QShortcut::activated, &m_Window,
                         [this, nID = accelerator.m_nID] { m_Run(nID); });
    }
}
