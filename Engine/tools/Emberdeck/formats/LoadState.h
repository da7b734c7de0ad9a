#pragma once

#include <string>

#include "formats/LoadFindings.h"
#include "formats/NodeFields.h"
#include "model/EffectModule.h"
#include "qsamgr/qsanode.h"
#include "qsnumber.h"

// What the parts of one load share: the plug-in, the messages of a failure, and what is told of repairs.
class CLoadState
{
public:
    // Messages are added to sError, innermost first, one a line. pObserver may be null.
    CLoadState(const CEffectModule& module, std::string& sError, ILoadObserver* pObserver)
        : m_Module(module),
          m_Findings(pObserver),
          m_sError(sError)
    {
    }

    template <class... TArgs>
    void AppendError(const char* pszFormat, const TArgs&... args)
    {
        if constexpr (sizeof...(args) == 0)
            AddMessage(pszFormat);
        else
            AddMessage(QSFormat(pszFormat, args...));
    }

    // What to do with a list of a node that isn't among its fields.
    auto TellingSkipped()
    {
        return [this](const CQSANode& skipped)
        {
            if (m_Findings)
                m_Findings.TellSkipped(skipped);
        };
    }

    // The value of a field; tells when its list holds anything else.
    template <size_t N>
    const char* FindValue(const CNodeFields<N>& fields, size_t nField)
    {
        const char* pszValue = fields.FindValue(nField);
        const CQSANode* pList = m_Findings ? fields.FindList(nField) : nullptr;
        if (pList && (!pszValue || pList->GetNumElements() != 2))
            m_Findings.TellCount(*pList);
        return pszValue;
    }

    const CEffectModule& m_Module;
    CLoadFindings m_Findings;

private:
    void AddMessage(const std::string& sMessage);

    std::string& m_sError;
};

// A part of a load. Memory that runs out gives the failure of the object that was being made.
class CLoadPart
{
protected:
    explicit CLoadPart(CLoadState& load) : m_Load(load), m_Module(load.m_Module), m_Findings(load.m_Findings)
    {
    }

    template <class... TArgs>
    void AppendError(const char* pszFormat, const TArgs&... args)
    {
        m_Load.AppendError(pszFormat, args...);
    }
    auto TellingSkipped() { return m_Load.TellingSkipped(); }
    template <size_t N>
    const char* FindValue(const CNodeFields<N>& fields, size_t nField)
    {
        return m_Load.FindValue(fields, nField);
    }
    // Numbers of fields; a text that isn't quite one is told.
    int32_t ReadInt(const char* pszText, const char* pszField);
    uint32_t ReadID(const char* pszText, const char* pszField); // 32 bits, signed or not
    float ReadFloat(const char* pszText, const char* pszField);

    CLoadState& m_Load;
    const CEffectModule& m_Module;
    CLoadFindings& m_Findings;
};
