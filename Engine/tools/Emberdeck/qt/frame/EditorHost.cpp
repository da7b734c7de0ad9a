#include "qt/frame/EditorHost.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Advice.h"
#include "qt/frame/FrameStatusBar.h"
#include "qt/library/LeftDockWidget.h"
#include "qt/toolkit/QtText.h"
#include "qt/toolkit/TemplateDialog.h"

CEffectPropertySet* EditorHost::GetActivePrefab()
{
    return m_pDock ? m_pDock->PrefabPanel().GetActivePrefab() : nullptr;
}

void EditorHost::OfferActivePrefab(CEffectPropertySet* pPrefab)
{
    if (m_pDock)
        m_pDock->PrefabPanel().OfferActivePrefab(pPrefab);
}

void EditorHost::ClearActivePrefab()
{
    if (m_pDock)
        m_pDock->PrefabPanel().ClearActivePrefab();
}

bool EditorHost::EditProperties(CEffectPropertySet& set)
{
    return m_EditProperties && m_EditProperties(set);
}

namespace
{
std::vector<const CEffectTypeDesc*> SortedTypes(const CEffectModule& module)
{
    std::vector<const CEffectTypeDesc*> types;
    for (uint32_t i = 0; i < module.GetNumTypes(); ++i)
        types.push_back(module.GetType(i));
    std::stable_sort(types.begin(), types.end(),
                     [](const CEffectTypeDesc* pLeft, const CEffectTypeDesc* pRight)
                     {
                         return QString::compare(QtText::ToQt(TypeName(*pLeft)),
                                                 QtText::ToQt(TypeName(*pRight)), Qt::CaseInsensitive) < 0;
                     });
    return types;
}
} // namespace

const CEffectTypeDesc* EditorHost::ChooseEffectType()
{
    TemplateDialog dialog(eDlg_ChooseFX, &m_Owner);
    auto* pList = dialog.Controls().Get<QListWidget>(eChooseFX_List);
    pList->setAccessibleName(QObject::tr("Effect types"));
    std::vector<const CEffectTypeDesc*> types;
    const auto fill = [&]
    {
        types = SortedTypes(m_App.m_EffectModule);
        for (const CEffectTypeDesc* pType : types)
            pList->addItem(QtText::ToQt(TypeName(*pType)));
        pList->setCurrentRow(-1);
        pList->setFocus();
        return !types.empty();
    };
    if (!fill())
        ExplainNoTypes(*pList, fill);
    QObject::connect(pList, &QListWidget::itemDoubleClicked, &dialog, &QDialog::accept);
    if (dialog.exec() != QDialog::Accepted || pList->selectedItems().isEmpty())
        return nullptr;
    return types[size_t(pList->row(pList->selectedItems().constFirst()))];
}

// In the empty list itself: why it is empty, and the way out where there is one. Without a plug-in the library
// stands on none, so that one can be loaded right here.
void EditorHost::ExplainNoTypes(QListWidget& list, const std::function<bool()>& fill)
{
    auto* pWhy = new QLabel(QtText::ToQt(AdviseOnNoTypes(m_App.m_Project, m_App.m_EffectModule)), &list);
    pWhy->setTextFormat(Qt::PlainText);
    pWhy->setWordWrap(true);
    pWhy->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    list.setAccessibleDescription(pWhy->text());
    auto* pLayout = new QVBoxLayout(&list);
    pLayout->setContentsMargins(12, 12, 12, 12);
    pLayout->setSpacing(12);
    pLayout->addWidget(pWhy);
    if (m_App.m_EffectModule.IsLoaded())
    {
        pLayout->addStretch();
        return;
    }
    auto* pChoose = new QPushButton(QObject::tr("Choose &Project..."), &list);
    pChoose->setAutoDefault(true); // Enter presses it while it has the focus
    pLayout->addWidget(pChoose, 0, Qt::AlignLeft);
    pLayout->addStretch();
    QObject::connect(pChoose, &QPushButton::clicked, &list,
                     [this, &list, pWhy, pChoose, fill]
                     {
                         if (!m_App.ChooseProject() || !fill())
                         {
                             pWhy->setText(
                                 QtText::ToQt(AdviseOnNoTypes(m_App.m_Project, m_App.m_EffectModule)));
                             list.setAccessibleDescription(pWhy->text());
                             pChoose->setVisible(!m_App.m_EffectModule.IsLoaded());
                             return;
                         }
                         list.setAccessibleDescription(QString());
                         pWhy->hide();
                         pChoose->hide();
                     });
    pChoose->setFocus();
}

void EditorHost::ShowStatus(const std::string& sText)
{
    m_Status.ShowStatus(QtText::ToQt(sText));
}
