#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

#include "app/resources/DialogTemplates.h"
#include "qt/library/LibraryTreeView.h"
#include "qt/toolkit/QtPrompts.h"
#include "qt/toolkit/QtText.h"
#include "qt/toolkit/TemplateDialog.h"

namespace
{
// The modeless find dialog of one tree.
class FindDialog : public TemplateDialog, public IFindDialog
{
public:
    FindDialog(CMultiSelectTreeCtrl& control, QWidget* pParent)
        : TemplateDialog(eDlg_Find, pParent),
          m_Control(control)
    {
        auto* pText = m_Controls.Get<QLineEdit>(eFind_Text);
        auto* pFind = m_Controls.Get<QPushButton>(c_nControlOk);
        m_Controls.Get<QRadioButton>(eFind_Down)->setChecked(true);
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
    void AskOver(const std::function<void()>& work) override
    {
        const CBoxOwner owner(*this);
        work();
    }

private:
    void FindNext()
    {
        m_Control.OnFindNext(CFindOptions{QtText::FromQt(m_Controls.Get<QLineEdit>(eFind_Text)->text()),
                                          m_Controls.Get<QCheckBox>(eFind_MatchCase)->isChecked(),
                                          m_Controls.Get<QCheckBox>(eFind_WholeWord)->isChecked(),
                                          m_Controls.Get<QRadioButton>(eFind_Down)->isChecked()});
    }

    CMultiSelectTreeCtrl& m_Control;
};
} // namespace

std::unique_ptr<IFindDialog> LibraryTreeView::OpenFindDialog()
{
    return std::make_unique<FindDialog>(m_pPanel->m_Tree, this);
}
