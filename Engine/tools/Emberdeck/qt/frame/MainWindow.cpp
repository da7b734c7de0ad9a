#include "qt/frame/MainWindow.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiSubWindow>
#include <QScreen>
#include <QTimer>

#include "app/resources/Bars.h"
#include "qt/frame/EffectWindows.h"
#include "qt/frame/FrameMenus.h"
#include "qt/frame/FrameStatusBar.h"
#include "qt/frame/HistoryDock.h"
#include "qt/frame/PaneKeys.h"
#include "qt/frame/RecoveryBar.h"
#include "qt/library/LeftDockWidget.h"
#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/AccessibleViews.h"
#include "qt/toolkit/IconPainter.h"
#include "qt/toolkit/ProgramIcon.h"
#include "qt/toolkit/QtText.h"
#include "qt/toolkit/ShellPainter.h"
#include "qt/toolkit/TemplateDialog.h"
#include "qt/toolkit/ToolBarWidget.h"

MainWindow::MainWindow(IProfile& profile, ISourceControl& sourceControl, QtPrompts& prompts)
    : m_Profile(profile),
      m_Prompts(prompts),
      m_pStatus(new FrameStatusBar(this)),
      m_pEffects(new EffectWindows(m_App, profile)),
      m_Host(*this, m_App, *m_pStatus),
      m_App(CAppServices{prompts, profile, sourceControl, m_pEffects, &m_Host, std::string(),
                         CJournalStore().GetDirectory()}),
      m_Splash(*this),
      m_pCentre(new QWidget)
{
    InstallAccessibleViews();
    m_Prompts.SetOwner(this);
    setWindowTitle(QStringLiteral("Emberdeck"));
    setWindowIcon(ProgramIcon());
    setAcceptDrops(true);
    connect(m_pEffects, &EffectWindows::Changed, this, &MainWindow::UpdateTitle);
    connect(m_pEffects, &QMdiArea::subWindowActivated, this, &MainWindow::CommandsChanged);
    m_App.m_Edits.AddListener(this);
    m_App.History().m_OnChanged = [this] { OnHistoryChanged(); };
}

MainWindow::~MainWindow()
{
    qApp->removeEventFilter(this);
    for (const auto& [nBar, pBar] : m_Bars)
        pBar->disconnect(this); // they hide after the frame is gone
    m_Splash.Logic().HideSplashScreen();
    if (m_pStyle)
        m_pStyle->SetDecorator(nullptr);
    m_App.m_Edits.RemoveListener(this);
    m_App.History().m_OnChanged = nullptr;
    if (m_pHistory)
        m_pHistory->disconnect(this); // it hides after the frame is gone
    delete m_pHistory;
    m_pHistory = nullptr;
    m_pEffects->CloseAll();
    m_pEffects->disconnect(this);
    m_Host.SetDock(nullptr);
    delete m_pDock;
    m_pDock = nullptr;
}

bool MainWindow::Create(bool bSplash, MenuStyle* pStyle)
{
    m_pStyle = pStyle;
    m_App.Start();
    m_Splash.Logic().EnableSplashScreen(bSplash);
    m_pFrame = std::make_unique<CMainFrame>(m_App, *this, ShellColors(palette()));
    m_pFrame->SetIconMaker(PaintIcon);
    if (!m_pFrame->Create())
        return false;
    if (m_pStyle)
    {
        m_pStyle->SetDecorator(&m_pFrame->MenuDecorator());
        connect(m_pStyle, &MenuStyle::ItemHovered, this, &MainWindow::ShowHint);
    }
    m_pMenus = std::make_unique<FrameMenus>(*this, *m_pFrame, [this](int32_t nID) { RunCommand(nID); });
    m_pMenus->AddAppearance(m_Profile);
    m_pMenus->AddTimelineOptions(m_Profile, [this] { m_pEffects->ReadOptions(); });
    m_pMenus->AddManual(m_Prompts);
    m_pRecovery->AddMenu(m_pMenus->AddRecover());
    AddPaneKeys(*this);
    qApp->installEventFilter(this);
#if QT_CONFIG(sessionmanager)
    connect(qApp, &QGuiApplication::commitDataRequest, this, &MainWindow::OnSessionEnd, Qt::DirectConnection);
#endif
    const QSize room = screen()->availableGeometry().size();
    resize(std::min(1280, room.width() - 40), std::min(820, room.height() - 60));
    CommandsChanged();
    return true;
}

// ---- Construction, as the frame asks for it

