#include "qt/toolkit/AccessibleViews.h"

#include <QAccessibleWidget>
#include <QLineEdit>
#include <QPushButton>

#include "qt/library/LeftDockWidget.h"
#include "qt/properties/ColorViews.h"
#include "qt/properties/EditVectorDialog.h"
#include "qt/properties/FunctionCurveDialog.h"
#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtText.h"

namespace
{

template <class TView>
const TView& As(const QWidget& widget)
{
    return static_cast<const TView&>(widget);
}

// The text of a control in the view's dialog.
template <class TControl>
QString TextOf(const QWidget& view, int32_t nID)
{
    const auto* pDialog = qobject_cast<const TemplateDialog*>(view.window());
    const auto* pControl = pDialog ? pDialog->Controls().Get<TControl>(nID) : nullptr;
    return pControl ? pControl->text() : QString();
}

QString ColorText(CColorRef nColor)
{
    return QObject::tr("red %1, green %2, blue %3")
        .arg(nColor & 0xFF)
        .arg((nColor >> 8) & 0xFF)
        .arg((nColor >> 16) & 0xFF);
}

// Counts, and the key that is worked on, as the bar above the rows has them.
QString TimelineText(const QWidget& widget)
{
    const CKeyInfo& info = const_cast<TrackWidget&>(As<TrackWidget>(widget)).Logic().KeyInfo().GetInfo();
    const QString sAll = QObject::tr("%1 tracks, %2 keys")
                             .arg(QtText::ToQt(info.m_sTotalTracks), QtText::ToQt(info.m_sTotalKeys));
    if (!info.m_bKey)
        return sAll;
    const QString sName = QtText::ToQt(info.m_sTitle).replace(QLatin1String("&&"), QLatin1String("&"));
    return QObject::tr("%1; %2, from %3 to %4")
        .arg(sAll, sName, QtText::ToQt(info.m_sStart), QtText::ToQt(info.m_sEnd));
}

// The part of the phase in view.
QString RulerText(const QWidget& widget)
{
    const QWidget* pBar = widget.parentWidget();
    auto* pTimeline = qobject_cast<TrackWidget*>(pBar ? pBar->parentWidget() : nullptr);
    if (!pTimeline)
        return QString();
    const CTimeBar& bar = pTimeline->Logic().TimeBar();
    return QObject::tr("%1 to %2 milliseconds").arg(bar.m_nViewStart).arg(TimeFromPixel(bar, widget.width()));
}

QString CurveText(const QWidget& widget)
{
    const QString sRange =
        QObject::tr("time %1 to %2, value %3 to %4")
            .arg(TextOf<QPushButton>(widget, eCurve_Start), TextOf<QPushButton>(widget, eCurve_End),
                 TextOf<QPushButton>(widget, eCurve_YMin), TextOf<QPushButton>(widget, eCurve_YMax));
    const auto* pDialog = qobject_cast<const TemplateDialog*>(widget.window());
    const QWidget* pTime = pDialog ? pDialog->Controls().Find(eCurve_Time) : nullptr;
    if (!pTime || !pTime->isEnabled())
        return sRange;
    return QObject::tr("%1; selected key at time %2").arg(sRange, TextOf<QPushButton>(widget, eCurve_Time));
}

QString VectorText(const QWidget& widget)
{
    constexpr int32_t c_nMagnitude = 1106;
    return QObject::tr("magnitude %1").arg(TextOf<QLineEdit>(widget, c_nMagnitude));
}

QString SquareText(const QWidget& widget)
{
    return QObject::tr("hue %1, saturation %2")
        .arg(TextOf<QLineEdit>(widget, eColor_HueBox), TextOf<QLineEdit>(widget, eColor_SatBox));
}

QString LuminanceText(const QWidget& widget)
{
    return TextOf<QLineEdit>(widget, eColor_LumBox);
}

QString CurrentColorText(const QWidget& widget)
{
    return ColorText(As<ColorView>(widget).Dialog().GetChooser().GetRgb());
}

QString BasicColorText(const QWidget& widget)
{
    const int nCell = As<ColorView>(widget).Dialog().GetChooser().GetBasicFocus();
    return QObject::tr("%1 of %2: %3")
        .arg(nCell + 1)
        .arg(CColorChooser::c_nBasicColors)
        .arg(ColorText(CColorChooser::GetBasicColor(nCell)));
}

QString CustomColorText(const QWidget& widget)
{
    CKRColorDialog& dialog = As<ColorView>(widget).Dialog();
    const int nCell = dialog.GetPalette().GetFocus();
    const uint32_t nColor = dialog.GetPalette().GetColor(nCell);
    const QString sText = QObject::tr("%1 of %2: %3")
                              .arg(nCell + 1)
                              .arg(CCustomColorPalette::c_nNumCells)
                              .arg(ColorText(CColorRef(nColor & 0xFFFFFF)));
    const QString sDescription = QtText::ToQt(dialog.GetDescription(nCell));
    return sDescription.isEmpty() ? sText : sText + QLatin1String(", ") + sDescription;
}

QString SwatchText(const QWidget& widget)
{
    return ColorText(As<SwatchButton>(widget).GetColor());
}

QString NoText(const QWidget&)
{
    return QString();
}

struct CViewKind
{
    const char* m_pszKind; // the class, or the object's name
    QAccessible::Role m_eRole;
    QString (*m_pfnText)(const QWidget&);
};

constexpr CViewKind c_ViewKinds[] = {
    {"TrackWidget", QAccessible::Chart, TimelineText},
    {"ruler", QAccessible::Graphic, RulerText},
    {"SizeBarWidget", QAccessible::Splitter, NoText},
    {"SpinArrows", QAccessible::SpinBox, NoText},
    {"SwatchButton", QAccessible::Button, SwatchText},
    {"CurveArea", QAccessible::Chart, CurveText},
    {"VectorView", QAccessible::Graphic, VectorText},
    {"BasicColorsView", QAccessible::ColorChooser, BasicColorText},
    {"PaletteView", QAccessible::ColorChooser, CustomColorText},
    {"ColorSquareView", QAccessible::ColorChooser, SquareText},
    {"LuminanceView", QAccessible::Slider, LuminanceText},
    {"CurrentColorView", QAccessible::Graphic, CurrentColorText},
};

// By class; a plain widget that others paint on, by its object name.
const CViewKind* FindKind(const QString& sClass, const QObject& object)
{
    const QString& sKind = sClass == QLatin1String("QWidget") ? object.objectName() : sClass;
    for (const CViewKind& kind : c_ViewKinds)
        if (sKind == QLatin1String(kind.m_pszKind))
            return &kind;
    return nullptr;
}

class CAccessibleView : public QAccessibleWidget
{
public:
    CAccessibleView(QWidget* pWidget, const CViewKind& kind)
        : QAccessibleWidget(pWidget, kind.m_eRole),
          m_Kind(kind)
    {
    }

    QString text(QAccessible::Text eText) const override
    {
        if (eText != QAccessible::Value && eText != QAccessible::Description)
            return QAccessibleWidget::text(eText);
        const QString sText = m_Kind.m_pfnText(*widget());
        return sText.isEmpty() ? QAccessibleWidget::text(eText) : sText;
    }

private:
    const CViewKind& m_Kind;
};

QAccessibleInterface* MakeView(const QString& sClass, QObject* pObject)
{
    const CViewKind* pKind = pObject->isWidgetType() ? FindKind(sClass, *pObject) : nullptr;
    return pKind ? new CAccessibleView(static_cast<QWidget*>(pObject), *pKind) : nullptr;
}

} // namespace

void InstallAccessibleViews()
{
    QAccessible::installFactory(MakeView);
}

void AccessibleViewChanged(QWidget* pView)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(pView, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
}
