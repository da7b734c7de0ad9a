#include "qt/library/LeftDockWidget.h"

#include <QApplication>
#include <QBitmap>
#include <QIcon>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>

#include "app/resources/Bars.h"
#include "app/resources/DialogTemplates.h"
#include "app/resources/TreeIcons.h"
#include "qt/library/LibraryTreeView.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"
#include "qt/toolkit/TemplateDialog.h"

namespace
{
CPoint ScreenPoint(const QMouseEvent* pEvent)
{
    return FromQt(pEvent->globalPosition());
}

// In a folded dock the pages' rectangles are turned inside out, and a widget would still be pressed there.
QRect Solid(const CRect& rc)
{
    return QRect(rc.left, rc.top, std::max(rc.Width(), 0), std::max(rc.Height(), 0));
}
} // namespace

SizeBarWidget::SizeBarWidget(QWidget* pParent) : QWidget(pParent)
{
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(tr("Fold or unfold the library"));
    setToolTip(tr("Drag to resize, click to fold and unfold"));
}

void SizeBarWidget::mousePressEvent(QMouseEvent* pEvent)
{
    if (m_pBar && pEvent->button() == Qt::LeftButton)
        m_pBar->OnLeftPress(ScreenPoint(pEvent));
}

void SizeBarWidget::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (m_pBar)
        m_pBar->OnMove(ScreenPoint(pEvent), pEvent->buttons() & Qt::LeftButton);
}

void SizeBarWidget::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (m_pBar && pEvent->button() == Qt::LeftButton)
        m_pBar->OnLeftRelease();
    ShowCursor();
}

void SizeBarWidget::ShowCursor()
{
    setCursor(m_pBar && m_pBar->IsCollapsed() ? Qt::PointingHandCursor : Qt::SizeHorCursor);
}

void SizeBarWidget::keyPressEvent(QKeyEvent* pEvent)
{
    const int nKey = pEvent->key();
    if (!m_pBar || (nKey != Qt::Key_Space && nKey != Qt::Key_Return && nKey != Qt::Key_Enter))
    {
        QWidget::keyPressEvent(pEvent);
        return;
    }
    m_pBar->Toggle();
    ShowCursor();
}

bool SizeBarWidget::event(QEvent* pEvent)
{
    // The mouse is another's now, and the release with it.
    const QEvent::Type eType = pEvent->type();
    if (m_pBar &&
        (eType == QEvent::UngrabMouse || eType == QEvent::WindowDeactivate || eType == QEvent::Hide))
        m_pBar->OnMouseLost();
    return QWidget::event(pEvent);
}

void SizeBarWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QColor face = palette().color(QPalette::Button), shadow = palette().color(QPalette::Mid);
    painter.fillRect(rect(), face);
    for (const CSizeBarBand& band : CSizeBar::GetBands(FromQt(rect())))
    {
        const uint8_t* pRows = GetSizeBarRows(band.m_eBitmap);
        QImage pattern(8, 8, QImage::Format_RGB32);
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x)
                pattern.setPixelColor(x, y, pRows[y] & (0x80 >> x) ? shadow : face);
        painter.fillRect(ToQt(band.m_rc), QBrush(pattern));
    }
    painter.setPen(hasFocus() ? palette().color(QPalette::Highlight) : shadow);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

LibraryPage::LibraryPage(CLibraryTree& tree, const QIcon& leaf, int32_t nTemplate, uint32_t nTreeID,
                         QWidget* pParent)
    : QWidget(pParent),
      m_nTreeID(nTreeID),
      m_pTree(new LibraryTreeView(tree, leaf, this))
{
    const CTemplateControls places(this, *FindDialogTemplate(nTemplate));
    resize(places.GetSize());
    m_pTree->setGeometry(places.PlaceOf(int32_t(nTreeID)));
}

void LibraryPage::SetPanel(CLibraryPanel* pPanel)
{
    m_pPanel = pPanel;
    m_pTree->SetPanel(pPanel);
    if (pPanel)
        pPanel->OnCreate(this);
}

void LibraryPage::resizeEvent(QResizeEvent*)
{
    if (m_pPanel)
        m_pPanel->OnSize();
}

