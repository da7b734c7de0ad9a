#include "app/Journal.h"

#include <utility>

#include "app/StatusText.h"
#include "app/StoreNames.h"
#include "changes/ChangeText.h"
#include "changes/Replay.h"
#include "model/MakeOrNull.h"
#include "platform/FileProblem.h"

namespace
{

constexpr uint64_t c_nMaxPending = uint64_t(16) << 20;
constexpr std::chrono::seconds c_SyncPause(1);
constexpr std::chrono::seconds c_TryPause(10);

// The one effect that a change is in; empty: there are several, or it is in none.
std::string EffectOf(const CLibraryChange& change)
{
    const CChangeRef* pFound = nullptr;
    for (const CDifference& d : change.m_Differences)
    {
        const bool bItself = d.m_eKind == EDifference::eEffect || d.m_eKind == EDifference::eEffectName ||
                             d.m_eKind == EDifference::eEffectLength;
        const CChangeRef& effect = bItself ? d.m_Object : d.m_Effect;
        if (effect.m_nSerial == 0)
            continue;
        if (pFound && pFound->m_nSerial != effect.m_nSerial)
            return std::string();
        pFound = &effect;
    }
    return pFound ? pFound->m_sName : std::string();
}

} // namespace

std::string HashOfTypes(const CEffectModule& module)
{
    std::string sText = std::to_string(module.GetVersion());
    for (uint32_t i = 0; i < module.GetNumTypes(); ++i)
    {
        const CEffectTypeDesc& type = *module.GetType(i);
        sText += "\n" + TypeName(type);
        for (uint32_t k = 0; k < type.m_nNumProps; ++k)
        {
            const CEffectPropertyDesc& prop = type.m_pProps[k];
            sText += "\n\t" + DescName(prop) + "\t" + std::string(BoundedText(prop.m_szData)) + "\t" +
                     std::to_string(prop.m_eType) + (prop.m_bFunctionCurve ? "c" : "") +
                     (prop.m_bInterpolate ? "i" : "");
        }
    }
    return HashOf(sText);
}

CJournal::CJournal(const CSource& source, CJournalStore store, std::function<bool()> isSaved)
    : m_Source(source),
      m_Store(std::move(store)),
      m_IsSaved(std::move(isSaved))
{
    m_bStopped = true; // until there is a library
    m_Source.m_Edits.AddListener(this);
}

CJournal::~CJournal()
{
    m_Source.m_Edits.RemoveListener(this);
    if (!m_File.IsOpen())
        return;
    if (m_IsSaved())
        Drop();
    else if (m_bLeft)
        EndLibrary();
    else
        Sync();
}

void CJournal::TurnOn(uint64_t nMaxSize)
{
    m_nMaxSize = nMaxSize;
    // Work that nobody has noted the start of is noted as a whole.
    if (!m_bOn)
        m_bAnew = !m_IsSaved();
    m_bOn = true;
}

void CJournal::TurnOff()
{
    Drop();
    m_bOn = false;
}

void CJournal::Begin(const CContentStamp& stamp)
{
    Drop();
    m_Stamp = stamp;
    m_bStopped = false;
    m_bTold = false;
}

// Takes away what there is of a journal.
void CJournal::Drop()
{
    m_File.Close();
    if (!m_sStem.empty())
        CJournalStore::Remove(m_sStem);
    m_sStem.clear();
    m_sOrigin.clear();
    m_sPending.clear();
    m_pBase.reset();
    m_nSteps = 0;
    m_bAnew = false;
    m_bLeft = false;
}

// The work is left where it is.
void CJournal::EndLibrary()
{
    if (m_File.IsOpen() && !m_IsSaved())
    {
        const auto keep = [this]
        {
            Sync();
            if (CJournalStore::Keep(m_sStem))
                m_sKept = TellCount(m_nSteps, "unsaved change") + " kept: File > Recover";
            m_sStem.clear();
        };
        TryAllocating(keep);
    }
    Drop();
}

std::shared_ptr<const CLibraryImage> CJournal::MakeImage() const
{
    CImageMaker maker;
    return CLibraryImage::Make(m_Source.m_Library, maker);
}

void CJournal::OnTouching(const std::string& sLabel, const CTouch& touch)
{
    (void)sLabel;
    if (touch.m_eKind == ETouched::eLibrary)
        EndLibrary();
    if (std::exchange(m_bInEdit, true) || touch.m_eKind == ETouched::eLibrary || !m_bOn || m_bStopped ||
        m_bAnew || m_pBase || m_File.IsOpen())
        return;
    // What this takes is shared with no one, and goes with the first step.
    m_bAnew = !TryAllocating([this] { m_pBase = MakeImage(); });
}

void CJournal::OnEdit(const CEdit& edit)
{
    m_bInEdit = false;
    if (edit.Touches(ETouched::eLibrary) || !m_bOn || m_bStopped)
        return;
    if (!edit.m_bRecordFailed && (!edit.m_pChange || edit.m_pChange->IsEmpty()))
        return;
    m_bLeft = false;
    if (!TryAllocating([&] { Record(edit); }))
    {
        m_bAnew = true;
        Tell("memory is short");
    }
}

void CJournal::Record(const CEdit& edit)
{
    ++m_nSteps;
    if (edit.m_bRecordFailed || m_bAnew)
    {
        StartAnew(edit);
        return;
    }
    const std::string sStep = WriteJournalStep(NowNanoseconds(), edit.m_sLabel, EffectOf(*edit.m_pChange),
                                               WriteChangeText(*edit.m_pChange));
    if (!m_File.IsOpen())
        m_bStopped = !Start(sStep);
    else if (m_File.GetSize() + m_sPending.size() + sStep.size() > m_nMaxSize)
        StartAnew(edit);
    else
        Append(sStep);
}

