#include "qt/properties/FxPropertiesDialog.h"

#include <algorithm>

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QWheelEvent>

#include "qt/properties/DialogUndo.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

namespace
{

constexpr int c_nFrameHeight = 40; // a title bar, which no one knows before the window is there

bool IsFine(const QWheelEvent& event)
{
    return event.phase() != Qt::NoScrollPhase || event.device()->type() == QInputDevice::DeviceType::TouchPad;
}

} // namespace

FxPropertiesDialog::FxPropertiesDialog(CFXPropertiesDlg& dialog, QWidget* pParent)
    : TemplateDialog(eDlg_FXProperties, pParent),
      m_Dialog(dialog),
      m_rcRows(m_Controls.PlaceOf(eFXProps_Rows)),
      m_pScrollBar(m_Controls.Get<ListScrollBar>(eFXProps_ScrollBar))
{
    KeepDisabledReadable(*this);
    FitScreen();
    const FontMeasure font(*this);
    m_Dialog.OnInitDialog(FromQt(m_rcRows), &font);
    setWindowTitle(QtText::Title(QtText::ToQt(m_Dialog.GetCaption())));
    MakeRows();
    m_Dialog.SetView(this);

    for (QPushButton* pButton : findChildren<QPushButton*>())
        pButton->setAutoDefault(true); // Enter presses the one that has the focus
    connect(m_Controls.Get<QPushButton>(eFXProps_OpenParent), &QPushButton::clicked, this,
            [this] { m_Dialog.OnOpenParent(); });
    connect(m_Controls.Get<QPushButton>(eFXProps_Disconnect), &QPushButton::clicked, this,
            [this] { m_Dialog.OnDisconnect(); });
    connect(m_pScrollBar, &QScrollBar::valueChanged, this,
            [this](int nPos)
            { KeepFocusInView([this, nPos] { m_Dialog.OnVScroll(EScrollCode::eThumbTrack, nPos); }); });
    m_pScrollBar->setAccessibleName(QStringLiteral("Properties"));
    OnScrollBarChanged();
    OnParentButtonsChanged();
    SetTabOrder();
    new DialogUndo(*this, dialog);
    // Before any child sees it: a list must not change under the wheel.
    qApp->installEventFilter(this);
}

FxPropertiesDialog::~FxPropertiesDialog()
{
    qApp->removeEventFilter(this);
    m_Dialog.SetView(nullptr);
}

// Whole rows come off the list when the dialog is taller than the screen.
void FxPropertiesDialog::FitScreen()
{
    const QScreen* pScreen = parentWidget() ? parentWidget()->screen() : QGuiApplication::primaryScreen();
    if (!pScreen)
        return;
    const int nGive = ListHeightToGiveUp(height() + c_nFrameHeight, pScreen->availableGeometry().height(),
                                         m_rcRows.height(), CRowMetrics(fontMetrics().height()));
    if (nGive <= 0)
        return;
    m_rcRows.setHeight(m_rcRows.height() - nGive);
    for (QWidget* pTall :
         {static_cast<QWidget*>(findChild<QGroupBox*>()), static_cast<QWidget*>(m_pScrollBar)})
        if (pTall)
            pTall->resize(pTall->width(), pTall->height() - nGive);
    for (int32_t nID : {c_nControlOk, int32_t(eFXProps_OpenParent), int32_t(eFXProps_Disconnect)})
        if (QWidget* pButton = m_Controls.Find(nID))
            pButton->move(pButton->x(), pButton->y() - nGive);
    setFixedSize(width(), height() - nGive);
}

void FxPropertiesDialog::MakeRows()
{
    const std::vector<CFXPropertiesDlg::CRow>& rows = m_Dialog.GetRows();
    m_Rows.resize(rows.size());
    m_Checks.resize(rows.size());
    for (uint32_t i = 0; i < rows.size(); ++i)
    {
        if (rows[i].m_pCheck)
            OnCheckChanged(i);
        if (rows[i].m_pCtrls)
            m_Rows[i] = std::make_unique<PropertyRow>(*rows[i].m_pCtrls, this);
    }
}

