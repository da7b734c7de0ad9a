#include "qt/toolkit/AccessibleViews.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace
{

class CAccessibleView : public QAccessibleWidget
{
public:
    CAccessibleView(QWidget* pWidget, const IAccessibleView& view)
        : QAccessibleWidget(pWidget, view.AccessibleRole()),
          m_View(view)
    {
    }

    QString text(QAccessible::Text eText) const override
    {
        const bool bShown = eText == QAccessible::Value || eText == QAccessible::Description;
        const QString sText = bShown ? m_View.AccessibleText() : QString();
        return sText.isEmpty() ? QAccessibleWidget::text(eText) : sText;
    }

private:
    const IAccessibleView& m_View; // the widget itself, which the toolkit knows to be alive
};

QAccessibleInterface* MakeView(const QString&, QObject* pObject)
{
    const auto* pView = dynamic_cast<const IAccessibleView*>(pObject);
    return pView ? new CAccessibleView(static_cast<QWidget*>(pObject), *pView) : nullptr;
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

QString ColorText(uint32_t nColor)
{
    return QObject::tr("red %1, green %2, blue %3")
        .arg(nColor & 0xFF)
        .arg((nColor >> 8) & 0xFF)
        .arg((nColor >> 16) & 0xFF);
}
