#pragma once

#include <gtest/gtest.h>

#include <QApplication>

#include "desktop/Desktop.h"
#include "platform/Profile.h"
#include "qt/frame/EffectWindows.h"
#include "qt/frame/MainWindow.h"
#include "qt/properties/QtPropertyDialogs.h"
#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/MenuStyle.h"
#include "support/LibraryBuilder.h"
#include "support/RecordingSourceControl.h"
#include "support/TempDir.h"

// The program's real window on the tests' desktop, with a project on the disk whose plug-in has the standard
// test types.
struct CDesktopBench
{
    CDesktopBench()
    {
        dir.write("game/game.proj00", "[Project Directories]\r\nResourceRoot=res\r\n[Project Binaries]\r\n"
                                      "Fireglass=" EMBERDECK_BIN_DIR "/test_modules/TestFireglass.so\r\n");
        EXPECT_TRUE(window.Create(false, qobject_cast<MenuStyle*>(QApplication::style())));
        window.Host().SetPropertyEditor([this](CEffectPropertySet& set)
                                        { return dialogs.EditProperties(set); });
        window.setGeometry(40, 40, 1400, 880);
        window.show();
        // A window manager that has only just come up may pass over the first window.
        const auto active = [this] { return window.isActiveWindow(); };
        for (int i = 0; i < 4 && !Desktop::Settle(active, 2000); ++i)
        {
            // Asked for the focus alone it may go on passing over a window that it doesn't manage.
            window.hide();
            Desktop::Settle();
            window.show();
            window.activateWindow();
        }
        EXPECT_TRUE(Desktop::Settle(active)) << "the window never got the focus";
        Desktop::Settle();
    }
    // A library in the running program, straight into its model. It has no file name until one is set.
    void Fill(const std::function<void(CLibraryBuilder&)>& fill)
    {
        EXPECT_TRUE(App().LocateProject(path("x.Fx00a").c_str()) && App().LoadProjectPlugin());
        App().NewEffectFile();
        {
            CEditScope scope(App().m_Edits, "Test");
            scope.TouchLibrary();
            CLibraryBuilder builder =
                aLibrary(App().m_EffectModule, App().m_SpellMgr, App().m_EffectTree, App().m_PrefabTree);
            fill(builder);
        }
        Desktop::Settle();
    }
    // A library into a file of the project, by the program itself, which is empty again afterwards. Its path.
    std::string MakeFile(const std::string& sName, const std::function<void(CLibraryBuilder&)>& fill)
    {
        Fill(fill);
        App().m_sFileName = path(sName);
        EXPECT_TRUE(App().SaveEffectFile());
        App().NewEffectFile();
        return path(sName);
    }
    // Opens it in the window, and says No to the question about checking out.
    void OpenFile(const std::string& sPath)
    {
        Desktop::WhileOpen([](QWidget*) { Desktop::Key("alt+n"); });
        EXPECT_TRUE(App().OpenEffectFile(sPath.c_str()));
        Desktop::Settle();
    }
    // The timeline of an effect, in a child window that fills the work area.
    TrackWidget* ShowEffect(const char* pszName)
    {
        CSpell* pSpell = App().m_SpellMgr.FindSpell(pszName);
        EXPECT_TRUE(pSpell) << pszName;
        if (!pSpell)
            return nullptr;
        window.Effects().Open(*pSpell);
        TrackWidget* pTimeline = window.ActiveTimeline();
        pTimeline->parentWidget()->showMaximized();
        Desktop::Settle();
        return pTimeline;
    }
    CEmberdeckApp& App() { return window.App(); }
    std::string path(const std::string& sName) const { return dir.path("game/" + sName); }

    CTempDir dir;
    std::unique_ptr<IProfile> profile = MakeMemoryProfile();
    CRecordingSourceControl sourceControl;
    QtPrompts prompts;
    MainWindow window{*profile, sourceControl, prompts};
    QtPropertyDialogs dialogs{window.App().Context(), *profile, &window};
};
