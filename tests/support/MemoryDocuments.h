#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "app/EditContext.h"

// The open views of effects, without windows.
class CMemoryDocuments : public IDocuments
{
public:
    bool IsOpen(const CSpell* pSpell) const override
    {
        return std::find(m_Open.begin(), m_Open.end(), pSpell) != m_Open.end();
    }
    void Open(CSpell& spell) override
    {
        Close(&spell);
        m_Open.push_back(&spell); // the last one is in front
        m_Titles.push_back(spell.m_szName);
    }
    void Close(const CSpell* pSpell) override
    {
        for (size_t i = 0; i < m_Open.size(); ++i)
        {
            if (m_Open[i] != pSpell)
                continue;
            m_Open.erase(m_Open.begin() + std::ptrdiff_t(i));
            m_Titles.erase(m_Titles.begin() + std::ptrdiff_t(i));
            return;
        }
    }
    void CloseAll() override
    {
        m_Open.clear();
        m_Titles.clear();
    }
    void RetitleAll() override
    {
        for (size_t i = 0; i < m_Open.size(); ++i)
            m_Titles[i] = m_Open[i]->m_szName;
    }

    std::vector<const CSpell*> m_Open;
    std::vector<std::string> m_Titles; // as the views show them
};

// What rooms ask of each other, answered from members.
class CMemoryHost : public IEditorHost
{
public:
    CEffectPropertySet* GetActivePrefab() override { return m_pActive; }
    void OfferActivePrefab(CEffectPropertySet* pPrefab) override
    {
        if (!m_pActive)
            m_pActive = pPrefab;
    }
    void ClearActivePrefab() override { m_pActive = nullptr; }
    bool EditProperties(CEffectPropertySet& set) override
    {
        m_Edited.push_back(&set);
        return m_bAccept;
    }
    const CEffectTypeDesc* ChooseEffectType() override { return m_pChosen; }
    void ShowStatus(const std::string& sText) override { m_Status.push_back(sText); }

    CEffectPropertySet* m_pActive = nullptr;
    const CEffectTypeDesc* m_pChosen = nullptr; // null: cancelled
    bool m_bAccept = true;
    std::vector<CEffectPropertySet*> m_Edited;
    std::vector<std::string> m_Status;
};
