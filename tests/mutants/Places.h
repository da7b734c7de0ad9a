#pragma once

#include <cstdint>
#include <string>
#include <vector>

// A text that a fault puts in: between what stands before and behind it, or instead of m_nSize bytes. One that opens
// or closes a range knows the range's other end, so that ranges of several faults nest.
struct CEdit
{
    enum EKind
    {
        CLOSES,
        OPENS,
        REPLACES
    };
    EKind m_eKind;
    size_t m_nAt;
    size_t m_nSize;
    size_t m_nOtherEnd;
    std::string m_sText; // '@' stands for the fault's number
};

// One way to make the source wrong.
struct CPlace
{
    int m_nLine;
    std::string m_sOld; // what is changed, and into what, for people
    std::string m_sNew;
    std::vector<CEdit> m_Edits;
};

// Every way to make a source wrong, in the order of the source. What a compiler must know is left out where that can
// be seen from the tokens; the rest is up to the compiler.
std::vector<CPlace> FindPlaces(const std::string& sSource);

// The source with the places planted, each with its number. Line numbers stay.
struct CPlanted
{
    int m_nFault;
    const CPlace* m_pPlace;
};
std::string Plant(const std::string& sSource, const std::vector<CPlanted>& planted);