CRect LibraryPage::GetClientRect() const
{
    return FromQt(rect());
}

bool LibraryPage::GetControlRect(uint32_t nID, CRect& rc) const
{
    rc = FromQt(m_pTree->geometry());
    return nID == m_nTreeID;
}

// In a folded dock there is no room for it, nor for the focus.
void LibraryPage::MoveControl(uint32_t nID, const CRect& rc)
{
    if (nID != m_nTreeID)
        return;
    m_pTree->setGeometry(Solid(rc));
    m_pTree->setVisible(!rc.IsEmpty());
}

LeftDockWidget::LeftDockWidget(CEditContext& context, QWidget* pParent)
    : QWidget(pParent),
      m_pTabs(new QTabBar(this)),
      m_pSizeBar(new SizeBarWidget(this)),
      m_pEffectPage(new LibraryPage(context.m_EffectTree, ArtIcon(c_EffectIcon), eDlg_EffectPanel,
                                    eEffectPanel_Tree, this)),
      m_pPrefabPage(new LibraryPage(context.m_PrefabTree, ArtIcon(c_PrefabIcon), eDlg_PrefabPanel,
                                    ePrefabPanel_Tree, this)),
      m_pEffects(m_pEffectPage->Tree()),
      m_pPrefabs(m_pPrefabPage->Tree())
{
    m_pEffects->setAccessibleName(tr("Effects"));
    m_pPrefabs->setAccessibleName(tr("Prefabs"));
    m_pTabs->setAccessibleName(tr("Library pages"));
    m_pTabs->setDocumentMode(true);
    const CTemplateControls places(this, *FindDialogTemplate(eDlg_LeftDock));
    m_rcTabs = places.PlaceOf(eLeftDock_Tabs);
    m_rcSizeBar = places.PlaceOf(eLeftDock_SizeBar);
    resize(places.GetSize());
    setFixedWidth(places.GetSize().width());

    const int nDrag = QApplication::startDragDistance();
    const CTreeOptions options{CPoint{nDrag, nDrag}, false, false};
    m_pEffectPanel = std::make_unique<CEffectTreePanel>(context, *m_pEffects, *this, options);
    m_pPrefabPanel = std::make_unique<CPrefabTreePanel>(context, *m_pPrefabs, options);
    m_pDock = std::make_unique<CLeftDockBar>(*this, *m_pEffectPanel, *m_pPrefabPanel, nDrag);
    m_pSizeBar->SetBar(&m_pDock->SizeBar());
    m_bReady = true;
    m_pDock->Initialize();
    connect(m_pTabs, &QTabBar::currentChanged, this, &LeftDockWidget::SwitchPage);
}

// The focus goes along. A page that is hidden with it would hand it to the next widget of the window, which may
// be another effect's timeline.
void LeftDockWidget::SwitchPage(int nTab)
{
    const QWidget* pFocus = window()->focusWidget();
    const bool bFocus = pFocus && Page(m_pDock->GetCurTab())->isAncestorOf(pFocus);
    if (bFocus)
        m_pTabs->setFocus();
    m_pDock->OnSelChange(nTab);
    if (bFocus)
        Page(nTab)->Tree()->setFocus();
}

LeftDockWidget::~LeftDockWidget()
{
    m_bReady = false;
    m_pEffectPage->SetPanel(nullptr);
    m_pPrefabPage->SetPanel(nullptr);
    m_pSizeBar->SetBar(nullptr);
}

void LeftDockWidget::FinishEdits()
{
    m_pEffectPanel->FinishEdit();
    m_pPrefabPanel->FinishEdit();
}

bool LeftDockWidget::IsEditing() const
{
    return m_pEffectPanel->m_Tree.IsEditing() || m_pPrefabPanel->m_Tree.IsEditing();
}

bool LeftDockWidget::IsBusy() const
{
    return m_pEffectPanel->IsBusy() || m_pPrefabPanel->IsBusy();
}

void LeftDockWidget::ShowItems(ETreeSide eSide, const std::vector<HLibraryItem>& items)
{
    if (items.empty() || IsBusy())
        return;
    m_pTabs->setCurrentIndex(eSide == ETreeSide::eEffects ? 0 : 1);
    if (eSide == ETreeSide::eEffects)
        m_pEffectPanel->ShowItems(items);
    else
        m_pPrefabPanel->ShowItems(items);
}

