#pragma once

#include <functional>

#include "app/EmberdeckApp.h"

class FrameStatusBar;
class LeftDockWidget;
class QListWidget;
class QWidget;

// What one editing room needs of another: the dock, the property dialogs and the status bar answer.
class EditorHost : public IEditorHost
{
public:
    // All borrowed; the application may come into being later, but before anything is asked.
    EditorHost(QWidget& owner, CEmberdeckApp& app, FrameStatusBar& status)
        : m_Owner(owner),
          m_App(app),
          m_Status(status)
    {
    }

    void SetDock(LeftDockWidget* pDock) { m_pDock = pDock; } // borrowed; null while there is none
    // Opens the property dialogs on a key or prefab; true: accepted.
    void SetPropertyEditor(std::function<bool(CEffectPropertySet&)> edit)
    {
        m_EditProperties = std::move(edit);
    }

    CEffectPropertySet* GetActivePrefab() override;
    void OfferActivePrefab(CEffectPropertySet* pPrefab) override;
    void ClearActivePrefab() override;
    bool EditProperties(CEffectPropertySet& set) override;
    const CEffectTypeDesc* ChooseEffectType() override;
    void ShowStatus(const std::string& sText) override;

private:
    void ExplainNoTypes(QListWidget& list, const std::function<bool()>& fill);

    QWidget& m_Owner;
    CEmberdeckApp& m_App;
    FrameStatusBar& m_Status;
    LeftDockWidget* m_pDock = nullptr;
    std::function<bool(CEffectPropertySet&)> m_EditProperties;
};
