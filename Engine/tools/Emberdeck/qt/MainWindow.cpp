#include "qt/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QHBoxLayout>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include "app/resources/Bars.h"
#include "app/resources/Strings.h"
#include "qt/KeyLocks.h"
#include "qt/LeftDockWidget.h"
#include "qt/ProgramIcon.h"
#include "qt/QtSurface.h"
#include "qt/QtText.h"
#include "qt/TemplateDialog.h"
#include "qt/TrackWidget.h"

MainWindow::MainWindow(IProfile& profile, ISourceControl& sourceControl, QtPrompts& prompts)
    : m_Profile(profile), m_Prompts(prompts), m_Splash(*this), m_pArea(new QMdiArea), m_pEmpty(new QLabel(m_pArea)), m_pCentre(new QWidget)
{
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
    connect(m_pArea, &QMdiArea::subWindowActivated, this, [this] {
        UpdateTitle();
        CommandsChanged();
    });
    m_pApp->m_Edits.AddListener(this);
}

MainWindow::~MainWindow()
{
    qApp->removeEventFilter(this);
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
    if (!m_pFrame->Create())
        return false;
    if (m_pStyle)
        m_pStyle->SetDecorator(&m_pFrame->MenuDecorator());
    BuildMenus();
    AddShortcuts();
    qApp->installEventFilter(this);
    const QSize room = screen()->availableGeometry().size();
    resize(std::min(1280, room.width() - 40), std::min(820, room.height() - 60));
    CommandsChanged();
    return true;
}

// ---- Construction, as the frame asks for it

bool MainWindow::CreateToolBar(const CKRToolbar& toolbar)
{
    auto* pBar = new QToolBar(QString::fromUtf8(toolbar.GetTable().m_pszTitle), this);
    pBar->setObjectName(QString::number(toolbar.GetID()));
    pBar->setContextMenuPolicy(Qt::PreventContextMenu);
    pBar->setAutoFillBackground(true);
    for (int32_t i = 0; i < toolbar.GetTable().m_nButtons; ++i)
    {
        const int32_t nCommand = toolbar.GetTable().m_pButtons[i];
        if (nCommand == 0)
        {
            pBar->addSeparator();
            continue;
        }
        auto* pButton = new ToolButton(toolbar, nCommand, pBar);
        const std::string sTip(GetToolTip(nCommand));
        pButton->setToolTip(QString::fromStdString(sTip));
        pButton->setAccessibleName(QString::fromStdString(sTip));
        connect(pButton, &ToolButton::Clicked, this, [this](int32_t nID) { RunCommand(nID); });
        connect(pButton, &ToolButton::Hovered, this, [this](int32_t nID) { ShowHint(nID); });
        pBar->addWidget(pButton);
    }
    connect(pBar, &QToolBar::visibilityChanged, this, [this] { CommandsChanged(); });
    m_Bars[toolbar.GetID()] = pBar;
    return true;
}

