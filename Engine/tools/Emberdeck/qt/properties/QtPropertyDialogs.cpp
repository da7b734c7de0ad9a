#include "qt/properties/QtPropertyDialogs.h"

#include "qt/properties/ColorDialog.h"
#include "qt/properties/EditVectorDialog.h"
#include "qt/properties/FunctionCurveDialog.h"
#include "qt/properties/FxPropertiesDialog.h"

QtPropertyDialogs::QtPropertyDialogs(CEditContext& context, IProfile& profile, QWidget* pOwner)
    : m_Services{context, profile, *this},
      m_pOwner(pOwner)
{
}

bool QtPropertyDialogs::EditProperties(CEffectPropertySet& set)
{
    return ::EditProperties(m_Services, set);
}

template <class TWindow, class TDialog>
bool QtPropertyDialogs::Run(TDialog& dialog)
{
    QWidget* pOwner = m_pOwner;
    TWindow window(dialog, pOwner);
    m_pOwner = &window;
    const bool bAccepted = window.exec() == QDialog::Accepted;
    m_pOwner = pOwner;
    return bAccepted;
}

bool QtPropertyDialogs::RunProperties(CFXPropertiesDlg& dialog)
{
    return Run<FxPropertiesDialog>(dialog);
}

bool QtPropertyDialogs::RunCurve(CFunctionCurveDlg& dialog)
{
    return Run<FunctionCurveDialog>(dialog);
}

bool QtPropertyDialogs::RunVector(CEditVectorDlg& dialog)
{
    return Run<EditVectorDialog>(dialog);
}

bool QtPropertyDialogs::RunColor(CKRColorDialog& dialog)
{
    return Run<ColorDialog>(dialog);
}
