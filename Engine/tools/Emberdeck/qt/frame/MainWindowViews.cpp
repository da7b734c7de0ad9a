// The views of effects in the main window, and what one editing room needs of another.

#include <QFileInfo>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Advice.h"
#include "qt/frame/MainWindow.h"
#include "qt/library/LeftDockWidget.h"
#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/ProgramIcon.h"
#include "qt/toolkit/QtText.h"
#include "qt/toolkit/TemplateDialog.h"

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
        pTrack->SetOptions(LoadTrackViewOptions(m_Profile));
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
            pChild->setWindowTitle(QtText::Title(QtText::ToQt(pTrack->GetSpell().m_szName)));
    UpdateTitle();
}

void MainWindow::UpdateTitle()
{
    if (!m_pApp)
        return;
    const TrackWidget* pTrack = ActiveTimeline();
    const QMdiSubWindow* pChild = m_pArea->activeSubWindow();
    const QString sView = pTrack ? QtText::ToQt(pTrack->GetSpell().m_szName) : QString();
    const bool bMaximised = pChild && pChild->isMaximized();
    QString sTitle =
        QtText::ToQt(CMainFrame::GetTitle(pTrack ? pTrack->GetSpell().m_szName : "", bMaximised));
    // In the toolkit's own form, which it then leaves as it is; it would add it behind the file's name.
    if (bMaximised && !sView.isEmpty())
        sTitle += QStringLiteral(" - [%1]").arg(sView);
    setWindowTitle(QtText::Title(sTitle + QtText::PathToQt(CMainFrame::GetTitleOfFile(m_pApp->m_sFileName))));
    const bool bEmpty = m_pArea->subWindowList().isEmpty();
    if (bEmpty)
        m_nNextPlace = 0;
    m_pEmpty->setVisible(bEmpty);
    m_pEmpty->setGeometry(m_pArea->rect().adjusted(40, 40, -40, -40));
    if (!bEmpty)
        return;
    const bool bLibrary = !m_pApp->m_SpellMgr.Spells().empty();
    m_pEmpty->setText(
        bLibrary ? tr("<h2>%1</h2><p>Double-click an effect at the left to see its timeline.</p>")
                       .arg(QFileInfo(QString(QtText::PathToQt(m_pApp->m_sFileName))
                                          .replace(QLatin1Char('\\'), QLatin1Char('/')))
                                .fileName()
                                .toHtmlEscaped())
                 : tr("<h2>No effect is open</h2><p>Open an effect library with <b>File &gt; "
                      "Open</b> (Ctrl+O), drop one "
                      "here, or start with <b>New Effect</b> in the toolbar.</p>") +
                       (m_pApp->m_EffectModule.IsLoaded()
                            ? QString()
                            : tr("<p>The types of keys come from a game's project. With the first key of a "
                                 "new library you choose it.</p>")));
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

namespace
{
std::vector<const CEffectTypeDesc*> SortedTypes(const CEffectModule& module)
{
    std::vector<const CEffectTypeDesc*> types;
    for (uint32_t i = 0; i < module.GetNumTypes(); ++i)
        types.push_back(module.GetType(i));
    std::stable_sort(types.begin(), types.end(),
                     [](const CEffectTypeDesc* pLeft, const CEffectTypeDesc* pRight)
                     {
                         return QString::compare(QtText::ToQt(TypeName(*pLeft)),
                                                 QtText::ToQt(TypeName(*pRight)), Qt::CaseInsensitive) < 0;
                     });
    return types;
}
} // namespace

const CEffectTypeDesc* MainWindow::ChooseEffectType()
{
    TemplateDialog dialog(eDlg_ChooseFX, this);
    auto* pList = dialog.Controls().Get<QListWidget>(eChooseFX_List);
    pList->setAccessibleName(tr("Effect types"));
    std::vector<const CEffectTypeDesc*> types;
    const auto fill = [&]
    {
        types = SortedTypes(m_pApp->m_EffectModule);
        for (const CEffectTypeDesc* pType : types)
            pList->addItem(QtText::ToQt(TypeName(*pType)));
        pList->setCurrentRow(-1);
        pList->setFocus();
        return !types.empty();
    };
    if (!fill())
        ExplainNoTypes(*pList, fill);
    connect(pList, &QListWidget::itemDoubleClicked, &dialog, &QDialog::accept);
    if (dialog.exec() != QDialog::Accepted || pList->selectedItems().isEmpty())
        return nullptr;
    return types[size_t(pList->row(pList->selectedItems().constFirst()))];
}

// In the empty list itself: why it is empty, and the way out where there is one. Without a plug-in the library
// stands on none, so that one can be loaded right here.
void MainWindow::ExplainNoTypes(QListWidget& list, const std::function<bool()>& fill)
{
    auto* pWhy = new QLabel(QtText::ToQt(AdviseOnNoTypes(m_pApp->m_Project, m_pApp->m_EffectModule)), &list);
    pWhy->setTextFormat(Qt::PlainText);
    pWhy->setWordWrap(true);
    pWhy->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    list.setAccessibleDescription(pWhy->text());
    auto* pLayout = new QVBoxLayout(&list);
    pLayout->setContentsMargins(12, 12, 12, 12);
    pLayout->setSpacing(12);
    pLayout->addWidget(pWhy);
    if (m_pApp->m_EffectModule.IsLoaded())
    {
        pLayout->addStretch();
        return;
    }
    auto* pChoose = new QPushButton(tr("Choose &Project..."), &list);
    pChoose->setAutoDefault(true); // Enter presses it while it has the focus
    pLayout->addWidget(pChoose, 0, Qt::AlignLeft);
    pLayout->addStretch();
    connect(pChoose, &QPushButton::clicked, &list,
            [this, &list, pWhy, pChoose, fill]
            {
                if (!m_pApp->ChooseProject() || !fill())
                {
                    pWhy->setText(QtText::ToQt(AdviseOnNoTypes(m_pApp->m_Project, m_pApp->m_EffectModule)));
                    list.setAccessibleDescription(pWhy->text());
                    pChoose->setVisible(!m_pApp->m_EffectModule.IsLoaded());
                    return;
                }
                list.setAccessibleDescription(QString());
                pWhy->hide();
                pChoose->hide();
            });
    pChoose->setFocus();
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