bool MainWindow::CreateStatusBar()
{
    auto* pHint = new QLabel(statusBar());
    pHint->setObjectName(QStringLiteral("hint"));
    statusBar()->addWidget(pHint, 1);
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
    const auto it = m_Bars.find(toolbar.GetID());
    if (it == m_Bars.end())
        return;
    QPalette colors; // this one colour alone: the others follow the window's
    colors.setColor(QPalette::Window, ToQt(toolbar.GetBackColor()));
    it->second->setPalette(colors);
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

void MainWindow::ShowSplash() { m_Splash.ShowSplashScreen(); }

bool MainWindow::CreateSplash(int32_t nMilliseconds)
{
    m_pSplash = new QLabel(this, Qt::SplashScreen | Qt::FramelessWindowHint);
    const QPixmap picture = SplashPicture(devicePixelRatioF());
    m_pSplash->setPixmap(picture);
    m_pSplash->setAttribute(Qt::WA_ShowWithoutActivating);
    m_pSplash->setFixedSize(picture.deviceIndependentSize().toSize());
    m_pSplash->move(screen()->geometry().center() - m_pSplash->rect().center());
    m_pSplash->show();
    m_pSplash->repaint();
    QTimer::singleShot(nMilliseconds, this, [this] { m_Splash.OnTimer(); });
    return true;
}

void MainWindow::DestroySplash()
{
    if (m_pSplash)
        m_pSplash->deleteLater();
    m_pSplash = nullptr;
    repaint();
}

// ---- Commands and bars

void MainWindow::RunCommand(int32_t nID)
{
    const std::string sFile = m_pApp->m_sFileName;
    const size_t nEffects = m_pApp->m_SpellMgr.Spells().size();
    m_pFrame->Run(nID);
    // A new effect comes last, where nobody may be looking.
    if (nID == c_nCmdNewEffect && m_pDock && m_pApp->m_SpellMgr.Spells().size() > nEffects)
        m_pDock->EffectPanel().ScrollTo(m_pApp->m_SpellMgr.Spells().back().get());
    if (sFile != m_pApp->m_sFileName)
        UpdateTextForm();
    UpdateTitle();
    CommandsChanged();
}

void MainWindow::ShowHint(int32_t nID)
{
    if (auto* pHint = statusBar()->findChild<QLabel*>(QStringLiteral("hint")))
    {
        const std::string_view sLine = CMainFrame::GetStatusLine(nID);
        pHint->setText(QString::fromUtf8(sLine.data(), qsizetype(sLine.size())));
    }
}

bool MainWindow::HasBar(int32_t nBar) const { return nBar == c_nCmdStatusBar || m_Bars.count(nBar) != 0; }

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
    TemplateDialog dialog(100, this);
    for (const CAboutText& text : about.OnInitDialog())
        if (auto* pLabel = dialog.Controls().Get<QLabel>(text.m_nControlID))
        {
            pLabel->setText(QtText::ToQt(text.m_sText));
            pLabel->resize(std::max(pLabel->width(), pLabel->wordWrap() ? 0 : pLabel->sizeHint().width()), pLabel->height());
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
    QTimer::singleShot(0, this, [this] {
        m_bUpdateQueued = false;
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
    });
}

// ---- Views of effects

QMdiSubWindow* MainWindow::FindChild(const CSpell* pSpell) const
{
    for (QMdiSubWindow* pChild : m_pArea->subWindowList())
        if (auto* pTrack = qobject_cast<TrackWidget*>(pChild->widget()); pTrack && &pTrack->GetSpell() == pSpell)
            return pChild;
    return nullptr;
}

TrackWidget* MainWindow::ActiveTimeline() const
{
    QMdiSubWindow* pChild = m_pArea->activeSubWindow();
    return pChild ? qobject_cast<TrackWidget*>(pChild->widget()) : nullptr;
}

bool MainWindow::IsOpen(const CSpell* pSpell) const { return FindChild(pSpell) != nullptr; }

void MainWindow::Open(CSpell& spell)
{
    QMdiSubWindow* pChild = FindChild(&spell);
    if (!pChild)
    {
        auto* pTrack = new TrackWidget(m_pApp->Context(), spell, nullptr);
        pChild = m_pArea->addSubWindow(pTrack);
        pChild->setAttribute(Qt::WA_DeleteOnClose);
        pChild->setWindowIcon(ProgramIcon());
        PlaceChild(*pChild);
        connect(pChild, &QObject::destroyed, this, [this] { UpdateTitle(); });
    }
    RetitleAll();
    pChild->show();
    m_pArea->setActiveSubWindow(pChild);
    UpdateTitle();
}

// Each a step below and right of the last one, so that every title can be seen, and starting over where that
// would run out of the area.
void MainWindow::PlaceChild(QMdiSubWindow& child)
{
    const QSize area = m_pArea->viewport()->size();
    const QSize size(std::min(std::max(area.width() * 7 / 10, 720), area.width()), std::min(std::max(area.height() * 7 / 10, 440), area.height()));
    const int nStep = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &child) + 4;
    const QSize room = area - size;
    const int nPlaces = std::max(std::min(room.width(), room.height()) / nStep, 0) + 1;
    const int nPlace = m_nNextPlace++ % nPlaces;
    child.setGeometry(QRect(QPoint(nPlace, nPlace) * nStep, size));
}

void MainWindow::Close(const CSpell* pSpell)
{
    // At once: the effect may be destroyed right after.
    QMdiSubWindow* pChild = FindChild(pSpell);
    if (!pChild)
        return;
    delete pChild;
    UpdateTitle();
}

void MainWindow::CloseAll()
{
    for (QMdiSubWindow* pChild : m_pArea->subWindowList())
        delete pChild;
    UpdateTitle();
}