CJournalHead CJournal::MakeHead(const std::string& sBase)
{
    CJournalHead head;
    if (!m_Stamp.GetPath().empty())
        head.m_sLibrary = OwnerOf(m_Stamp.GetPath());
    head.m_nSize = m_Stamp.GetSize();
    head.m_sHash = m_Stamp.GetHash();
    head.m_sLocator = m_Source.m_Project.m_sLocator;
    head.m_sPlugin = m_Source.m_Project.m_sFireglass;
    head.m_nPluginVersion = m_Source.m_Module.GetVersion();
    head.m_sTypes = HashOfTypes(m_Source.m_Module);
    head.m_sBase = m_sBase = HashOf(sBase);
    return head;
}

// The base and the first step.
bool CJournal::Start(const std::string& sStep)
{
    const std::shared_ptr<const CLibraryImage> pBase = std::exchange(m_pBase, nullptr);
    if (!pBase)
        return false;
    const std::string sBase = WriteChangeText(ComeFromNothing(*pBase));
    m_sStem = m_Store.MakeStem();
    if (m_sStem.empty() || !CJournalStore::WriteBase(m_sStem, c_szBaseSuffix, sBase) ||
        !Create(MakeHead(sBase), sStep))
    {
        Tell(m_sStem.empty() ? std::string() : WriteProblem(m_sStem + c_szBaseSuffix));
        Drop();
        return false;
    }
    return true;
}

bool CJournal::Create(const CJournalHead& head, const std::string& sStep)
{
    if (!m_File.Create(m_sStem + c_szJournalSuffix) || !m_File.Append(WriteJournalHead(head) + sStep))
        return false;
    Wrote();
    return true;
}

// A journal whose base is the library as it is now. The old one stays until that is there.
bool CJournal::StartAnew(const CEdit& edit)
{
    const auto now = std::chrono::steady_clock::now();
    if (std::exchange(m_bAnew, true) && now < m_NextTry)
        return false;
    m_NextTry = now + c_TryPause;
    const std::string sBase = WriteChangeText(ComeFromNothing(*MakeImage()));
    std::string sOrigin;
    const std::string sOldStem = m_sStem;
    const bool bWasAnew = !m_sOrigin.empty();
    std::string sOriginHash = bWasAnew ? m_sOrigin : m_sBase;
    bool bOrigin =
        !sOldStem.empty() &&
        CJournalStore::ReadBase(sOldStem, bWasAnew ? c_szOriginSuffix : c_szBaseSuffix, sOriginHash, sOrigin);
    if (sOldStem.empty() && m_pBase)
    {
        sOrigin = WriteChangeText(ComeFromNothing(*std::exchange(m_pBase, nullptr)));
        sOriginHash = HashOf(sOrigin);
        bOrigin = true;
    }

    CJournalHead head = MakeHead(sBase);
    head.m_nStepsBefore = m_nSteps;
    head.m_nLastTime = NowNanoseconds();
    head.m_sLastLabel = edit.m_sLabel;
    if (edit.m_pChange)
        head.m_sLastEffect = EffectOf(*edit.m_pChange);
    head.m_sOrigin = bOrigin ? sOriginHash : std::string();
    CAppendedFile old = std::move(m_File);
    m_sStem = m_Store.MakeStem();
    const bool bStarted = !m_sStem.empty() && CJournalStore::WriteBase(m_sStem, c_szBaseSuffix, sBase) &&
                          (!bOrigin || CJournalStore::WriteBase(m_sStem, c_szOriginSuffix, sOrigin)) &&
                          Create(head, std::string());
    if (!bStarted)
    {
        Tell(m_sStem.empty() ? std::string() : WriteProblem(m_sStem + c_szBaseSuffix));
        if (!m_sStem.empty())
            CJournalStore::Remove(m_sStem);
        m_sStem = sOldStem;
        m_File = std::move(old);
        return false;
    }
    m_sOrigin = head.m_sOrigin;
    m_sPending.clear();
    m_bAnew = false;
    if (!sOldStem.empty())
    {
        Sync();
        old.Close();
        CJournalStore::Remove(sOldStem);
    }
    return true;
}

// Together with those that had no room before.
void CJournal::Append(const std::string& sStep)
{
    m_sPending += sStep;
    if (m_File.Append(m_sPending))
    {
        m_sPending.clear();
        Wrote();
        return;
    }
    Tell(WriteProblem(m_File.GetPath()));
    if (!m_File.IsOpen() || m_sPending.size() > c_nMaxPending)
    {
        m_sPending.clear();
        m_bAnew = true;
    }
}

void CJournal::Wrote()
{
    if (m_OnUnsynced)
        TryAllocating(m_OnUnsynced);
    else if (std::chrono::steady_clock::now() - m_LastSync >= c_SyncPause)
        Sync();
}

bool CJournal::Sync()
{
    m_LastSync = std::chrono::steady_clock::now();
    return m_File.Sync();
}

void CJournal::Tell(const std::string& sProblem)
{
    if (std::exchange(m_bTold, true) || !m_OnProblem)
        return;
    TryAllocating(
        [&]
        {
            const std::string sDirectory = m_Store.GetDirectory();
            m_OnProblem("The journal in " + sDirectory + " can't be written" +
                        (sProblem.empty() ? "" : ": ") + sProblem);
        });
}