void FxPropertiesDialog::MakeCheck(uint32_t nRow)
{
    const CFXPropertiesDlg::CRow& row = m_Dialog.GetRows()[nRow];
    auto* pCheck = new QCheckBox(this);
    pCheck->setToolTip(PlainToolTip(QtText::ToQt(row.m_pCheck->m_sToolTip)));
    const CControlDesc* pLabel = row.m_pCtrls ? row.m_pCtrls->GetControl(0) : nullptr;
    const QString sRow = pLabel ? QtText::ToQt(pLabel->m_sText).remove(QLatin1String(" :")) : QString();
    pCheck->setAccessibleName(QStringLiteral("%1 from the parent prefab").arg(sRow));
    connect(pCheck, &QCheckBox::clicked, this,
            [this, nID = row.m_pCheck->m_nID](bool bChecked) { m_Dialog.OnCheck(nID, bChecked); });
    // One that comes back stands where it was for the Tab key.
    if (m_Rows[nRow] && !m_Rows[nRow]->Focusable().empty())
        QWidget::setTabOrder(pCheck, m_Rows[nRow]->Focusable().front());
    m_Checks[nRow] = pCheck;
}

// The rows come first, whose first value has the focus at the start.
void FxPropertiesDialog::SetTabOrder()
{
    QWidget* pLast = nullptr;
    const auto add = [&pLast](QWidget* pWidget)
    {
        if (pLast)
            QWidget::setTabOrder(pLast, pWidget);
        pLast = pWidget;
    };
    QWidget* pFirst = nullptr;
    for (size_t i = 0; i < m_Rows.size(); ++i)
    {
        if (m_Checks[i])
            add(m_Checks[i]);
        if (!m_Rows[i])
            continue;
        for (QWidget* pWidget : m_Rows[i]->Focusable())
        {
            add(pWidget);
            if (!pFirst && pWidget->isEnabled())
                pFirst = pWidget;
        }
    }
    for (int32_t nID : {c_nControlOk, int32_t(eFXProps_OpenParent), int32_t(eFXProps_Disconnect)})
        add(m_Controls.Find(nID));
    if (!pFirst || !m_Dialog.IsRowVisible(uint32_t(RowOf(pFirst))))
        pFirst = m_Controls.Find(c_nControlOk);
    pFirst->setFocus(Qt::TabFocusReason);
}

void FxPropertiesDialog::accept()
{
    if (m_Dialog.OnOK())
        TemplateDialog::accept();
}

void FxPropertiesDialog::OnCheckChanged(uint32_t nRow)
{
    if (nRow >= m_Checks.size())
        return;
    const CControlDesc* pDesc = m_Dialog.GetRows()[nRow].m_pCheck.get();
    if (pDesc && !m_Checks[nRow])
        MakeCheck(nRow);
    QCheckBox* pCheck = m_Checks[nRow];
    if (!pCheck)
        return;
    if (!pDesc)
    {
        pCheck->hide();
        pCheck->deleteLater();
        m_Checks[nRow] = nullptr;
        return;
    }
    const QSignalBlocker blocker(pCheck);
    pCheck->setChecked(pDesc->m_bChecked);
    pCheck->setGeometry(ToQt(pDesc->m_rc));
    if (!pDesc->m_bVisible && focusWidget() == pCheck)
        pCheck->clearFocus();
    pCheck->setVisible(pDesc->m_bVisible);
}

void FxPropertiesDialog::OnScrollBarChanged()
{
    const CScrollBarState state = m_Dialog.GetScrollBar();
    const QSignalBlocker blocker(m_pScrollBar);
    m_pScrollBar->setRange(0, state.m_nMax);
    m_pScrollBar->setPageStep(std::max(state.m_nPage, 1));
    m_pScrollBar->setValue(state.m_nPos);
    m_pScrollBar->setEnabled(state.m_bEnabled);
    m_pScrollBar->EnableArrows(state.m_bUp, state.m_bDown);
}

