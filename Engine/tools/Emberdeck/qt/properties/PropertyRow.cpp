#include "qt/properties/PropertyRow.h"

#include <algorithm>

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

#include "qsstrutils.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

PropertyRow::PropertyRow(CEffectPropertyCtrls& row, QWidget* pParent) : m_Row(row)
{
    QString sName;
    for (int nSlot = 0; nSlot < CEffectPropertyCtrls::c_nMaxSlots; ++nSlot)
    {
        const CControlDesc* pDesc = row.GetControl(nSlot);
        if (!pDesc)
            continue;
        QWidget* pWidget = Make(nSlot, *pDesc, pParent);
        m_apWidgets[size_t(nSlot)] = pWidget;
        if (pDesc->m_eKind == EControlKind::eLabel)
        {
            if (nSlot == 0)
                sName = QtText::ToQt(pDesc->m_sText).chopped(pDesc->m_sText.ends_with(" :") ? 2 : 0);
        }
        else
        {
            const CControlDesc* pBefore = nSlot > 1 ? row.GetControl(nSlot - 1) : nullptr;
            const bool bPart = pBefore && pBefore->m_eKind == EControlKind::eLabel;
            pWidget->setAccessibleName(bPart ? sName + QLatin1Char(' ') +
                                                   QtText::ToQt(pBefore->m_sText).remove(QLatin1Char(':'))
                                             : sName);
        }
        pWidget->setToolTip(PlainToolTip(QtText::ToQt(pDesc->m_sToolTip)));
        if (pWidget->focusPolicy() & Qt::TabFocus)
            m_Focusable.push_back(pWidget);
        Sync(nSlot);
    }
    m_Row.SetView(this);
}

PropertyRow::~PropertyRow()
{
    m_Row.SetView(nullptr);
}

bool PropertyRow::Owns(const QWidget* pWidget) const
{
    for (const QPointer<QWidget>& p : m_apWidgets)
        if (pWidget && p == pWidget)
            return true;
    return false;
}

