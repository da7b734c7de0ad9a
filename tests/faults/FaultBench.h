#pragma once

#include "app/EmberdeckApp.h"
#include "formats/EmberdeckPacker.h"
#include "formats/EmberdeckQSA.h"
#include "formats/PackedReader.h"
#include "platform/Profile.h"
#include "support/LibraryBuilder.h"
#include "support/TempDir.h"

// Answers No or OK, and counts failures, without allocating anything.
class CPlainPrompts : public IPrompts
{
public:
    EAnswer Ask(const std::string&, const std::string&, EButtons eButtons, EIcon eIcon) override
    {
        m_nFailures += eIcon == EIcon::eStop || eIcon == EIcon::eExclamation ? 1 : 0;
        return eButtons == EButtons::eOk ? EAnswer::eOk : EAnswer::eNo;
    }
    bool ChooseFile(const CFileDialogRequest&, std::string&) override { return false; }
    bool EnterText(const CTextEntry&, std::string&) override { return false; }
    bool EnterNumber(const CNumberEntry&, int32_t&) override { return false; }
    bool EnterFloat(const std::string&, const std::string&, float&) override { return false; }
    void BeginWait() override {}
    void EndWait() override {}

    int m_nFailures = 0;
};

class CPlainSourceControl : public ISourceControl
{
public:
    void SetChangeSetInfo(const std::string&, const std::string&) override {}
    bool SetProject(const std::string&, const std::string&) override { return true; }
    bool Connect() override { return true; }
    void Disconnect() override {}
    bool IsConnected() const override { return false; }
    ESourceControlState SourceControlStateForFile(const char*) override { return eSCState_Unknown; }
    bool CheckOut(const char*, int) override { return true; }
    bool EnsureCheckedOut(const char*, int) override { return true; }
    bool AddFile(const char*) override { return true; }
    bool Submit(const char*) override { return true; }
    bool Undo(const char*) override { return true; }
    bool GetLatest(const char*) override { return true; }
    bool History(const char*) override { return true; }
};

// Some effects of all kinds of values, more of them for a larger number.
inline void BuildLibrary(CLibraryBuilder builder, int nEffects, const std::string& sMark)
{
    builder.prefab("Light", "Lamp").value("Radius", 12.25).group("Weapons");
    for (int i = 0; i < nEffects; ++i)
        builder.effect(sMark + " " + std::to_string(i))
            .key("Sprite", 0, 1500)
            .name("Plume")
            .value("Texture", "effects\\textures\\a_long_name_" + std::to_string(i) + ".dds")
            .curve<double>("Size", {{0.0f, 0.0}, {0.333333f, 2.5}, {1.0f, 4.0}})
            .value("Label", "a text that lies beyond what a short string holds")
            .track()
            .key("Light", 200, 900)
            .onPrefab("Lamp")
            .linkTo("Plume");
}

// A project with the standard test types, and an application that works in it.
struct CFaultBench
{
    CFaultBench()
    {
        dir.write("game/game.proj00", "[Project Directories]\r\nResourceRoot=res\r\n[Project Binaries]\r\n"
                                      "Fireglass=" EMBERDECK_BIN_DIR "/test_modules/TestFireglass.so\r\n");
    }
    std::string path(const std::string& sName) const { return dir.path("game/" + sName); }
    std::unique_ptr<CEmberdeckApp> Start()
    {
        return std::make_unique<CEmberdeckApp>(
            CAppServices{prompts, *profile, sourceControl, nullptr, nullptr, dir.path("backups")});
    }
    // A library of the builder's in an application, with a name and not saved yet.
    std::unique_ptr<CEmberdeckApp> StartWith(const std::string& sName, int nEffects, const std::string& sMark)
    {
        auto pApp = Start();
        EXPECT_TRUE(pApp->LocateProject(path(sName).c_str()) && pApp->LoadProjectPlugin());
        pApp->NewEffectFile();
        BuildLibrary(aLibrary(pApp->m_EffectModule, pApp->m_SpellMgr, pApp->m_EffectTree, pApp->m_PrefabTree),
                     nEffects, sMark);
        pApp->m_sFileName = path(sName);
        return pApp;
    }
    // What such a library is saved as.
    std::string MakeFile(const std::string& sName, int nEffects, const std::string& sMark)
    {
        EXPECT_TRUE(StartWith(sName, nEffects, sMark)->SaveEffectFile());
        return ReadBytes(path(sName));
    }
    // Whether the old content is in the file, or a recovery brings it back.
    bool CanHave(const std::string& sName, const std::string& sContent)
    {
        if (std::filesystem::exists(path(sName)) && ReadBytes(path(sName)) == sContent)
            return true;
        CBackupStore store(dir.path("backups"));
        std::string sError;
        return store.Recover(path(sName), 0, sError) && ReadBytes(path(sName)) == sContent;
    }

    CTempDir dir;
    CPlainPrompts prompts;
    std::unique_ptr<IProfile> profile = MakeMemoryProfile();
    CPlainSourceControl sourceControl;
};
