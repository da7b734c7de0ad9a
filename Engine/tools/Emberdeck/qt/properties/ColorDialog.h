#pragma once

#include <QWidget>

#include "properties/ColorDialog.h"
#include "qt/toolkit/TemplateDialog.h"

class QPlainTextEdit;

// Chooses a colour with alpha, beside a palette of custom colours.
class ColorDialog : public TemplateDialog, private IColorDialogView
{
    Q_OBJECT

public:
    ColorDialog(CKRColorDialog& dialog, QWidget* pParent);
    ~ColorDialog() override;

    void accept() override;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    void showEvent(QShowEvent* pEvent) override;

private:
    void OnTextChanged(uint32_t nID) override;
    void RepaintPalette() override;
    void RepaintChooser() override;
    void FocusOnPalette() override;

    void PlaceViews();
    void WireBoxes();
    void WireButtons();
    void SetTabOrder();

    CKRColorDialog& m_Dialog;
    QWidget* m_pBasic;
    QWidget* m_pSquare;
    QWidget* m_pBar;
    QWidget* m_pCurrent;
    QWidget* m_pPalette;
    QPlainTextEdit* m_pDescription;
};