QWidget* PropertyRow::Make(int nSlot, const CControlDesc& desc, QWidget* pParent)
{
    switch (desc.m_eKind)
    {
    case EControlKind::eEdit:
        return MakeEdit(nSlot, pParent);
    case EControlKind::eCombo:
        return MakeCombo(nSlot, desc, pParent);
    case EControlKind::eSpin:
    {
        auto* pSpin = new SpinArrows(pParent);
        connect(pSpin, &SpinArrows::Stepped, this, [this, nSlot](int nDelta) { m_Row.Spin(nSlot, nDelta); });
        return pSpin;
    }
    case EControlKind::eSwatch:
    case EControlKind::eFileButton:
    case EControlKind::eClearButton:
    case EControlKind::eVectorButton:
    case EControlKind::eFunctionButton:
        return MakeButton(nSlot, desc, pParent);
    case EControlKind::eLabel:
    case EControlKind::eCheck:
        break;
    }
    auto* pLabel = new RowLabel(pParent);
    pLabel->setAlignment((desc.m_bAlignRight ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    return pLabel;
}

QWidget* PropertyRow::MakeEdit(int nSlot, QWidget* pParent)
{
    auto* pEdit = new QLineEdit(pParent);
    connect(pEdit, &QLineEdit::textEdited, this,
            [this, nSlot](const QString& sText) { OnTyped(nSlot, sText); });
    pEdit->installEventFilter(this);
    return pEdit;
}

QWidget* PropertyRow::MakeCombo(int nSlot, const CControlDesc& desc, QWidget* pParent)
{
    auto* pCombo = new QComboBox(pParent);
    for (const std::string& sItem : desc.m_Items)
        pCombo->addItem(QtText::ToQt(sItem));
    pCombo->setCurrentIndex(-1);
    pCombo->setMaxVisibleItems(
        std::max(desc.m_nDropHeight / std::max(pCombo->view()->sizeHintForRow(0), 1), 1));
    connect(pCombo, &QComboBox::activated, this, [this, nSlot](int nItem) { m_Row.Select(nSlot, nItem); });
    return pCombo;
}

QWidget* PropertyRow::MakeButton(int nSlot, const CControlDesc& desc, QWidget* pParent)
{
    QAbstractButton* pButton = nullptr;
    if (desc.m_eKind == EControlKind::eSwatch)
    {
        pButton = new SwatchButton(pParent);
    }
    else
    {
        QPushButton* pPush =
            desc.m_eKind == EControlKind::eFileButton ? new PathButton(pParent) : new QPushButton(pParent);
        pPush->setAutoDefault(true); // Enter presses the one that has the focus
        pButton = pPush;
    }
    connect(pButton, &QAbstractButton::clicked, this, [this, nSlot] { m_Row.Press(nSlot); });
    return pButton;
}

void PropertyRow::OnTyped(int nSlot, const QString& sText)
{
    std::string sBytes = QtText::FromQt(sText);
    if (sBytes.size() > CPropData::c_nMaxText)
    {
        sBytes = CutAtCharacter(sBytes, CPropData::c_nMaxText);
        if (auto* pEdit = qobject_cast<QLineEdit*>(m_apWidgets[size_t(nSlot)]))
            pEdit->setText(QtText::ToQt(sBytes));
    }
    m_Row.SetText(nSlot, sBytes);
}

// The arrow keys step a box that has arrows beside it.
bool PropertyRow::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() != QEvent::KeyPress)
        return false;
    const auto* pKey = static_cast<QKeyEvent*>(pEvent);
    if ((pKey->key() != Qt::Key_Up && pKey->key() != Qt::Key_Down) ||
        (pKey->modifiers() & ~Qt::KeypadModifier))
        return false;
    for (int nSlot = 0; nSlot < CEffectPropertyCtrls::c_nMaxSlots; ++nSlot)
    {
        const CControlDesc* pDesc = m_Row.GetControl(nSlot);
        if (!pDesc || pDesc->m_eKind != EControlKind::eSpin || pDesc->m_nTarget < 0 ||
            m_apWidgets[size_t(pDesc->m_nTarget)] != pWatched)
            continue;
        m_Row.Spin(nSlot, pKey->key() == Qt::Key_Up ? -1 : 1);
        return true;
    }
    return false;
}

void PropertyRow::OnControlChanged(int nSlot)
{
    Sync(nSlot);
}

void PropertyRow::Sync(int nSlot)
{
    const CControlDesc* pDesc = m_Row.GetControl(nSlot);
    QWidget* pWidget = m_apWidgets[size_t(nSlot)];
    if (!pDesc || !pWidget)
        return;
    const QSignalBlocker blocker(pWidget);
    const QString sText = QtText::ToQt(pDesc->m_sText);
    if (auto* pEdit = qobject_cast<QLineEdit*>(pWidget))
    {
        if (pEdit->text() != sText)
        {
            const int nCursor = pEdit->hasFocus() ? pEdit->cursorPosition() : 0;
            pEdit->setText(sText);
            pEdit->setCursorPosition(nCursor);
        }
    }
    else if (auto* pCombo = qobject_cast<QComboBox*>(pWidget))
    {
        pCombo->setCurrentIndex(pDesc->m_nSelected);
    }
    else if (auto* pSwatch = qobject_cast<SwatchButton*>(pWidget))
    {
        pSwatch->SetColor(pDesc->m_nColor);
    }
    else if (auto* pPath = qobject_cast<PathButton*>(pWidget))
    {
        pPath->SetPath(sText);
    }
    else if (auto* pButton = qobject_cast<QPushButton*>(pWidget))
    {
        pButton->setText(QtText::Plain(sText));
    }
    else if (auto* pLabel = qobject_cast<QLabel*>(pWidget))
    {
        pLabel->setText(sText);
    }
    pWidget->setGeometry(ToQt(pDesc->m_rc));
    pWidget->setEnabled(pDesc->m_bEnabled);
    // Its dialog decides where the focus goes when the control goes out of sight.
    if (!pDesc->m_bVisible && pWidget->window()->focusWidget() == pWidget)
        pWidget->clearFocus();
    pWidget->setVisible(pDesc->m_bVisible);
}
