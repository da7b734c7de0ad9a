#pragma once

#include <map>

#include <QDialog>

#include "app/resources/DialogTemplates.h"

class QLabel;

// Builds the controls of a template as widgets, places them by dialog units of the font, and finds them by
// id. A dialog's own file only wires what they do.
class CTemplateControls
{
public:
    // The widgets become children of pParent and are placed at once.
    CTemplateControls(QWidget* pParent, const CDialogTemplate& dialog);

    QWidget* Find(int32_t nID) const; // null for an id that the template doesn't have
    template <class TWidget>
    TWidget* Get(int32_t nID) const
    {
        return qobject_cast<TWidget*>(Find(nID));
    }
    QLabel* HeadingOf(int32_t nID) const; // the label before a control that its dialog makes itself; null
    QRect PlaceOf(int32_t nID) const;     // in pixels, also of a control that is never seen
    QSize GetSize() const;                // of the whole dialog, in pixels

    // A rectangle of dialog units in pixels of the widget's font.
    static QRect ToPixels(const QWidget& widget, int nX, int nY, int nWidth, int nHeight);

private:
    QWidget* Make(QWidget* pParent, const CTemplateControl& control) const;

    const CDialogTemplate& m_Template;
    QWidget* m_pParent;
    std::map<int32_t, QWidget*> m_Widgets;
    std::map<int32_t, QLabel*> m_Headings;
};

// A modal dialog of a template. OK accepts, Cancel and Esc reject.
class TemplateDialog : public QDialog
{
    Q_OBJECT

public:
    TemplateDialog(int32_t nTemplate, QWidget* pParent);

    const CTemplateControls& Controls() const { return m_Controls; }

protected:
    CTemplateControls m_Controls;
};
