#include "qt/properties/ColorDialog.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>

#include "app/resources/ToolbarIcons.h"
#include "qt/properties/ColorViews.h"
#include "qt/properties/DialogUndo.h"
#include "qt/toolkit/AccessibleViews.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

namespace
{

constexpr uint32_t c_NumberBoxes[] = {eColor_HueBox,   eColor_SatBox,  eColor_LumBox,  eColor_RedBox,
                                      eColor_GreenBox, eColor_BlueBox, eColor_AlphaBox};

} // namespace

ColorDialog::ColorDialog(CKRColorDialog& dialog, QWidget* pParent)
    : TemplateDialog(eDlg_Color, pParent),
      m_Dialog(dialog),
      m_pBasic(new BasicColorsView(dialog, this)),
      m_pSquare(new ColorSquareView(dialog, this)),
      m_pBar(new LuminanceView(dialog, this)),
      m_pCurrent(new CurrentColorView(dialog, this)),
      m_pPalette(new PaletteView(dialog, this)),
      m_pDescription(m_Controls.Get<QPlainTextEdit>(eColor_DescriptionBox))
{
    PlaceViews();
    m_Dialog.OnInitDialog(m_pPalette->width(), m_pPalette->height());
    WireBoxes();
    WireButtons();
    SetTabOrder();
    m_Dialog.SetView(this);
    m_pBasic->setFocus();
    new DialogUndo(*this, dialog);
}

ColorDialog::~ColorDialog()
{
    m_Dialog.SetView(nullptr);
}

void ColorDialog::PlaceViews()
{
    m_pBasic->setGeometry(m_Controls.PlaceOf(eColor_Basic));
    m_pSquare->setGeometry(m_Controls.PlaceOf(eColor_Square));
    m_pCurrent->setGeometry(m_Controls.PlaceOf(eColor_Current));
    m_pBar->setGeometry(m_Controls.PlaceOf(eColor_Luminance)
                            .adjusted(0, -LuminanceView::c_nMarkHalf, LuminanceView::c_nMarkWidth,
                                      LuminanceView::c_nMarkHalf));

    // The cells have their own size, whatever the font.
    const CRect rcLast = CCustomColorPalette::GetCellRect(CCustomColorPalette::c_nNumCells - 1);
    QRect rcPalette = m_Controls.PlaceOf(eColor_Palette);
    rcPalette.setSize(rcPalette.size().expandedTo(QSize(rcLast.right + 4, rcLast.bottom + 4)));
    m_pPalette->setGeometry(rcPalette);

    // It stands below the cells, as wide as they are.
    constexpr int c_nDescriptionLeft = 9;
    constexpr int c_nDescriptionWidth = 195;
    m_pDescription->setGeometry(c_nDescriptionLeft, m_pDescription->y(), c_nDescriptionWidth,
                                m_pDescription->height());

    for (QWidget* pView : {static_cast<QWidget*>(m_pBasic), static_cast<QWidget*>(m_pPalette)})
        if (QLabel* pHeading = m_Controls.HeadingOf(pView == m_pBasic ? eColor_Basic : eColor_Palette))
            pHeading->setBuddy(pView);
}

void ColorDialog::WireBoxes()
{
    for (uint32_t nID : c_NumberBoxes)
    {
        auto* pBox = m_Controls.Get<QLineEdit>(int32_t(nID));
        pBox->setMaxLength(3);
        pBox->installEventFilter(this);
        connect(pBox, &QLineEdit::textEdited, this,
                [this, nID](const QString& sText) { m_Dialog.OnText(nID, QtText::FromQt(sText)); });
        OnTextChanged(nID);
    }
    // It looks like a tool tip: it says something about the cell above.
    QPalette colors = m_pDescription->palette();
    colors.setColor(QPalette::Base, palette().color(QPalette::ToolTipBase));
    colors.setColor(QPalette::Text, palette().color(QPalette::ToolTipText));
    m_pDescription->setPalette(colors);
    m_pDescription->setAccessibleName(QStringLiteral("Description"));
    m_pDescription->installEventFilter(this);
    connect(m_pDescription, &QPlainTextEdit::textChanged, this,
            [this]
            { m_Dialog.OnText(eColor_DescriptionBox, QtText::FromQt(m_pDescription->toPlainText())); });
    OnTextChanged(eColor_DescriptionBox);
}