void FxPropertiesDialog::OnParentButtonsChanged()
{
    for (int32_t nID : {eFXProps_OpenParent, eFXProps_Disconnect})
        m_Controls.Find(nID)->setVisible(m_Dialog.HasParentButtons());
}

bool FxPropertiesDialog::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() != QEvent::Wheel)
        return false;
    const auto* pWidget = qobject_cast<QWidget*>(pWatched);
    if (!pWidget || pWidget->window() != this)
        return false;
    const auto& wheel = *static_cast<QWheelEvent*>(pEvent);
    KeepFocusInView([this, &wheel] { m_Dialog.OnMouseWheel(wheel.angleDelta().y(), IsFine(wheel)); });
    pEvent->accept();
    return true;
}

// A row that scrolls out of sight hands the focus to the nearest one that is still there.
void FxPropertiesDialog::KeepFocusInView(const std::function<void()>& scroll)
{
    const int nRow = RowOf(focusWidget());
    scroll();
    if (nRow < 0 || m_Dialog.IsRowVisible(uint32_t(nRow)))
        return;
    const bool bAbove = nRow < m_Dialog.GetTopRow();
    if (!FocusRow(bAbove ? uint32_t(m_Dialog.GetTopRow()) : LastRowInView(), true))
        m_Controls.Find(c_nControlOk)->setFocus(Qt::OtherFocusReason);
}

uint32_t FxPropertiesDialog::LastRowInView() const
{
    const auto nEnd = int64_t(m_Dialog.GetTopRow()) + m_Dialog.GetNumVisibleRows();
    return uint32_t(std::max<int64_t>(std::min(nEnd, int64_t(m_Rows.size())) - 1, 0));
}

int FxPropertiesDialog::RowOf(const QWidget* pWidget) const
{
    if (!pWidget)
        return -1;
    for (size_t i = 0; i < m_Rows.size(); ++i)
        if (m_Checks[i] == pWidget || (m_Rows[i] && m_Rows[i]->Owns(pWidget)))
            return int(i);
    return -1;
}

std::vector<QWidget*> FxPropertiesDialog::UsableIn(uint32_t nRow) const
{
    std::vector<QWidget*> widgets;
    if (nRow >= m_Rows.size() || !m_Dialog.IsRowVisible(nRow))
        return widgets;
    if (m_Checks[nRow])
        widgets.push_back(m_Checks[nRow]);
    if (m_Rows[nRow])
        std::copy_if(m_Rows[nRow]->Focusable().begin(), m_Rows[nRow]->Focusable().end(),
                     std::back_inserter(widgets),
                     [](const QWidget* pWidget) { return pWidget->isEnabled(); });
    return widgets;
}

bool FxPropertiesDialog::FocusRow(uint32_t nRow, bool bFirst)
{
    const std::vector<QWidget*> widgets = UsableIn(nRow);
    if (widgets.empty())
        return false;
    (bFirst ? widgets.front() : widgets.back())
        ->setFocus(bFirst ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

// Tab at the end of the rows in view goes on in the one that scrolls into it.
bool FxPropertiesDialog::focusNextPrevChild(bool bNext)
{
    const int nRow = RowOf(focusWidget());
    if (nRow >= 0)
    {
        std::vector<QWidget*> inView;
        for (uint32_t i = uint32_t(m_Dialog.GetTopRow()); i <= LastRowInView(); ++i)
        {
            const std::vector<QWidget*> widgets = UsableIn(i);
            inView.insert(inView.end(), widgets.begin(), widgets.end());
        }
        const bool bAtEnd = inView.empty() || focusWidget() == (bNext ? inView.back() : inView.front());
        while (bAtEnd && m_Dialog.OnTabOut(bNext))
            if (FocusRow(bNext ? LastRowInView() : uint32_t(m_Dialog.GetTopRow()), bNext))
                return true;
    }
    return TemplateDialog::focusNextPrevChild(bNext);
}
