#include "qt/toolkit/DialogSizing.h"

#include <QEvent>
#include <QWidget>

#include "app/DialogSizeCtrl.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/TemplateDialog.h"

namespace
{

// What the edges of a control keep their distance from, as DialogSizeCtrl has it.
struct CAnchors
{
    int32_t m_nTemplate;
    int32_t m_nControl;
    int8_t m_nLeft, m_nTop, m_nRight, m_nBottom;
};

constexpr CAnchors c_Anchors[] = {
    // Choose FX and Select FX To Import: the list grows, the buttons stay below its middle.
    {eDlg_ChooseFX, eChooseFX_List, 0, 0, 0, 0},
    {eDlg_ChooseFX, c_nControlOk, 2, 1, 2, 0},
    {eDlg_ChooseFX, c_nControlCancel, 2, 1, 2, 0},
    {eDlg_SelectFXToImport, eSelectFX_List, 0, 0, 0, 0},
    {eDlg_SelectFXToImport, c_nControlOk, 2, 1, 2, 0},
    {eDlg_SelectFXToImport, c_nControlCancel, 2, 1, 2, 0},
    // Find: the text grows, the buttons stay at the right.
    {eDlg_Find, eFind_Text, 0, 0, 0, 1},
    {eDlg_Find, c_nControlOk, 1, 0, 0, 1},
    {eDlg_Find, c_nControlCancel, 1, 0, 0, 1},
};

bool GrowsInHeight(int32_t nTemplate)
{
    for (const CAnchors& anchors : c_Anchors)
        if (anchors.m_nTemplate == nTemplate && anchors.m_nBottom == 0)
            return true;
    return false;
}

// Lives as long as its dialog.
class DialogSizing : public QObject, private IDialogControls
{
public:
    DialogSizing(TemplateDialog& dialog, int32_t nTemplate) : QObject(&dialog), m_Dialog(dialog)
    {
        m_Sizes.Initialize(this);
        for (const CAnchors& anchors : c_Anchors)
            if (anchors.m_nTemplate == nTemplate)
                m_Sizes.AddControl(uint32_t(anchors.m_nControl), anchors.m_nLeft, anchors.m_nTop,
                                   anchors.m_nRight, anchors.m_nBottom);
        dialog.installEventFilter(this);
        const bool bHeight = GrowsInHeight(nTemplate);
        dialog.setMaximumSize(QWIDGETSIZE_MAX, bHeight ? QWIDGETSIZE_MAX : dialog.height());
        dialog.setSizeGripEnabled(bHeight);
    }

protected:
    bool eventFilter(QObject*, QEvent* pEvent) override
    {
        if (pEvent->type() == QEvent::Resize)
            m_Sizes.OnParentSize();
        return false;
    }

private:
    CRect GetClientRect() const override { return FromQt(m_Dialog.rect()); }
    bool GetControlRect(uint32_t nID, CRect& rc) const override
    {
        const QWidget* pWidget = m_Dialog.Controls().Find(int32_t(nID));
        if (pWidget)
            rc = FromQt(pWidget->geometry());
        return pWidget != nullptr;
    }
    void MoveControl(uint32_t nID, const CRect& rc) override
    {
        m_Dialog.Controls().Find(int32_t(nID))->setGeometry(ToQt(rc));
    }

    TemplateDialog& m_Dialog;
    DialogSizeCtrl m_Sizes;
};

} // namespace

void MakeSizable(TemplateDialog& dialog, int32_t nTemplate)
{
    for (const CAnchors& anchors : c_Anchors)
        if (anchors.m_nTemplate == nTemplate)
        {
            new DialogSizing(dialog, nTemplate); // the dialog takes it
            return;
        }
}
