// Writes settings or a palette as the window does, for the tests that make the kernel's calls fail.
//   settings_writer settings FILE    settings_writer palette FILE
// Ends with 1 and a line on standard error when the program would have told the user of a failure.

#include <cstdio>
#include <cstring>

#include "properties/PropertyBench.h"

namespace
{
class CFilePrompts : public IPrompts
{
public:
    explicit CFilePrompts(std::string sFile) : m_sFile(std::move(sFile)) {}
    EAnswer Ask(const std::string&, const std::string& sText, EButtons, EIcon) override
    {
        std::fprintf(stderr, "%s\n", sText.c_str());
        m_bTold = true;
        return EAnswer::eOk;
    }
    bool ChooseFile(const CFileDialogRequest&, std::string& sPath) override
    {
        sPath = m_sFile;
        return true;
    }
    bool EnterText(const CTextEntry&, std::string&) override { return false; }
    bool EnterNumber(const CNumberEntry&, int32_t&) override { return false; }
    bool EnterFloat(const std::string&, const std::string&, float&) override { return false; }
    void BeginWait() override {}
    void EndWait() override {}

    bool m_bTold = false;

private:
    std::string m_sFile;
};

int WriteSettings(const std::string& sFile)
{
    const auto tell = [](const std::string& sWhy) { std::fprintf(stderr, "%s\n", sWhy.c_str()); };
    const auto profile = OpenFileProfile(sFile, tell);
    const std::vector<IProfile::CEntry> entries = {{"Section", "First", "new"},
                                                   {"Section", "Second", std::string(3000, 'x')}};
    return [&]() noexcept { return profile->WriteStrings(entries); }() ? 0 : 1;
}

int WritePalette(const std::string& sFile)
{
    CPropertyBench bench;
    CFilePrompts prompts(sFile);
    CEditContext context{bench.spellMgr,   bench.pModule->m_Module,
                         bench.clipboard,  bench.effectTree,
                         bench.prefabTree, bench.sRoot,
                         bench.edits,      prompts,
                         bench.host,       bench.documents};
    CPropertyServices services{context, *bench.profile, bench.dialogs};
    CKRColorDialog dialog{services, 0, 0x103};
    dialog.OnInitDialog(203, 69);
    [&]() noexcept { dialog.OnCommand(eColor_SaveButton); }();
    return prompts.m_bTold ? 1 : 0;
}
} // namespace

int main(int argc, char** argv)
try
{
    if (argc == 3 && !std::strcmp(argv[1], "settings"))
        return WriteSettings(argv[2]);
    if (argc == 3 && !std::strcmp(argv[1], "palette"))
        return WritePalette(argv[2]);
    return 2;
}
catch (const std::bad_alloc&)
{
    std::fprintf(stderr, "no memory to begin with\n");
    return 1;
}
