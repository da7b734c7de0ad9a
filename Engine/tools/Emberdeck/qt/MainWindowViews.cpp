// The views of effects in the main window, and what one editing room needs of another.

#include <QFileInfo>
#include <QListWidget>
#include <QPointer>

#include "qt/LeftDockWidget.h"
#include "qt/MainWindow.h"
#include "qt/ProgramIcon.h"
#include "qt/QtText.h"
#include "qt/TemplateDialog.h"
#include "qt/TrackWidget.h"

QMdiSubWindow* MainWindow::FindChild(const CSpell* pSpell) const
{
    for (QMdiSubWindow* pChild : m_pArea->subWindowList())
        if (auto* pTrack = qobject_cast<TrackWidget*>(pChild->widget());
            pTrack && &pTrack->GetSpell() == pSpell)
            return pChild;
    return nullptr;
}

TrackWidget* MainWindow::ActiveTimeline() const
{
    QMdiSubWindow* pChild = m_pArea->activeSubWindow();
    return pChild ? qobject_cast<TrackWidget*>(pChild->widget()) : nullptr;
}

bool MainWindow::IsOpen(const CSpell* pSpell) const
{
    return FindChild(pSpell) != nullptr;
}

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
        connect(pChild, &QMdiSubWindow::windowStateChanged, this, [this] { UpdateTitle(); });
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
    const QSize size(std::min(std::max(area.width() * 7 / 10, 720), area.width()),
                     std::min(std::max(area.height() * 7 / 10, 440), area.height()));
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
    // The one that is active next would take the keyboard, from the tree for instance: the next Delete would
    // go to its keys.
    QPointer<QWidget> pFocus = focusWidget();
    if (pFocus && pChild->isAncestorOf(pFocus))
        pFocus = nullptr;
    delete pChild;
    if (pFocus)
        pFocus->setFocus();
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
    setWindowTitle(QtText::ToQt(
        CMainFrame::GetTitle(pTrack ? pTrack->GetSpell().m_szName : "", pChild && pChild->isMaximized())));
    const bool bEmpty = m_pArea->subWindowList().isEmpty();
    if (bEmpty)
        m_nNextPlace = 0;
    m_pEmpty->setVisible(bEmpty);
    m_pEmpty->setGeometry(m_pArea->rect().adjusted(40, 40, -40, -40));
    if (!bEmpty)
        return;
    const bool bLibrary = !m_pApp->m_SpellMgr.Spells().empty();
    m_pEmpty->setText(bLibrary
                          ? tr("<h2>%1</h2><p>Double-click an effect at the left to see its timeline.</p>")
                                .arg(QFileInfo(QString(QtText::PathToQt(m_pApp->m_sFileName))
                                                   .replace(QLatin1Char('\\'), QLatin1Char('/')))
                                         .fileName()
                                         .toHtmlEscaped())
                          : tr("<h2>No effect is open</h2><p>Open an effect library with <b>File &gt; "
                               "Open</b> (Ctrl+O), drop one "
                               "here, or start with <b>New Effect</b> in the toolbar.</p>"));
}

// ---- What one editing room needs of another

CEffectPropertySet* MainWindow::GetActivePrefab()
{
    return m_pDock ? m_pDock->PrefabPanel().GetActivePrefab() : nullptr;
}

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

bool MainWindow::EditProperties(CEffectPropertySet& set)
{
    return m_EditProperties && m_EditProperties(set);
}

const CEffectTypeDesc* MainWindow::ChooseEffectType()
{
    TemplateDialog dialog(150, this);
    auto* pList = dialog.Controls().Get<QListWidget>(1002);
    pList->setAccessibleName(tr("Effect types"));
    const CEffectModule& module = m_pApp->m_EffectModule;
    std::vector<const CEffectTypeDesc*> types;
    for (uint32_t i = 0; i < module.GetNumTypes(); ++i)
        types.push_back(module.GetType(i));
    std::stable_sort(types.begin(), types.end(),
                     [](const CEffectTypeDesc* pLeft, const CEffectTypeDesc* pRight)
                     {
                         return QString::compare(QtText::ToQt(TypeName(*pLeft)),
                                                 QtText::ToQt(TypeName(*pRight)), Qt::CaseInsensitive) < 0;
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

// ---- What an edit changes on the screen

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
    m_pApp->m_SpellMgr.ForEachKey([&](CSpell&, CKey& key)
                                  { bLegacy = bLegacy || !QtText::IsUtf8(key.m_sName); });
    QtText::SetLegacyForm(bLegacy);
}
