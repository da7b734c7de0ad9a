#include "qt/properties/EditVectorDialog.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>

#include "qt/properties/DialogUndo.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

VectorView::VectorView(CEditVectorDlg& dialog, EVectorView eView, QWidget& parent)
    : DragView(parent),
      m_Dialog(dialog),
      m_eView(eView)
{
    setAccessibleName(eView == EVectorView::eSide ? QStringLiteral("Side view") : QStringLiteral("Top view"));
}

QString VectorView::AccessibleText() const
{
    return tr("magnitude %1").arg(QtText::ToQt(m_Dialog.GetMagnitudeText()));
}

void VectorView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QtSurface surface(painter, rect(), palette());
    m_Dialog.PaintView(surface, m_eView, FromQt(rect()));
}

EditVectorDialog::EditVectorDialog(CEditVectorDlg& dialog, QWidget* pParent)
    : TemplateDialog(eDlg_EditVector, pParent),
      m_Dialog(dialog),
      m_pSide(new VectorView(dialog, EVectorView::eSide, *this)),
      m_pTop(new VectorView(dialog, EVectorView::eTop, *this)),
      m_pMagnitude(m_Controls.Get<QLineEdit>(eVector_Magnitude)),
      m_pPresets(m_Controls.Get<QComboBox>(eVector_Presets))
{
    m_pSide->setGeometry(m_Controls.PlaceOf(eVector_SideView));
    m_pTop->setGeometry(m_Controls.PlaceOf(eVector_TopView));
    m_Dialog.OnInitDialog(FromQt(m_pSide->geometry()), FromQt(m_pTop->geometry()));
    m_pMagnitude->setText(QtText::ToQt(m_Dialog.GetMagnitudeText()));
    connect(m_pMagnitude, &QLineEdit::textEdited, this,
            [this](const QString& sText) { m_Dialog.SetMagnitudeText(QtText::FromQt(sText)); });

    for (const CVectorPreset& preset : c_VectorPresets)
        m_pPresets->addItem(QString::fromUtf8(preset.m_pszText));
    m_pPresets->setCurrentIndex(-1);
    m_pPresets->installEventFilter(this);
    connect(m_pPresets, &QComboBox::activated, this,
            [this](int nItem)
            {
                m_Dialog.OnPreset(nItem);
                m_pPresets->setCurrentIndex(-1);
            });
    for (QPushButton* pButton : findChildren<QPushButton*>())
        pButton->setAutoDefault(true); // Enter presses the one that has the focus
    m_Dialog.SetView(this);
    SelectMagnitude();
    new DialogUndo(*this, dialog);
}

EditVectorDialog::~EditVectorDialog()
{
    m_Dialog.SetView(nullptr);
}

void EditVectorDialog::accept()
{
    if (m_Dialog.OnOK())
        TemplateDialog::accept();
}

void EditVectorDialog::RepaintViews()
{
    m_pSide->update();
    m_pTop->update();
}

void EditVectorDialog::ShowMagnitude()
{
    m_pMagnitude->setText(QtText::ToQt(m_Dialog.GetMagnitudeText()));
}

void EditVectorDialog::SelectMagnitude()
{
    m_pMagnitude->setFocus(Qt::OtherFocusReason);
    m_pMagnitude->selectAll();
}

// The list shows nothing, so an arrow key would always begin at its first item: it goes on from where the direction is.
bool EditVectorDialog::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pWatched == m_pPresets && pEvent->type() == QEvent::KeyPress)
    {
        const auto* pKey = static_cast<const QKeyEvent*>(pEvent);
        const int nKey = pKey->key();
        const bool bNext = nKey == Qt::Key_Down || nKey == Qt::Key_PageDown;
        const bool bStep = bNext || nKey == Qt::Key_Up || nKey == Qt::Key_PageUp;
        if (bStep && !(pKey->modifiers() & ~Qt::KeypadModifier)) // with Alt it opens the list
        {
            m_Dialog.OnStepPreset(bNext);
            return true;
        }
    }
    return TemplateDialog::eventFilter(pWatched, pEvent);
}