bool MainWindow::CreateToolBar(const CKRToolbar& toolbar)
{
    auto* pBar = new ToolBarWidget(toolbar, this);
    connect(pBar, &ToolBarWidget::Clicked, this, &MainWindow::RunCommand);
    connect(pBar, &ToolBarWidget::Hovered, this, &MainWindow::ShowHint);
    connect(pBar, &QToolBar::visibilityChanged, this, [this] { CommandsChanged(); });
    m_Bars[toolbar.GetID()] = pBar;
    return true;
}

bool MainWindow::CreateStatusBar()
{
    setStatusBar(m_pStatus);
    return true;
}

void MainWindow::SetToolBarImages(const CKRToolbar& toolbar)
{
    // Bar and buttons take what they show from the toolbar whenever they are painted.
    if (const auto it = m_Bars.find(toolbar.GetID()); it != m_Bars.end())
        it->second->update();
}

void MainWindow::DockToolBar(int32_t nBar, int32_t)
{
    // Bars that are added one after the other stand in one row.
    addToolBar(Qt::TopToolBarArea, m_Bars[nBar]);
}

void MainWindow::CreateLeftDock()
{
    m_pDock = new LeftDockWidget(m_App.Context(), m_pCentre);
    m_Host.SetDock(m_pDock);
    auto* pLayout = new QHBoxLayout(m_pCentre);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pDock);
    auto* pWork = new QVBoxLayout;
    pWork->setSpacing(0);
    m_pRecovery = new RecoveryBar(m_App, m_pCentre);
    connect(m_pRecovery, &RecoveryBar::BroughtBack, this, &MainWindow::OnBroughtBack);
    pWork->addWidget(m_pRecovery);
    pWork->addWidget(m_pEffects, 1);
    pLayout->addLayout(pWork, 1);
    setCentralWidget(m_pCentre);
}

void MainWindow::CreateHistoryDock()
{
    m_pHistory = new HistoryDock(m_App.History(), this);
    addDockWidget(Qt::RightDockWidgetArea, m_pHistory);
    m_pHistory->hide();
    connect(m_pHistory, &HistoryDock::Chosen, this,
            [this](size_t nPosition)
            {
                if (!m_pFrame->GoToStep(nPosition))
                    m_pHistory->Refresh(); // the row that was chosen isn't where the library is
                CommandsChanged();
            });
    connect(m_pHistory, &QDockWidget::visibilityChanged, this, [this] { CommandsChanged(); });
}

// ---- Commands and bars

void MainWindow::RunCommand(int32_t nID)
{
    const std::string sFile = m_App.m_sFileName;
    const size_t nEffects = m_App.m_SpellMgr.Spells().size();
    m_pStatus->ShowStatus(QString()); // of the command before
    m_pFrame->Run(nID);
    // A new effect comes last, where nobody may be looking.
    if (nID == c_nCmdNewEffect && m_pDock && m_App.m_SpellMgr.Spells().size() > nEffects)
        m_pDock->EffectPanel().ScrollTo(m_App.m_SpellMgr.Spells().back().get());
    if (sFile != m_App.m_sFileName)
        UpdateTextForm();
    UpdateTitle();
    CommandsChanged();
}

void MainWindow::ShowHint(int32_t nID)
{
    m_pStatus->ShowHint(nID);
}

QWidget* MainWindow::FindBar(int32_t nBar) const
{
    if (nBar == c_nCmdStatusBar)
        return m_pStatus;
    if (nBar == c_nCmdHistoryList)
        return m_pHistory;
    const auto it = m_Bars.find(nBar);
    return it != m_Bars.end() ? it->second : nullptr;
}

bool MainWindow::HasBar(int32_t nBar) const
{
    return FindBar(nBar) != nullptr;
}

bool MainWindow::IsBarVisible(int32_t nBar) const
{
    return !FindBar(nBar)->isHidden();
}

void MainWindow::ShowBar(int32_t nBar, bool bShow)
{
    if (QWidget* pBar = FindBar(nBar))
        pBar->setVisible(bShow);
}

void MainWindow::ShowAbout(const CAboutSharedDlg& about)
{
    TemplateDialog dialog(eDlg_About, this);
    for (const CAboutText& text : about.OnInitDialog())
        if (auto* pLabel = dialog.Controls().Get<QLabel>(text.m_nControlID))
        {
            pLabel->setText(QtText::ToQt(text.m_sText));
            pLabel->resize(std::max(pLabel->width(), pLabel->wordWrap() ? 0 : pLabel->sizeHint().width()),
                           pLabel->height());
        }
    dialog.exec();
}

