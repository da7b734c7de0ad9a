#include "qt/toolkit/TemplateDialog.h"

#include <utility>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSlider>
#include <QTabBar>

#include "qt/toolkit/DialogSizing.h"
#include "qt/toolkit/ProgramIcon.h"
#include "qt/toolkit/PropertyControls.h"

namespace
{
// Template texts mark the shortcut letter as the toolkit does.
QString Label(const CTemplateControl& control)
{
    return QString::fromUtf8(control.m_pszText);
}

QWidget* MakeEdit(QWidget* pParent, const CTemplateControl& control)
{
    if (control.m_nStyle & eTplMultiLine)
    {
        auto* pEdit = new QPlainTextEdit(pParent);
        pEdit->setTabChangesFocus(true);
        return pEdit;
    }
    auto* pEdit = new QLineEdit(pParent);
    if (control.m_nStyle & eTplNumbersOnly)
        pEdit->setValidator(
            new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), pEdit));
    return pEdit;
}

QWidget* MakeSlider(QWidget* pParent, const CTemplateControl& control)
{
    auto* pSlider = new QSlider(Qt::Horizontal, pParent);
    if (control.m_nStyle & eTplTicks)
        pSlider->setTickPosition(QSlider::TicksBelow);
    return pSlider;
}

// Where nothing is selected yet the first key selects where the cursor is, instead of going on from there.
class ListBox : public QListWidget
{
public:
    using QListWidget::QListWidget;

protected:
    void keyPressEvent(QKeyEvent* pEvent) override
    {
        const bool bFirst =
            pEvent->key() == Qt::Key_Down || pEvent->key() == Qt::Key_Up || pEvent->key() == Qt::Key_Home;
        if (bFirst && currentItem() && selectedItems().isEmpty())
            currentItem()->setSelected(true);
        else
            QListWidget::keyPressEvent(pEvent);
    }
};

QWidget* MakeList(QWidget* pParent, const CTemplateControl& control)
{
    auto* pList = new ListBox(pParent);
    if (control.m_nStyle & eTplMultiSelect)
        pList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    return pList;
}
} // namespace

QRect CTemplateControls::ToPixels(const QWidget& widget, int nX, int nY, int nWidth, int nHeight)
{
    const QFontMetricsF metrics(widget.font());
    const QString sAlphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    // A font that runs low still leaves a line its room.
    const double fX = metrics.horizontalAdvance(sAlphabet) / sAlphabet.size() / 4.0;
    const double fY = std::max(metrics.height() / 8.0, 1.75);
    return QRect(QPoint(qRound(nX * fX), qRound(nY * fY)), QSize(qRound(nWidth * fX), qRound(nHeight * fY)));
}

CTemplateControls::CTemplateControls(QWidget* pParent, const CDialogTemplate& dialog)
    : m_Template(dialog),
      m_pParent(pParent)
{
    QWidget* pPrevious = nullptr;
    QLabel* pLastLabel = nullptr;
    for (const CTemplateControl& control : dialog)
    {
        QWidget* pWidget = Make(pParent, control);
        if (!pWidget)
        {
            if (pLastLabel)
                m_Headings[control.m_nID] = std::exchange(pLastLabel, nullptr);
            continue;
        }
        QRect rc = ToPixels(*pParent, control.m_nX, control.m_nY, control.m_nWidth, control.m_nHeight);
        if (control.m_eKind == ETemplateControl::eDropDownList)
            rc.setHeight(pWidget->sizeHint().height());
        if (control.m_eKind == ETemplateControl::eLabel)
        {
            // A label is never cut: its place in the template is the least that it gets.
            rc.setSize(
                rc.size().expandedTo(control.m_nStyle & eTplMultiLine ? rc.size() : pWidget->sizeHint()));
            pLastLabel = static_cast<QLabel*>(pWidget);
        }
        else if (pLastLabel && control.m_eKind != ETemplateControl::eGroupBox)
        {
            pLastLabel->setBuddy(pWidget);
            pWidget->setAccessibleName(
                QString(pLastLabel->text()).remove(QLatin1Char('&')).remove(QLatin1Char(':')).trimmed());
            pLastLabel = nullptr;
        }
        pWidget->setGeometry(rc);
        if (*control.m_pszToolTip)
            pWidget->setToolTip(PlainToolTip(QString::fromUtf8(control.m_pszToolTip)));
        if (pWidget->focusPolicy() != Qt::NoFocus)
        {
            if (pPrevious)
                QWidget::setTabOrder(pPrevious, pWidget);
            pPrevious = pWidget;
        }
        if (control.m_nID != c_nNoControlID)
            m_Widgets[control.m_nID] = pWidget;
    }
}