void LeftDockWidget::resizeEvent(QResizeEvent*)
{
    if (m_bReady && m_pDock)
        m_pDock->OnSize();
}

CRect LeftDockWidget::GetClientRect() const
{
    return FromQt(rect());
}

bool LeftDockWidget::GetControlRect(uint32_t nID, CRect& rc) const
{
    if (nID != eLeftDock_Tabs && nID != eLeftDock_SizeBar)
        return false;
    rc = FromQt(nID == eLeftDock_Tabs ? m_rcTabs : m_rcSizeBar);
    return true;
}

void LeftDockWidget::MoveControl(uint32_t nID, const CRect& rc)
{
    if (nID == eLeftDock_Tabs)
    {
        m_rcTabs = ToQt(rc);
        QRect rcBar = Solid(rc);
        rcBar.setHeight(m_pTabs->sizeHint().height());
        m_pTabs->setGeometry(rcBar);
        m_pTabs->setVisible(!rc.IsEmpty());
    }
    else if (nID == eLeftDock_SizeBar)
        m_rcSizeBar = ToQt(rc);
}

CRect LeftDockWidget::GetBarRect() const
{
    return FromQt(QRect(mapToGlobal(QPoint(0, 0)), size()));
}

CRect LeftDockWidget::GetParentRect() const
{
    const QWidget* pParent = parentWidget() ? parentWidget() : this;
    return FromQt(QRect(pParent->mapToGlobal(QPoint(0, 0)), pParent->size()));
}

void LeftDockWidget::MoveBar(const CRect&)
{
    RecalcLayout();
}

void LeftDockWidget::RecalcLayout()
{
    if (!m_pDock)
        return;
    const CDockSize size = m_pDock->CalcSize(CDockSize{width(), height()}, CDockSize{width(), height()});
    // What goes out of sight must not hand the keyboard to some other button.
    const QWidget* pFocus = window()->focusWidget();
    if (m_pDock->SizeBar().IsCollapsed() && pFocus && isAncestorOf(pFocus))
        m_pSizeBar->setFocus();
    if (size.m_nWidth > 0 && size.m_nWidth != width())
        setFixedWidth(size.m_nWidth);
}

void LeftDockWidget::CreateSizeBar(const CRect& rc)
{
    m_pSizeBar->setGeometry(ToQt(rc));
}
void LeftDockWidget::MoveSizeBar(const CRect& rc)
{
    m_pSizeBar->setGeometry(ToQt(rc));
}
void LeftDockWidget::AddTab(const char* pszText)
{
    m_pTabs->addTab(QString::fromUtf8(pszText));
}

CRect LeftDockWidget::GetTabArea(const CRect& rcTabs) const
{
    CRect rc = rcTabs;
    rc.top += m_pTabs->sizeHint().height();
    return rc;
}

void LeftDockWidget::CreatePage(int32_t nTab)
{
    Page(nTab)->SetPanel(nTab == 0 ? static_cast<CLibraryPanel*>(m_pEffectPanel.get())
                                   : m_pPrefabPanel.get());
    Page(nTab)->hide();
}

void LeftDockWidget::MovePage(int32_t nTab, const CRect& rc)
{
    Page(nTab)->setGeometry(Solid(rc));
}
void LeftDockWidget::ShowPage(int32_t nTab, bool bShow)
{
    Page(nTab)->setVisible(bShow);
}

bool LeftDockWidget::ChooseRows(const std::vector<std::string>& rows, std::vector<uint32_t>& selected)
{
    TemplateDialog dialog(eDlg_SelectFXToImport, window());
    auto* pList = dialog.Controls().Get<QListWidget>(eSelectFX_List);
    pList->setAccessibleName(tr("Effects of the file"));
    for (const std::string& sRow : rows)
        pList->addItem(QtText::ToQt(sRow));
    if (dialog.exec() != QDialog::Accepted)
        return false;
    for (const QModelIndex& index : pList->selectionModel()->selectedRows())
        selected.push_back(uint32_t(index.row()));
    return true;
}
