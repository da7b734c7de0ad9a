#pragma once

#include <memory>
#include <string>

#include "app/EmberdeckApp.h"
#include "platform/Profile.h"
#include "support/LibraryBuilder.h"
#include "support/MemoryDocuments.h"
#include "support/RecordingSourceControl.h"
#include "support/ScriptedPrompts.h"
#include "support/TempDir.h"

// An application with a project on the disk, whose plug-in is a real library with the standard test types.
struct CAppBench
{
    CAppBench()
    {
        WriteProject("Fireglass=" EMBERDECK_BIN_DIR "/test_modules/TestFireglass.so\r\n");
        Start();
    }

    void WriteProject(const std::string& sBinaries, const std::string& sMore = "")
    {
        dir.write("game/game.proj00", "[Project Directories]\r\nResourceRoot=res\r\n[Project Binaries]\r\n" +
                                          sBinaries + "[Source Control]\r\nProvider=prov\r\nDatabase=db\r\n" +
                                          sMore);
    }
    void Start()
    {
        app.reset();
        app = std::make_unique<CEmberdeckApp>(CAppServices{prompts, *profile, sourceControl, &documents,
                                                           &host, dir.path("backups"), dir.path("journals")});
    }
    // Expects the question of an open, too.
    bool Open(const std::string& sPath, EAnswer eCheckOut = EAnswer::eNo)
    {
        prompts.onAsk("checkout the following file", eCheckOut);
        return app->OpenEffectFile(sPath.c_str());
    }
    // The plug-in alone, then a library by the builder; it has no name yet.
    CLibraryBuilder Build()
    {
        EXPECT_TRUE(app->LocateProject(path("x.Fx00a").c_str()) && app->LoadProjectPlugin());
        app->NewEffectFile();
        return aLibrary(app->m_EffectModule, app->m_SpellMgr, app->m_EffectTree, app->m_PrefabTree);
    }
    // A file with one effect, made with the program itself. Its path.
    std::string MakeFile(const std::string& sName, const char* pszEffect = "Smoke")
    {
        Build().prefab("Sprite", "Puff").effect(pszEffect).key("Sprite", 0, 500).onPrefab("Puff");
        app->m_sFileName = path(sName);
        EXPECT_TRUE(app->SaveEffectFile());
        app->NewEffectFile();
        sourceControl.m_Calls.clear();
        return path(sName);
    }
    std::string path(const std::string& sName) const { return dir.path("game/" + sName); }
    std::string lastFile() const { return profile->GetString("", "LastOpenedFile"); }
    void ExpectNewState()
    {
        EXPECT_EQ("", app->m_sFileName);
        EXPECT_TRUE(app->m_SpellMgr.Spells().empty() && app->m_SpellMgr.Prefabs().empty());
        EXPECT_EQ("[[Effects]]\n", DumpTree(app->m_EffectTree));
        EXPECT_EQ("[[Prefabs]]\n", DumpTree(app->m_PrefabTree));
    }

    CTempDir dir;
    CScriptedPrompts prompts;
    std::unique_ptr<IProfile> profile = MakeMemoryProfile();
    CRecordingSourceControl sourceControl;
    CMemoryDocuments documents;
    CMemoryHost host;
    std::unique_ptr<CEmberdeckApp> app;
};

inline HLibraryItem ItemOf(const CLibraryTree& tree, const std::string& sText)
{
    for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
        if (tree.GetItemText(h) == sText)
            return h;
    ADD_FAILURE() << "no item " << sText;
    return {};
}
