#include "qt/properties/FunctionCurveDialog.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

#include "app/resources/Accelerators.h"
#include "app/resources/DialogIcons.h"
#include "qt/properties/DialogUndo.h"
#include "qt/toolkit/KeyCodes.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

namespace
{

constexpr int32_t c_Buttons[] = {eCurve_Time, eCurve_Copy,  eCurve_Paste, eCurve_YMin,
                                 eCurve_YMax, eCurve_Start, eCurve_End,   eCurve_BestFit};
constexpr int32_t c_Others[] = {eCurve_YMinLabel, eCurve_YMaxLabel, eCurve_AxisLabel, eCurve_Axis};

// 0: none of the dialog's.
uint32_t AcceleratorOf(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const uint16_t nKey = VirtualKey(event.key());
    for (const CAccelerator& accelerator : c_CurveAccelerators)
    {
        Qt::KeyboardModifiers wanted = Qt::NoModifier;
        wanted.setFlag(Qt::ControlModifier, accelerator.m_bCtrl);
        wanted.setFlag(Qt::ShiftModifier, accelerator.m_bShift);
        wanted.setFlag(Qt::AltModifier, accelerator.m_bAlt);
        if (nKey && accelerator.m_nKey == nKey && modifiers == wanted)
            return uint32_t(accelerator.m_nID);
    }
    return 0;
}

} // namespace

CurveArea::CurveArea(CFunctionCurveDlg& dialog, QWidget& parent) : DragView(parent), m_Dialog(dialog)
{
    setAccessibleName(QStringLiteral("Curve"));
    setFocusPolicy(Qt::TabFocus); // a press leaves the focus where it is
}

QString CurveArea::AccessibleText() const
{
    const auto text = [this](uint32_t nID) { return QtText::ToQt(m_Dialog.GetControl(nID).m_sText); };
    const QString sRange =
        tr("time %1 to %2, value %3 to %4")
            .arg(text(eCurve_Start), text(eCurve_End), text(eCurve_YMin), text(eCurve_YMax));
    if (!m_Dialog.GetControl(eCurve_Time).m_bEnabled)
        return sRange;
    return tr("%1; selected key at time %2").arg(sRange, text(eCurve_Time));
}

void CurveArea::paintEvent(QPaintEvent* pEvent)
{
    QPainter painter(this);
    QtSurface surface(painter, pEvent->rect(), palette());
    m_Dialog.Paint(&surface);
    if (hasFocus())
        DrawFrame(painter, rect(), palette().color(QPalette::Highlight));
}

void CurveArea::keyPressEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() == Qt::Key_Left || pEvent->key() == Qt::Key_Right)
        m_Dialog.OnStepKey(pEvent->key() == Qt::Key_Right, pEvent->modifiers() & Qt::ShiftModifier);
    else if (pEvent->key() == Qt::Key_Insert)
        m_Dialog.OnInsertKey();
    else
        QWidget::keyPressEvent(pEvent);
}

FunctionCurveDialog::FunctionCurveDialog(CFunctionCurveDlg& dialog, QWidget* pParent)
    : TemplateDialog(eDlg_FunctionCurve, pParent),
      m_Dialog(dialog),
      m_pArea(new CurveArea(dialog, *this)),
      m_pAxes(m_Controls.Get<QComboBox>(eCurve_Axis))
{
    KeepDisabledReadable(*this);
    const QRect rcArea = m_Controls.PlaceOf(eCurve_Area);
    m_pArea->setGeometry(rcArea);
    m_Dialog.SetPaintOptions(CCurvePaintOptions{.m_bContrastPens = true, .m_bScale = true});
    const FontMeasure font(*this);
    m_Dialog.OnInitDialog(FromQt(rcArea), FromQt(m_Controls.PlaceOf(eCurve_RowLabel)),
                          FromQt(m_Controls.PlaceOf(eCurve_RowControls)), &font);
    m_pRow = std::make_unique<PropertyRow>(m_Dialog.GetRow(), this);
    MakeHint();
    for (const std::string& sAxis : m_Dialog.GetAxes())
        m_pAxes->addItem(QtText::ToQt(sAxis));
    connect(m_pAxes, &QComboBox::activated, this, [this](int nItem) { m_Dialog.OnAxisChange(nItem); });
    WireButtons();
    m_Dialog.SetView(this);
    OnButtonsChanged();
    SetTabOrder();
    m_Controls.Find(c_nControlOk)->setFocus();
    new DialogUndo(*this, dialog);
    // Before the box that has the focus, which has a use of its own for some of the keys.
    qApp->installEventFilter(this);
}

