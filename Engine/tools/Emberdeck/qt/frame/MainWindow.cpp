#include "qt/frame/MainWindow.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>

#include "app/resources/Bars.h"
#include "qt/library/LeftDockWidget.h"
#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/AccessibleViews.h"
#include "qt/toolkit/IconPainter.h"
#include "qt/toolkit/ProgramIcon.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtText.h"
#include "qt/toolkit/ShellPainter.h"
#include "qt/toolkit/TemplateDialog.h"
#include "qt/toolkit/ToolBarWidget.h"

MainWindow::MainWindow(IProfile& profile, ISourceControl& sourceControl, QtPrompts& prompts)
    : m_Profile(profile),
      m_Prompts(prompts),
      m_Splash(*this),
      m_pArea(new QMdiArea),
      m_pEmpty(new QLabel(m_pArea)),
      m_pCentre(new QWidget)
{
    InstallAccessibleViews();
    m_Prompts.SetOwner(this);
    m_pApp = std::make_unique<CEmberdeckApp>(CAppServices{prompts, profile, sourceControl, this, this});
    setWindowTitle(QStringLiteral("Emberdeck"));
    setWindowIcon(ProgramIcon());
    setAcceptDrops(true);
    m_pArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_pArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_pArea->setAccessibleName(tr("Open effects"));
    m_pEmpty->setAlignment(Qt::AlignCenter);
    m_pEmpty->setWordWrap(true);
    m_pEmpty->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_pArea->installEventFilter(this);
    connect(m_pArea, &QMdiArea::subWindowActivated, this,
            [this]
            {
                UpdateTitle();
                CommandsChanged();
            });
    m_pApp->m_Edits.AddListener(this);
}

MainWindow::~MainWindow()
{
    qApp->removeEventFilter(this);
    for (const auto& [nBar, pBar] : m_Bars)
        pBar->disconnect(this); // they hide after the frame is gone
    m_Splash.HideSplashScreen();
    if (m_pStyle)
        m_pStyle->SetDecorator(nullptr);
    m_pApp->m_Edits.RemoveListener(this);
    CloseAll();
    delete m_pDock;
    m_pDock = nullptr;
}

bool MainWindow::Create(bool bSplash, MenuStyle* pStyle)
{
    m_pStyle = pStyle;
    m_pApp->Start();
    m_Splash.EnableSplashScreen(bSplash);
    m_pFrame = std::make_unique<CMainFrame>(*m_pApp, *this, ShellColors(palette()));
    m_pFrame->SetIconMaker(PaintIcon);
    if (!m_pFrame->Create())
        return false;
    if (m_pStyle)
    {
        m_pStyle->SetDecorator(&m_pFrame->MenuDecorator());
        connect(m_pStyle, &MenuStyle::ItemHovered, this, &MainWindow::ShowHint);
    }
    BuildMenus();
    AddShortcuts();
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
    auto* pHint = new QLabel(statusBar());
    pHint->setObjectName(QStringLiteral("hint"));
    pHint->setTextFormat(Qt::PlainText);
    pHint->setSizePolicy(QSizePolicy::Ignored,
                         QSizePolicy::Preferred); // a long line doesn't widen the window
    statusBar()->addWidget(pHint, 1);
    m_StatusEnd.setSingleShot(true);
    connect(&m_StatusEnd, &QTimer::timeout, this, [this] { ShowStatus(std::string()); });
    for (const CStatusIndicator& indicator : c_StatusIndicators)
    {
        auto* pLock = new QLabel(statusBar());
        pLock->setAccessibleName(QString::fromUtf8(indicator.m_pszText));
        pLock->setFixedWidth(fontMetrics().horizontalAdvance(QString::fromUtf8(indicator.m_pszText)) + 12);
        pLock->setAlignment(Qt::AlignCenter);
        statusBar()->addPermanentWidget(pLock);
        m_Locks.push_back(pLock);
    }
    ShowHint(0);
    UpdateLocks();
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
    m_pDock = new LeftDockWidget(m_pApp->Context(), m_pCentre);
    auto* pLayout = new QHBoxLayout(m_pCentre);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pDock);
    pLayout->addWidget(m_pArea, 1);
    setCentralWidget(m_pCentre);
}

// ---- Commands and bars

void MainWindow::RunCommand(int32_t nID)
{
    const std::string sFile = m_pApp->m_sFileName;
    const size_t nEffects = m_pApp->m_SpellMgr.Spells().size();
    ShowStatus(std::string()); // of the command before
    m_pFrame->Run(nID);
    // A new effect comes last, where nobody may be looking.
    if (nID == c_nCmdNewEffect && m_pDock && m_pApp->m_SpellMgr.Spells().size() > nEffects)
        m_pDock->EffectPanel().ScrollTo(m_pApp->m_SpellMgr.Spells().back().get());
    if (sFile != m_pApp->m_sFileName)
        UpdateTextForm();
    UpdateTitle();
    CommandsChanged();
}

// What the pointer is over comes before what was done last, which is there again afterwards.
void MainWindow::ShowHint(int32_t nID)
{
    const std::string_view sLine = CMainFrame::GetStatusLine(nID);
    const bool bIdle = sLine == CMainFrame::GetStatusLine(0);
    ShowStatusLine(bIdle && !m_sStatus.isEmpty() ? m_sStatus
                                                 : QString::fromUtf8(sLine.data(), qsizetype(sLine.size())));
}

void MainWindow::ShowStatus(const std::string& sText)
{
    constexpr int c_nStatusMs = 60000; // long enough to come back from another window
    m_sStatus = QtText::ToQt(sText);
    m_StatusEnd.start(c_nStatusMs);
    ShowHint(0);
}

void MainWindow::ShowStatusLine(const QString& sText)
{
    if (auto* pHint = findChild<QLabel*>(QStringLiteral("hint")))
    {
        pHint->setText(sText);
        pHint->setToolTip(pHint->fontMetrics().horizontalAdvance(sText) > pHint->width() ? PlainToolTip(sText)
                                                                                         : QString());
    }
}

bool MainWindow::HasBar(int32_t nBar) const
{
    return nBar == c_nCmdStatusBar || m_Bars.count(nBar) != 0;
}

bool MainWindow::IsBarVisible(int32_t nBar) const
{
    const auto it = m_Bars.find(nBar);
    const QWidget* pBar = it != m_Bars.end() ? static_cast<QWidget*>(it->second) : findChild<QStatusBar*>();
    return pBar && !pBar->isHidden();
}

void MainWindow::ShowBar(int32_t nBar, bool bShow)
{
    if (nBar == c_nCmdStatusBar)
        statusBar()->setVisible(bShow);
    else if (HasBar(nBar))
        m_Bars[nBar]->setVisible(bShow);
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
    if (m_pDock && m_pDock->IsBusy())
        return true;
    for (QMdiSubWindow* pChild : m_pArea->subWindowList())
        if (auto* pTrack = qobject_cast<TrackWidget*>(pChild->widget()); pTrack && pTrack->Logic().IsBusy())
            return true;
    return false;
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
    for (QAction* pAction : m_Actions)
    {
        const int32_t nID = pAction->data().toInt();
        pAction->setEnabled(m_pFrame->IsEnabled(nID));
        if (pAction->isCheckable())
            pAction->setChecked(m_pFrame->IsChecked(nID));
    }
    for (const auto& [nBar, pBar] : m_Bars)
        for (ToolButton* pButton : pBar->findChildren<ToolButton*>())
            pButton->setEnabled(m_pFrame->IsEnabled(pButton->GetCommand()));
}
