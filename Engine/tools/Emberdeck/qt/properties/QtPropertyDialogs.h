#pragma once

#include <QPointer>

#include "properties/EditorDialogs.h"

class QDialog;
class QWidget;

// Shows the property editors as dialogs, each on top of the one that opened it.
class QtPropertyDialogs : public IEditorDialogs
{
public:
    // The owner stands behind the first dialog. Context and profile outlive this one.
    QtPropertyDialogs(CEditContext& context, IProfile& profile, QWidget* pOwner);

    // Edits a key or prefab of the library, which is changed on OK. True: accepted.
    bool EditProperties(CEffectPropertySet& set);

    bool RunProperties(CFXPropertiesDlg& dialog) override;
    bool RunCurve(CFunctionCurveDlg& dialog) override;
    bool RunVector(CEditVectorDlg& dialog) override;
    bool RunColor(CKRColorDialog& dialog) override;

private:
    template <class TWindow, class TDialog>
    bool Run(TDialog& dialog);

    CPropertyServices m_Services;
    QPointer<QWidget> m_pOwner; // of the next dialog
};
