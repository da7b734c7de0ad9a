#pragma once

#include <map>

#include <QDialog>

#include "app/resources/DialogTemplates.h"

class QLabel;

// Builds the controls of a template as widgets, places them by dialog units of the font, and finds them by
// id, the names of app/resources/DialogIds.h. A dialog's own file only wires what they do. Trees, tabs, views and
// placeholders get no widget: whoever shows one makes it, and asks PlaceOf where.
//
// The first label before a control is its accessible name and its shortcut. The order of the template is that of the
// Tab key.
class CTemplateControls
{
public:
    // The widgets become children of pParent, which owns them, and are placed at once, by its font. A label may become
    // larger than its place, so that no text is cut. The template outlives this.
    CTemplateControls(QWidget* pParent, const CDialogTemplate& dialog);

    QWidget* Find(int32_t nID) const; // null for an id that the template doesn't have
    // The same as the widget that the template's kind of control makes; null also for another class.
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

// A modal dialog of a template. OK accepts, Cancel and Esc reject. Its caption is the template's, its size too; one whose
// controls have anchors (DialogSizing.cpp) can be made larger. Size and place are kept between runs.
class TemplateDialog : public QDialog
{
    Q_OBJECT

public:
    TemplateDialog(int32_t nTemplate, QWidget* pParent); // an EDialog

    const CTemplateControls& Controls() const { return m_Controls; }

protected:
    CTemplateControls m_Controls;
};
