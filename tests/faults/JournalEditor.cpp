// Edits a library with its journal on, as an editor that will be killed.
//   journal_editor FILE JOURNALS SEED EDITS [texts]
// Prints the number of steps behind each edit that has returned; with "texts" also what the library is then.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "FaultBench.h"
#include "app/StoreNames.h"
#include "support/EditWalk.h"

namespace
{
// Counts what is a step, and looks at the library behind it.
class CStepCounter : public IEditListener
{
public:
    CStepCounter(CEditWalk& walk, bool bTexts) : m_Walk(walk), m_bTexts(bTexts) {}
    void OnEdit(const CEdit& edit) override
    {
        if (!edit.m_pChange || edit.m_pChange->IsEmpty())
            return;
        ++m_nSteps;
        if (m_bTexts)
            std::printf("%d %s\n", m_nSteps, HashOf(m_Walk.Text()).c_str());
    }
    int m_nSteps = 0;

private:
    CEditWalk& m_Walk;
    bool m_bTexts;
};
} // namespace

int main(int argc, char** argv)
{
    if (argc < 5)
        return 2;
    CPlainPrompts prompts;
    CPlainSourceControl sourceControl;
    const auto pProfile = MakeMemoryProfile();
    CEmberdeckApp app({prompts, *pProfile, sourceControl, nullptr, nullptr, std::string(), argv[2]});
    app.Start();
    if (!app.OpenEffectFile(argv[1]))
        return 1;
    CEditWalk walk(app, static_cast<uint32_t>(std::atoi(argv[3])));
    const bool bTexts = argc > 5;
    CStepCounter counter(walk, bTexts);
    app.m_Edits.AddListener(&counter);
    int nTold = 0;
    for (int i = 0; i < std::atoi(argv[4]); ++i)
    {
        if (i % 5 == 4)
            app.History().Undo();
        else
            walk.EditOnce();
        if (!bTexts && counter.m_nSteps != nTold)
            std::printf("%d\n", nTold = counter.m_nSteps);
        std::fflush(stdout);
    }
    app.m_Edits.RemoveListener(&counter);
    return 0;
}