FunctionCurveDialog::~FunctionCurveDialog()
{
    qApp->removeEventFilter(this);
    m_Dialog.SetView(nullptr);
}

void FunctionCurveDialog::WireButtons()
{
    for (int32_t nID : c_Buttons)
        connect(m_Controls.Get<QPushButton>(nID), &QPushButton::clicked, this,
                [this, nID] { m_Dialog.OnCommand(uint32_t(nID)); });
    m_Controls.Get<QPushButton>(eCurve_Copy)->setIcon(ArtIcon(c_CopyIcon));
    m_Controls.Get<QPushButton>(eCurve_Paste)->setIcon(ArtIcon(c_PasteIcon));
    for (QPushButton* pButton : findChildren<QPushButton*>())
        pButton->setAutoDefault(true); // Enter presses the one that has the focus
}

// The curve and the row where they stand, among the template's own controls.
void FunctionCurveDialog::SetTabOrder()
{
    std::vector<QWidget*> order = {m_pArea};
    const auto add = [&](std::initializer_list<int32_t> ids)
    {
        for (int32_t nID : ids)
            order.push_back(m_Controls.Find(nID));
    };
    add({eCurve_Time, eCurve_Axis, eCurve_YMin, eCurve_YMax, eCurve_Start, eCurve_End});
    order.insert(order.end(), m_pRow->Focusable().begin(), m_pRow->Focusable().end());
    add({eCurve_Copy, eCurve_Paste, eCurve_BestFit, c_nControlOk, c_nControlCancel});
    for (size_t i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
}

void FunctionCurveDialog::MakeHint()
{
    m_pHint = new QLabel(
        m_Dialog.IsReadOnly()
            ? QStringLiteral("This curve belongs to the parent prefab. It can be looked at, but not changed.")
            : QStringLiteral("Right-click to add a key. Drag keys to move them, with Shift in value only."),
        this);
    m_pHint->setTextFormat(Qt::PlainText);
    m_pHint->setForegroundRole(QPalette::PlaceholderText);
    const QRect rcLabel = m_Controls.PlaceOf(eCurve_RowLabel);
    m_pHint->setGeometry(rcLabel.united(m_Controls.PlaceOf(eCurve_RowControls)));
}

void FunctionCurveDialog::accept()
{
    if (m_Dialog.OnOK())
        TemplateDialog::accept();
}

void FunctionCurveDialog::OnButtonsChanged()
{
    for (int32_t nID : c_Buttons)
    {
        const CCurveControlState state = m_Dialog.GetControl(uint32_t(nID));
        auto* pButton = m_Controls.Get<QPushButton>(nID);
        if (!state.m_sText.empty())
            pButton->setText(QtText::Plain(QtText::ToQt(state.m_sText)));
        pButton->setEnabled(state.m_bEnabled);
        pButton->setVisible(state.m_bVisible);
    }
    for (int32_t nID : c_Others)
        if (QWidget* pWidget = m_Controls.Find(nID))
            pWidget->setVisible(m_Dialog.GetControl(uint32_t(nID)).m_bVisible);
    const QSignalBlocker blocker(m_pAxes);
    m_pAxes->setCurrentIndex(m_pAxes->count() > 0 ? m_Dialog.GetView().m_nAxis : -1);
    const CControlDesc* pLabel = m_Dialog.GetRow().GetControl(0);
    m_pHint->setVisible(!pLabel || !pLabel->m_bVisible);
    AccessibleViewChanged(m_pArea);
}

void FunctionCurveDialog::OnRowHidden()
{
    if (!focusWidget())
        m_Controls.Find(c_nControlOk)->setFocus(Qt::OtherFocusReason);
}

bool FunctionCurveDialog::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() != QEvent::KeyPress && pEvent->type() != QEvent::ShortcutOverride)
        return false;
    const auto* pWidget = qobject_cast<QWidget*>(pWatched);
    if (!pWidget || pWidget->window() != this)
        return false;
    const uint32_t nCommand = AcceleratorOf(*static_cast<QKeyEvent*>(pEvent));
    if (nCommand == 0)
        return false;
    if (pEvent->type() == QEvent::KeyPress)
        m_Dialog.OnCommand(nCommand);
    pEvent->accept();
    return true;
}
