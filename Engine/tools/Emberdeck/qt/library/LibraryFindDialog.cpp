#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

#include "app/resources/DialogTemplates.h"
#include "qt/library/LibraryTreeView.h"
#include "qt/toolkit/QtText.h"
#include "qt/toolkit/TemplateDialog.h"

namespace
{
// The modeless find dialog of one tree.
class FindDialog : public TemplateDialog, public IFindDialog
{
public:
    FindDialog(CMultiSelectTreeCtrl& control, QWidget* pParent)
        : TemplateDialog(184, pParent),
          m_Control(control)
    {
        auto* pText = m_Controls.Get<QLineEdit>(1201);
        auto* pFind = m_Controls.Get<QPushButton>(c_nControlOk);
        m_Controls.Get<QRadioButton>(1205)->setChecked(true);
        pFind->setEnabled(false);
        disconnect(pFind, nullptr, this, nullptr);
        connect(pText, &QLineEdit::textChanged, pFind,
                [pFind](const QString& s) { pFind->setEnabled(!s.isEmpty()); });
        connect(pFind, &QPushButton::clicked, this, [this] { FindNext(); });
        connect(this, &QDialog::finished, this,
                [this]
                {
                    // Told once this call is over: the control destroys the dialog then.
                    CMultiSelectTreeCtrl& owner = m_Control;
                    QTimer::singleShot(0, parent(), [&owner] { owner.OnFindDialogClosed(); });
                });
        pText->setFocus();
        show();
    }
    void Raise() override
    {
        show();
        raise();
        activateWindow();
    }
    void SetVisible(bool bVisible) override { setVisible(bVisible); }

private:
    void FindNext()
    {
        m_Control.OnFindNext(CFindOptions{QtText::FromQt(m_Controls.Get<QLineEdit>(1201)->text()),
                                          m_Controls.Get<QCheckBox>(1203)->isChecked(),
                                          m_Controls.Get<QCheckBox>(1202)->isChecked(),
                                          m_Controls.Get<QRadioButton>(1205)->isChecked()});
    }

    CMultiSelectTreeCtrl& m_Control;
};
} // namespace

std::unique_ptr<IFindDialog> LibraryTreeView::OpenFindDialog()
{
    return std::make_unique<FindDialog>(m_pPanel->m_Tree, this);
}