void ColorDialog::WireButtons()
{
    m_Controls.Get<QPushButton>(eColor_LoadButton)->setIcon(ArtIcon(c_FolderOpenIcon));
    m_Controls.Get<QPushButton>(eColor_SaveButton)->setIcon(ArtIcon(c_SaveIcon));
    for (uint32_t nID :
         {uint32_t(eColor_LoadButton), uint32_t(eColor_SaveButton), uint32_t(eColor_AddButton)})
        connect(m_Controls.Get<QPushButton>(int32_t(nID)), &QPushButton::clicked, this,
                [this, nID] { m_Dialog.OnCommand(nID); });
    for (QPushButton* pButton : findChildren<QPushButton*>())
        pButton->setAutoDefault(true); // Enter presses the one that has the focus
}

void ColorDialog::SetTabOrder()
{
    QWidget* pLast = nullptr;
    const auto add = [&pLast](QWidget* pWidget)
    {
        if (pLast)
            QWidget::setTabOrder(pLast, pWidget);
        pLast = pWidget;
    };
    add(m_pBasic);
    add(m_pPalette);
    add(m_pDescription);
    for (uint32_t nID : c_NumberBoxes)
        add(m_Controls.Find(int32_t(nID)));
    for (int32_t nID : {int32_t(eColor_AddButton), c_nControlOk, c_nControlCancel, int32_t(eColor_SaveButton),
                        int32_t(eColor_LoadButton)})
        add(m_Controls.Find(nID));
}

void ColorDialog::accept()
{
    if (m_Dialog.OnOK())
        TemplateDialog::accept();
}

// Centred on the dialog that it was opened from, once its own size with the frame is known.
void ColorDialog::showEvent(QShowEvent* pEvent)
{
    TemplateDialog::showEvent(pEvent);
    const QWidget* pOwner = parentWidget() ? parentWidget()->window() : nullptr;
    if (!pOwner || !pOwner->screen())
        return;
    const QSize size = frameGeometry().size();
    move(ToQt(CentreOnOwner(FromQt(pOwner->frameGeometry()), FromQt(pOwner->screen()->availableGeometry()),
                            size.width(), size.height())));
}

bool ColorDialog::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::FocusOut)
    {
        for (uint32_t nID : {uint32_t(eColor_DescriptionBox), uint32_t(eColor_AlphaBox)})
            if (pWatched == m_Controls.Find(int32_t(nID)))
                m_Dialog.OnFocusLost(nID);
    }
    else if (pEvent->type() == QEvent::KeyPress && pWatched == m_pDescription)
    {
        // A description is one line: Enter is for the dialog.
        const int nKey = static_cast<QKeyEvent*>(pEvent)->key();
        if (nKey == Qt::Key_Return || nKey == Qt::Key_Enter)
        {
            m_Controls.Get<QPushButton>(c_nControlOk)->click();
            return true;
        }
    }
    return TemplateDialog::eventFilter(pWatched, pEvent);
}

void ColorDialog::OnTextChanged(uint32_t nID)
{
    QWidget* pWidget = m_Controls.Find(int32_t(nID));
    const QSignalBlocker blocker(pWidget);
    const QString sText = QtText::ToQt(m_Dialog.GetText(nID));
    if (pWidget == m_pDescription)
    {
        if (m_pDescription->toPlainText() != sText)
            m_pDescription->setPlainText(sText);
    }
    else if (auto* pBox = qobject_cast<QLineEdit*>(pWidget))
    {
        pBox->setText(sText);
    }
}

void ColorDialog::RepaintPalette()
{
    m_pPalette->update();
    AccessibleViewChanged(m_pPalette);
}

void ColorDialog::RepaintChooser()
{
    for (QWidget* pView : {m_pBasic, m_pSquare, m_pBar, m_pCurrent})
    {
        pView->update();
        AccessibleViewChanged(pView);
    }
}

void ColorDialog::FocusOnPalette()
{
    m_pPalette->setFocus(Qt::MouseFocusReason);
}