void MainWindow::RetitleAll()
{
    for (QMdiSubWindow* pChild : m_pArea->subWindowList())
        if (auto* pTrack = qobject_cast<TrackWidget*>(pChild->widget()))
            pChild->setWindowTitle(QtText::ToQt(pTrack->GetSpell().m_szName));
    UpdateTitle();
}

void MainWindow::UpdateTitle()
{
    if (!m_pApp)
        return;
    const TrackWidget* pTrack = ActiveTimeline();
    const QMdiSubWindow* pChild = m_pArea->activeSubWindow();
    setWindowTitle(QtText::ToQt(CMainFrame::GetTitle(pTrack ? pTrack->GetSpell().m_szName : "", pChild && pChild->isMaximized())));
    const bool bEmpty = m_pArea->subWindowList().isEmpty();
    if (bEmpty)
        m_nNextPlace = 0;
    m_pEmpty->setVisible(bEmpty);
    m_pEmpty->setGeometry(m_pArea->rect().adjusted(40, 40, -40, -40));
    if (!bEmpty)
        return;
    const bool bLibrary = !m_pApp->m_SpellMgr.Spells().empty();
    m_pEmpty->setText(bLibrary ? tr("<h2>%1</h2><p>Double-click an effect at the left to see its timeline.</p>")
                                     .arg(QFileInfo(QString(QtText::PathToQt(m_pApp->m_sFileName)).replace(QLatin1Char('\\'), QLatin1Char('/'))).fileName().toHtmlEscaped())
                               : tr("<h2>No effect is open</h2><p>Open an effect library with <b>File &gt; Open</b> (Ctrl+O), drop one "
                                    "here, or start with <b>New Effect</b> in the toolbar.</p>"));
}

// ---- What one editing room needs of another

CEffectPropertySet* MainWindow::GetActivePrefab() { return m_pDock ? m_pDock->PrefabPanel().GetActivePrefab() : nullptr; }

void MainWindow::OfferActivePrefab(CEffectPropertySet* pPrefab)
{
    if (m_pDock)
        m_pDock->PrefabPanel().OfferActivePrefab(pPrefab);
}

void MainWindow::ClearActivePrefab()
{
    if (m_pDock)
        m_pDock->PrefabPanel().ClearActivePrefab();
}

bool MainWindow::EditProperties(CEffectPropertySet& set) { return m_EditProperties && m_EditProperties(set); }

const CEffectTypeDesc* MainWindow::ChooseEffectType()
{
    TemplateDialog dialog(150, this);
    auto* pList = dialog.Controls().Get<QListWidget>(1002);
    pList->setAccessibleName(tr("Effect types"));
    const CEffectModule& module = m_pApp->m_EffectModule;
    std::vector<const CEffectTypeDesc*> types;
    for (uint32_t i = 0; i < module.GetNumTypes(); ++i)
        types.push_back(module.GetType(i));
    std::stable_sort(types.begin(), types.end(), [](const CEffectTypeDesc* pLeft, const CEffectTypeDesc* pRight) {
        return QString::compare(QtText::ToQt(TypeName(*pLeft)), QtText::ToQt(TypeName(*pRight)), Qt::CaseInsensitive) < 0;
    });
    for (const CEffectTypeDesc* pType : types)
        pList->addItem(QtText::ToQt(TypeName(*pType)));
    pList->setCurrentRow(-1);
    connect(pList, &QListWidget::itemDoubleClicked, &dialog, &QDialog::accept);
    pList->setFocus();
    if (dialog.exec() != QDialog::Accepted || pList->selectedItems().isEmpty())
        return nullptr;
    return types[size_t(pList->row(pList->selectedItems().constFirst()))];
}

// ---- Events of the whole window

void MainWindow::OnEdit(const CEdit& edit)
{
    for (QMdiSubWindow* pChild : m_pArea->subWindowList())
        pChild->widget()->update();
    if (edit.Touches(ETouched::eLibrary))
        UpdateTextForm();
    RetitleAll();
    CommandsChanged();
}

void MainWindow::UpdateTextForm()
{
    bool bLegacy = false;
    for (const auto& pSpell : m_pApp->m_SpellMgr.Spells())
        bLegacy = bLegacy || !QtText::IsUtf8(pSpell->m_szName);
    for (const auto& pPrefab : m_pApp->m_SpellMgr.Prefabs())
        bLegacy = bLegacy || !QtText::IsUtf8(pPrefab->m_sName);
    m_pApp->m_SpellMgr.ForEachKey([&](CSpell&, CKey& key) { bLegacy = bLegacy || !QtText::IsUtf8(key.m_sName); });
    QtText::SetLegacyForm(bLegacy);
}

