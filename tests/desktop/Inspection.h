#pragma once

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QGroupBox>
#include <QLabel>
#include <QScrollBar>

#include <map>
#include <set>

#include "desktop/LibraryBench.h"
#include "qt/frame/ManualWindow.h"

// Looks at the windows as those do who can't see the screen, or don't use the mouse.
namespace Inspection
{

// What the program paints itself, where the toolkit knows nothing of what is shown.
inline bool IsPainted(const QWidget& widget)
{
    for (const char* pszClass :
         {"TrackWidget", "CurveArea", "VectorView", "ColorView", "SpinArrows", "SizeBarWidget"})
        if (widget.inherits(pszClass))
            return true;
    return widget.objectName() == QLatin1String("ruler");
}

// The inner parts of the toolkit's own controls, which speak for them.
inline bool IsInner(const QWidget& widget)
{
    const QString sName = widget.objectName();
    if (sName.startsWith(QLatin1String("qt_")) && sName != QLatin1String("qt_toolbar_ext_button"))
        return true;
    const auto* pArea = qobject_cast<const QAbstractScrollArea*>(widget.parentWidget());
    return (pArea && pArea->viewport() == &widget) ||
           (qobject_cast<const QScrollBar*>(&widget) &&
            widget.parentWidget()->objectName().startsWith("qt_scrollarea"));
}

inline bool IsForAPerson(const QWidget& widget, QAccessible::Role eRole)
{
    switch (eRole)
    {
    case QAccessible::Button:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::List:
    case QAccessible::Tree:
    case QAccessible::Table:
    case QAccessible::Slider:
    case QAccessible::ScrollBar:
    case QAccessible::SpinBox:
    case QAccessible::PageTabList:
    case QAccessible::ButtonMenu:
        return true;
    default:
        return (widget.focusPolicy() & Qt::TabFocus) && !qobject_cast<const QDialog*>(&widget);
    }
}

inline std::string Describe(const QWidget& widget, QAccessibleInterface& face)
{
    return std::string(widget.metaObject()->className()) + " \"" + widget.objectName().toStdString() +
           "\" at " + std::to_string(widget.mapTo(widget.window(), QPoint()).x()) + "," +
           std::to_string(widget.mapTo(widget.window(), QPoint()).y()) + ", role " +
           std::to_string(int(face.role()));
}

inline void ExpectNames(QWidget& window, const char* pszWhere)
{
    std::set<std::string> names; // of each kind of control
    for (QWidget* pWidget : window.findChildren<QWidget*>())
    {
        if (!pWidget->isVisible() || pWidget->window() != &window || IsInner(*pWidget))
            continue;
        QAccessibleInterface* pFace = QAccessible::queryAccessibleInterface(pWidget);
        ASSERT_TRUE(pFace);
        const bool bPainted = IsPainted(*pWidget);
        if (!bPainted && !IsForAPerson(*pWidget, pFace->role()))
            continue;
        const std::string sName = pFace->text(QAccessible::Name).trimmed().toStdString();
        EXPECT_NE("", sName) << pszWhere << ": no name: " << Describe(*pWidget, *pFace);
        EXPECT_TRUE(names.insert(std::string(pWidget->metaObject()->className()) + ":" + sName).second)
            << pszWhere << ": twice " << sName << ": " << Describe(*pWidget, *pFace);
        EXPECT_TRUE(!bPainted || pFace->role() != QAccessible::Client)
            << pszWhere << ": no role: " << Describe(*pWidget, *pFace);
    }
}

inline QString TextOf(const QWidget& widget)
{
    if (const auto* pButton = qobject_cast<const QAbstractButton*>(&widget))
        return pButton->text();
    if (const auto* pGroup = qobject_cast<const QGroupBox*>(&widget))
        return pGroup->title();
    const auto* pLabel = qobject_cast<const QLabel*>(&widget);
    return pLabel && pLabel->buddy() ? pLabel->text() : QString();
}

inline void ExpectOneUseOfEachLetter(QWidget& window, const char* pszWhere)
{
    std::map<QString, QString> used;
    for (QWidget* pWidget : window.findChildren<QWidget*>())
    {
        const QString sText = TextOf(*pWidget);
        const QString sKey = QKeySequence::mnemonic(sText).toString();
        // The two of the colour dialog are its template's: the key goes from the one to the other.
        if (sKey.isEmpty() || !pWidget->isVisible() || sText == QLatin1String("&Add to Custom Colors") ||
            sText == QLatin1String("Hu&e:"))
            continue;
        EXPECT_TRUE(used.emplace(sKey, sText).second)
            << pszWhere << ": " << sKey.toStdString() << " of \"" << sText.toStdString() << "\" and \""
            << used[sKey].toStdString() << "\"";
    }
}

inline void ExpectDefaultButton(QDialog& dialog, const char* pszWhere)
{
    int nDefaults = 0;
    for (const QPushButton* pButton : dialog.findChildren<QPushButton*>())
        nDefaults += pButton->isDefault() ? 1 : 0;
    EXPECT_EQ(1, nDefaults) << pszWhere << ": buttons for Enter";
}

inline void Inspect(QWidget& window, const char* pszWhere)
{
    ExpectNames(window, pszWhere);
    ExpectOneUseOfEachLetter(window, pszWhere);
    auto* pDialog = qobject_cast<QDialog*>(&window);
    if (pDialog && !qobject_cast<ManualWindow*>(pDialog))
    {
        EXPECT_FALSE(pDialog->windowTitle().isEmpty()) << pszWhere;
        ExpectDefaultButton(*pDialog, pszWhere);
    }
}

// Opens something modal, looks at it, does more in it and leaves it by Esc.
inline void InspectNext(const char* pszWhere, const std::function<void()>& open,
                        const std::function<void(QWidget&)>& more = {})
{
    Desktop::WhileOpen(
        [pszWhere, more](QWidget* pOpen)
        {
            Inspect(*pOpen, pszWhere);
            if (more)
                more(*pOpen);
            Desktop::Key("Escape");
        });
    open();
    Desktop::Settle();
}

inline void TabTo(const QWidget* pWanted)
{
    for (int i = 0; i < 60 && QApplication::focusWidget() != pWanted; ++i)
        Desktop::Key("Tab");
    EXPECT_EQ(pWanted, QApplication::focusWidget());
}

// The names of what Tab goes to, from that one on.
inline std::string TabStops(const QWidget& window, const char* pszFirst)
{
    std::string sStops;
    const QWidget* pFirst = nullptr;
    for (QWidget* p : window.findChildren<QWidget*>())
        if (p->accessibleName() == QLatin1String(pszFirst))
            pFirst = p;
    for (QWidget* p = const_cast<QWidget*>(pFirst); p && (sStops.empty() || p != pFirst);
         p = p->nextInFocusChain())
        if ((p->focusPolicy() & Qt::TabFocus) && p->isVisible() && p->isEnabled())
            sStops += (sStops.empty() ? "" : ", ") +
                      QAccessible::queryAccessibleInterface(p)->text(QAccessible::Name).toStdString();
    return sStops;
}

// The type "Sprite" of the tests' plug-in has a property of every kind.
inline void FillLibrary(CLibraryBuilder& library)
{
    library.prefab("Sprite", "Puff").value("Count", 7);
    library.effect("Smoke").key("Sprite", 0, 4000).name("Heir").onPrefab("Puff");
    library.track().key("Sprite", 1000, 9000).name("Free");
}

template <class TWindow>
TWindow* Shown()
{
    for (QWidget* pWidget : QApplication::topLevelWidgets())
        if (auto* pWindow = qobject_cast<TWindow*>(pWidget); pWindow && pWindow->isVisible())
            return pWindow;
    return nullptr;
}

inline std::string StateOf(QWidget* pView)
{
    return QAccessible::queryAccessibleInterface(pView)->text(QAccessible::Description).toStdString();
}

template <class TWidget>
TWidget* Named(QWidget& window, const char* pszName)
{
    for (TWidget* pWidget : window.findChildren<TWidget*>())
        if (pWidget->accessibleName() == QLatin1String(pszName))
            return pWidget;
    ADD_FAILURE() << "no control " << pszName;
    return nullptr;
}

} // namespace Inspection