void MainWindow::EndEdit()
{
    if (m_pDock)
        m_pDock->FinishEdits();
}

bool MainWindow::IsGestureRunning() const
{
    return (m_pDock && m_pDock->IsBusy()) || m_pEffects->IsGestureRunning();
}

void MainWindow::CommandsChanged()
{
    if (m_bUpdateQueued || !m_pFrame)
        return;
    // Once for all that an event changes, and never from within a command.
    m_bUpdateQueued = true;
    QTimer::singleShot(0, this,
                       [this]
                       {
                           m_bUpdateQueued = false;
                           ShowCommandStates();
                       });
}

void MainWindow::ShowCommandStates()
{
    if (m_pMenus)
        m_pMenus->ShowStates();
    for (const auto& [nBar, pBar] : m_Bars)
        for (ToolButton* pButton : pBar->findChildren<ToolButton*>())
        {
            pButton->setEnabled(m_pFrame->IsEnabled(pButton->GetCommand()));
            pButton->setToolTip(QtText::ToQt(m_pFrame->GetTip(pButton->GetCommand())));
        }
    if (m_sToldProblem == m_App.History().GetProblem())
        return;
    m_sToldProblem = m_App.History().GetProblem();
    if (!m_sToldProblem.empty())
        m_pStatus->ShowStatus(QtText::ToQt(m_sToldProblem));
}

void MainWindow::OnHistoryChanged()
{
    if (m_pHistory)
        m_pHistory->Refresh();
    UpdateTitle();
    CommandsChanged();
}

// ---- What an edit changes on the screen

// The trees show the effect whose view isn't open, too: somewhere it has to be seen what has happened.
void MainWindow::ShowChange(const CChangeSpots& spots)
{
    const bool bOpen = m_pEffects->ShowChange(spots.m_Effects);
    if (!m_pDock)
        return;
    for (const ETreeSide eSide : c_TreeSides)
        m_pDock->ShowItems(eSide, spots.m_Items[static_cast<size_t>(eSide)]);
    const bool bItems = !spots.m_Items[0].empty() || !spots.m_Items[1].empty();
    if (!bOpen && !bItems && !spots.m_Effects.empty())
        m_pDock->ShowItems(ETreeSide::eEffects,
                           {m_App.m_EffectTree.FindData(spots.m_Effects.front().m_pSpell)});
}

void MainWindow::OnEdit(const CEdit& edit)
{
    m_pEffects->RepaintAll();
    if (edit.Touches(ETouched::eLibrary))
    {
        UpdateTextForm();
        if (m_pRecovery)
            QTimer::singleShot(0, m_pRecovery, &RecoveryBar::OfferFile); // when it is open, or isn't
    }
    m_pEffects->RetitleAll();
    CommandsChanged();
}

void MainWindow::OnBroughtBack(const QString& sText)
{
    UpdateTextForm();
    UpdateTitle();
    CommandsChanged();
    m_pStatus->ShowStatus(sText);
}

TrackWidget* MainWindow::ActiveTimeline() const
{
    return m_pEffects->Active();
}

void MainWindow::UpdateTitle()
{
    const TrackWidget* pTrack = ActiveTimeline();
    const char* pszView = pTrack ? pTrack->GetSpell().m_szName : "";
    const bool bMaximised = m_pEffects->IsActiveMaximised();
    QString sTitle = QtText::ToQt(CMainFrame::GetTitle(pszView, bMaximised));
    // In the toolkit's own form, which it then leaves as it is; it would add it behind the file's name.
    if (bMaximised && *pszView)
        sTitle += QStringLiteral(" - [%1]").arg(QtText::ToQt(pszView));
    setWindowTitle(QtText::Title(
        sTitle + QtText::PathToQt(CMainFrame::GetTitleOfFile(m_App.m_sFileName, m_App.History().IsSaved()))));
    m_pEffects->UpdateGreeting();
}

void MainWindow::UpdateTextForm()
{
    bool bLegacy = false;
    for (const auto& pSpell : m_App.m_SpellMgr.Spells())
        bLegacy = bLegacy || !QtText::IsUtf8(pSpell->m_szName);
    for (const auto& pPrefab : m_App.m_SpellMgr.Prefabs())
        bLegacy = bLegacy || !QtText::IsUtf8(pPrefab->m_sName);
    m_App.m_SpellMgr.ForEachKey([&](CSpell&, CKey& key)
                                { bLegacy = bLegacy || !QtText::IsUtf8(key.m_sName); });
    QtText::SetLegacyForm(bLegacy);
}