void MainWindow::closeEvent(QCloseEvent* pEvent)
{
    for (QMdiSubWindow* pChild : m_pArea->subWindowList())
        if (auto* pTrack = qobject_cast<TrackWidget*>(pChild->widget()); pTrack && pTrack->Logic().IsBusy())
            pTrack->Logic().OnMouseLost();
    EndEdit();
    pEvent->setAccepted(m_pFrame->QueryClose());
    if (pEvent->isAccepted())
        CloseAll();
}

void MainWindow::changeEvent(QEvent* pEvent)
{
    QMainWindow::changeEvent(pEvent);
    if (pEvent->type() == QEvent::PaletteChange && m_pFrame)
    {
        m_pFrame->SetColors(ShellColors(palette()));
        m_pArea->setBackground(palette().brush(QPalette::Dark)); // the area keeps the colour that it began with
    }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* pEvent)
{
    if (pEvent->mimeData()->hasUrls() && pEvent->mimeData()->urls().constFirst().isLocalFile() && !IsGestureRunning())
        pEvent->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* pEvent)
{
    const QString sFile = pEvent->mimeData()->urls().constFirst().toLocalFile();
    pEvent->acceptProposedAction();
    // Behind the drop itself: opening may ask, and the other program waits for the drop to end.
    QTimer::singleShot(0, this, [this, sFile] {
        EndEdit();
        m_pApp->OpenEffectFile(QtText::PathFromQt(sFile).c_str());
        m_pFrame->RefreshSourceControl();
        UpdateTextForm();
        UpdateTitle();
        CommandsChanged();
    });
}

void MainWindow::UpdateLocks()
{
    const CKeyLocks locks = ReadKeyLocks();
    const bool on[] = {locks.m_bCaps, locks.m_bNum, locks.m_bScroll};
    for (size_t i = 0; i < m_Locks.size(); ++i)
        m_Locks[i]->setText(on[i] ? QString::fromUtf8(c_StatusIndicators[i].m_pszText) : QString());
}

namespace
{
CSplashEvent SplashEvent(QEvent* pEvent)
{
    CSplashEvent event;
    event.m_bForModalBox = QApplication::activeModalWidget() != nullptr;
    switch (pEvent->type())
    {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
    case QEvent::KeyRelease:
        event.m_eKind = pEvent->type() == QEvent::KeyRelease ? CSplashEvent::eKeyRelease : CSplashEvent::eKeyPress;
        event.m_nCode = static_cast<QKeyEvent*>(pEvent)->key();
        event.m_bAutoRepeat = static_cast<QKeyEvent*>(pEvent)->isAutoRepeat();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
        event.m_eKind = pEvent->type() == QEvent::MouseButtonRelease ? CSplashEvent::eButtonRelease : CSplashEvent::eButtonPress;
        event.m_nCode = int(static_cast<QMouseEvent*>(pEvent)->button());
        break;
    default:
        break;
    }
    return event;
}
} // namespace

bool MainWindow::eventFilter(QObject* pObject, QEvent* pEvent)
{
    const CSplashEvent event = SplashEvent(pEvent);
    if (event.m_eKind != CSplashEvent::eOther && m_Splash.PreTranslateAppMessage(event))
    {
        pEvent->accept();
        return true;
    }
    if (event.m_eKind == CSplashEvent::eKeyPress || event.m_eKind == CSplashEvent::eKeyRelease)
    {
        // What the key does to its lock it does after this event.
        if (event.m_nCode == Qt::Key_CapsLock || event.m_nCode == Qt::Key_NumLock || event.m_nCode == Qt::Key_ScrollLock)
            QTimer::singleShot(0, this, [this] { UpdateLocks(); });
    }
    else if (pObject == this && pEvent->type() == QEvent::WindowActivate)
    {
        UpdateLocks();
        if (m_pSplash) // it was there first, so this window has come up over it
            m_pSplash->raise();
    }
    if (pObject == m_pArea && (pEvent->type() == QEvent::Resize || pEvent->type() == QEvent::Show))
        UpdateTitle();
    return QMainWindow::eventFilter(pObject, pEvent);
}
