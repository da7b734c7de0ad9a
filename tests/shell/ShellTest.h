#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "shell/MainFrame.h"
#include "support/AppBench.h"

// Writes down what is drawn: "fill 0,0 24x20 f0f0f0", "image 4,2 NAME", "text 30,0 40x20 Save".
class CRecordingShell : public IShellSurface
{
public:
    void FillRect(const CRect& rc, CColorRef nColor) override
    {
        m_Calls.push_back("fill " + Place(rc) + " " + Hex(nColor));
    }
    void DrawImage(CPoint pt, const CPixelImage& image) override
    {
        m_Calls.push_back("image " + std::to_string(pt.x) + "," + std::to_string(pt.y) + " " + NameOf(image));
    }
    void DrawMenuText(const CRect& rc, std::string_view sText, CColorRef nColor, bool bBold,
                      bool bRight) override
    {
        m_Calls.push_back("text " + Place(rc) + " " + std::string(sText) + " " + Hex(nColor) +
                          (bBold ? " bold" : "") + (bRight ? " right" : ""));
    }

    void Know(const CPixelImage* pImage, const std::string& sName)
    {
        if (pImage)
            m_Names.emplace_back(*pImage, sName);
    }
    std::vector<std::string> Take() { return std::exchange(m_Calls, {}); }

    static std::string Hex(CColorRef nColor)
    {
        char szText[16];
        snprintf(szText, sizeof(szText), "%06x", nColor);
        return szText;
    }

private:
    static std::string Place(const CRect& rc)
    {
        return std::to_string(rc.left) + "," + std::to_string(rc.top) + " " + std::to_string(rc.Width()) +
               "x" + std::to_string(rc.Height());
    }
    // A known image, or a flat one by its colour.
    std::string NameOf(const CPixelImage& image) const
    {
        for (const auto& [known, sName] : m_Names)
        {
            if (known == image)
                return sName;
        }
        for (uint32_t nPixel : image.m_Pixels)
        {
            if (!IsTransparent(nPixel))
                return "flat " + Hex(nPixel & 0xFFFFFF);
        }
        return "empty";
    }

    std::vector<std::string> m_Calls;
    std::vector<std::pair<CPixelImage, std::string>> m_Names;
};

// A main window that only remembers.
class CMemoryFrameWindow : public IFrameWindow
{
public:
    bool CreateToolBar(const CKRToolbar& toolbar) override
    {
        m_Calls.push_back(std::string("toolbar ") + toolbar.GetTable().m_pszTitle);
        return MakeBar(toolbar.GetID());
    }
    bool CreateStatusBar() override
    {
        m_Calls.push_back("status bar");
        return MakeBar(c_nCmdStatusBar);
    }
    void SetToolBarImages(const CKRToolbar& toolbar) override
    {
        m_Calls.push_back(std::string("images ") + toolbar.GetTable().m_pszTitle);
    }
    void DockToolBar(int32_t nBar, int32_t nBesideBar) override
    {
        m_Calls.push_back("dock " + std::to_string(nBar) + " beside " + std::to_string(nBesideBar));
    }
    void CreateLeftDock() override { m_Calls.push_back("left dock"); }
    void CreateHistoryDock() override
    {
        m_Calls.push_back("history dock");
        m_Bars[c_nCmdHistoryList] = false;
    }
    void ShowSplash() override { m_Calls.push_back("splash"); }

    bool HasBar(int32_t nBar) const override { return m_Bars.count(nBar) != 0; }
    bool IsBarVisible(int32_t nBar) const override { return m_Bars.at(nBar); }
    void ShowBar(int32_t nBar, bool bShow) override { m_Bars[nBar] = bShow; }

    void Close() override { m_Calls.push_back("close"); }
    void ShowAbout(const CAboutSharedDlg&) override
    {
        m_Calls.push_back("about");
        if (m_WhileAbout)
            m_WhileAbout();
    }
    void EndEdit() override
    {
        m_Calls.push_back("end edit");
        if (m_OnEndEdit)
            m_OnEndEdit();
    }
    bool IsGestureRunning() const override { return m_bGesture; }
    void ShowChange(const CChangeSpots& spots) override
    {
        m_sShown.clear();
        for (const CChangeSpots::CEffect& effect : spots.m_Effects)
        {
            m_sShown += std::string(effect.m_pSpell->m_szName) + ":";
            for (const CKey* pKey : effect.m_Keys)
                m_sShown += " " + std::to_string(pKey->m_nKeyID);
            m_sShown += effect.m_pTrack ? " track\n" : "\n";
        }
        for (const auto& items : spots.m_Items)
            m_sShown += items.empty() ? "" : std::to_string(items.size()) + " items\n";
    }
    void CommandsChanged() override { m_Calls.push_back("changed"); }

    std::vector<std::string> Take() { return std::exchange(m_Calls, {}); }

    int32_t m_nFailingBar = 0; // its creation fails
    bool m_bGesture = false;
    std::string m_sShown; // by the last ShowChange
    std::function<void()> m_WhileAbout, m_OnEndEdit;
    std::map<int32_t, bool> m_Bars;

private:
    bool MakeBar(int32_t nBar)
    {
        if (nBar == m_nFailingBar)
            return false;
        m_Bars[nBar] = true;
        return true;
    }
    std::vector<std::string> m_Calls;
};

struct CFrameBench : CAppBench
{
    CFrameBench() : frame(*app, window)
    {
        EXPECT_TRUE(frame.Create());
        window.Take();
        sourceControl.m_Calls.clear();
    }
    CMemoryFrameWindow window;
    CMainFrame frame;
};

using CCalls = std::vector<std::string>;