QWidget* CTemplateControls::Make(QWidget* pParent, const CTemplateControl& control) const
{
    switch (control.m_eKind)
    {
    case ETemplateControl::eLabel:
    {
        auto* pLabel = new QLabel(Label(control), pParent);
        pLabel->setWordWrap((control.m_nStyle & eTplMultiLine) != 0);
        pLabel->setTextFormat(Qt::PlainText);
        if (control.m_nStyle & eTplMultiLine)
            pLabel->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        return pLabel;
    }
    case ETemplateControl::eGroupBox:
        return new QGroupBox(Label(control), pParent);
    case ETemplateControl::eEdit:
        return MakeEdit(pParent, control);
    case ETemplateControl::eButton:
    {
        auto* pButton =
            new QPushButton(control.m_nStyle & eTplIconOnly ? QString() : Label(control), pParent);
        pButton->setAutoDefault(false);
        if (control.m_nStyle & eTplIconOnly)
            pButton->setAccessibleName(Label(control));
        return pButton;
    }
    case ETemplateControl::eRadio:
        return new QRadioButton(Label(control), pParent);
    case ETemplateControl::eCheckBox:
        return new QCheckBox(Label(control), pParent);
    case ETemplateControl::eListBox:
        return MakeList(pParent, control);
    case ETemplateControl::eDropDownList:
        return new QComboBox(pParent);
    case ETemplateControl::eSlider:
        return MakeSlider(pParent, control);
    case ETemplateControl::eScrollBar:
        return new ListScrollBar(pParent);
    case ETemplateControl::eIcon:
    {
        auto* pIcon = new QLabel(pParent);
        pIcon->setPixmap(ProgramIcon().pixmap(32, 32));
        return pIcon;
    }
    default:
        return nullptr; // placed by whoever shows it
    }
}

QWidget* CTemplateControls::Find(int32_t nID) const
{
    const auto it = m_Widgets.find(nID);
    return it == m_Widgets.end() ? nullptr : it->second;
}

QLabel* CTemplateControls::HeadingOf(int32_t nID) const
{
    const auto it = m_Headings.find(nID);
    return it == m_Headings.end() ? nullptr : it->second;
}

QRect CTemplateControls::PlaceOf(int32_t nID) const
{
    const CTemplateControl* pControl = m_Template.Find(nID);
    return pControl
               ? ToPixels(*m_pParent, pControl->m_nX, pControl->m_nY, pControl->m_nWidth, pControl->m_nHeight)
               : QRect();
}

QSize CTemplateControls::GetSize() const
{
    return ToPixels(*m_pParent, 0, 0, m_Template.m_nWidth, m_Template.m_nHeight).size();
}

TemplateDialog::TemplateDialog(int32_t nTemplate, QWidget* pParent)
    : QDialog(pParent),
      m_Controls(this, *FindDialogTemplate(nTemplate))
{
    setWindowTitle(QString::fromUtf8(FindDialogTemplate(nTemplate)->m_pszCaption));
    setObjectName(QStringLiteral("template%1").arg(nTemplate)); // its place is kept by this name
    setFixedSize(m_Controls.GetSize());
    MakeSizable(*this, nTemplate);
    if (auto* pOk = m_Controls.Get<QPushButton>(c_nControlOk))
    {
        pOk->setDefault(true);
        connect(pOk, &QPushButton::clicked, this, &QDialog::accept);
    }
    if (auto* pCancel = m_Controls.Get<QPushButton>(c_nControlCancel))
        connect(pCancel, &QPushButton::clicked, this, &QDialog::reject);
}
