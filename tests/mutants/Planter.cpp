// Plants faults into copies of sources, to see whether the tests catch them. tests/mutants/run is the way to use it.
//
//   planter plant ROOT OUT SEED COUNT FILE...   (files as below ROOT)
//   planter drop OUT LOG
//
// "plant" takes COUNT places at random, one way to make each wrong, and writes each FILE to OUT/FILE with its places
// planted, and OUT/faults.txt: number, file, line, what stood there, what stands there, apart by tabs. All faults are
// in one build; EMBERDECK_FAULT says which one is on (EmberdeckFault.h). What can't carry a fault doesn't compile:
// "drop" reads the compiler's words in LOG, notes those faults in OUT/dropped.txt and prints how many; the next
// "plant" takes others for them, and leaves the numbers of the rest. Files that don't change keep their dates.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include <sys/stat.h>

#include "Places.h"

namespace
{

bool ReadFile(const std::string& sPath, std::string& sText)
{
    std::ifstream in(sPath, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    sText = out.str();
    return bool(in);
}

bool WriteIfChanged(const std::string& sPath, const std::string& sText)
{
    std::string sOld;
    if (ReadFile(sPath, sOld) && sOld == sText)
        return true;
    for (size_t nSlash = sPath.find('/', 1); nSlash != std::string::npos;
         nSlash = sPath.find('/', nSlash + 1))
        mkdir(sPath.substr(0, nSlash).c_str(), 0777);
    std::ofstream out(sPath, std::ios::binary);
    out << sText;
    out.close();
    if (!out)
        std::fprintf(stderr, "planter: can't write %s\n", sPath.c_str());
    return bool(out);
}

struct CSource
{
    std::string m_sName;
    std::string m_sText;
    std::vector<CPlace> m_Places;
    std::vector<CPlanted> m_Planted;
};

struct CChoice
{
    size_t m_nSource;
    size_t m_nPlace;
};

// Every place once, in random order, with one of the ways to make it wrong. Own arithmetic, since the standard
// library's distributions differ from one to the next.
std::vector<CChoice> Shuffled(const std::vector<CSource>& sources, uint64_t nSeed)
{
    std::mt19937_64 random(nSeed);
    std::vector<CChoice> choices;
    for (size_t nSource = 0; nSource < sources.size(); ++nSource)
    {
        std::map<std::tuple<size_t, int, std::string>, std::vector<size_t>> ways;
        const std::vector<CPlace>& places = sources[nSource].m_Places;
        for (size_t i = 0; i < places.size(); ++i)
        {
            const CEdit& edit = places[i].m_Edits.front();
            ways[{edit.m_nAt, edit.m_eKind, places[i].m_sOld}].push_back(i);
        }
        for (const auto& [key, equal] : ways)
            choices.push_back({nSource, equal[random() % equal.size()]});
    }
    for (size_t i = choices.size(); i > 1; --i)
        std::swap(choices[i - 1], choices[random() % i]);
    return choices;
}

std::set<int> ReadDropped(const std::string& sOut)
{
    std::set<int> dropped;
    std::ifstream in(sOut + "/dropped.txt");
    for (int nFault = 0; in >> nFault;)
        dropped.insert(nFault);
    return dropped;
}

int PlantAll(const std::string& sRoot, const std::string& sOut, uint64_t nSeed, size_t nCount,
             const std::vector<std::string>& names)
{
    std::vector<CSource> sources(names.size());
    for (size_t i = 0; i < names.size(); ++i)
    {
        sources[i].m_sName = names[i];
        if (!ReadFile(sRoot + "/" + names[i], sources[i].m_sText))
        {
            std::fprintf(stderr, "planter: can't read %s/%s\n", sRoot.c_str(), names[i].c_str());
            return 1;
        }
        sources[i].m_Places = FindPlaces(sources[i].m_sText);
    }

    const std::vector<CChoice> choices = Shuffled(sources, nSeed);
    const std::set<int> dropped = ReadDropped(sOut);
    std::string sFaults;
    size_t nPlanted = 0;
    for (size_t i = 0; i < choices.size() && nPlanted < nCount; ++i)
    {
        const int nFault = int(i) + 1;
        if (dropped.count(nFault))
            continue;
        CSource& source = sources[choices[i].m_nSource];
        const CPlace& place = source.m_Places[choices[i].m_nPlace];
        source.m_Planted.push_back({nFault, &place});
        sFaults += std::to_string(nFault) + '\t' + source.m_sName + '\t' + std::to_string(place.m_nLine) +
                   '\t' + place.m_sOld + '\t' + place.m_sNew + '\n';
        ++nPlanted;
    }
    for (const CSource& source : sources)
    {
        const std::string sHead =
            "#include \"mutants/EmberdeckFault.h\"\n#line 1 \"" + sRoot + "/" + source.m_sName + "\"\n";
        if (!WriteIfChanged(sOut + "/" + source.m_sName, sHead + Plant(source.m_sText, source.m_Planted)))
            return 1;
    }
    std::printf("%zu faults in %zu places of %zu files\n", nPlanted, choices.size(), sources.size());
    return WriteIfChanged(sOut + "/faults.txt", sFaults) ? 0 : 1;
}

// A fault's place as the compiler names it.
struct CFaultLine
{
    int m_nFault;
    std::string m_sFile;
    std::string m_sFileAndLine; // "FILE:LINE:"
};

std::vector<CFaultLine> ReadFaults(const std::string& sOut)
{
    std::vector<CFaultLine> faults;
    std::ifstream in(sOut + "/faults.txt");
    for (std::string sLine; std::getline(in, sLine);)
    {
        std::istringstream fields(sLine);
        std::string sFault, sFile, sNumber;
        if (std::getline(fields, sFault, '\t') && std::getline(fields, sFile, '\t') &&
            std::getline(fields, sNumber, '\t'))
            faults.push_back({std::atoi(sFault.c_str()), sFile, sFile + ":" + sNumber + ":"});
    }
    return faults;
}

bool IsCause(const std::string& sLine)
{
    return sLine.find(": error:") != std::string::npos || sLine.find("required from") != std::string::npos;
}

// What one failed compile tells against: the faults on the lines of its errors; if there are none, those on any line
// that it names; if there are none either, all of the file.
void Accuse(const std::vector<std::string>& words, const std::string& sOut,
            const std::vector<CFaultLine>& faults, std::set<int>& dropped)
{
    const auto AddNamed = [&](bool bCausesOnly)
    {
        bool bFound = false;
        for (const std::string& sWord : words)
        {
            for (const CFaultLine& fault : faults)
            {
                if ((!bCausesOnly || IsCause(sWord)) && sWord.find(fault.m_sFileAndLine) != std::string::npos)
                {
                    dropped.insert(fault.m_nFault);
                    bFound = true;
                }
            }
        }
        return bFound;
    };
    if (AddNamed(true) || AddNamed(false))
        return;
    for (const CFaultLine& fault : faults)
    {
        for (const std::string& sWord : words)
        {
            if (sWord.find(sOut + "/" + fault.m_sFile) != std::string::npos)
                dropped.insert(fault.m_nFault);
        }
    }
}

int Drop(const std::string& sOut, const std::string& sLog)
{
    const std::vector<CFaultLine> faults = ReadFaults(sOut);
    std::set<int> dropped;
    std::vector<std::string> words;
    std::ifstream in(sLog);
    for (std::string sLine; std::getline(in, sLine);)
    {
        if (sLine.compare(0, 7, "FAILED:") == 0)
        {
            Accuse(words, sOut, faults, dropped);
            words.clear();
        }
        words.push_back(sLine);
    }
    Accuse(words, sOut, faults, dropped);

    std::ofstream out(sOut + "/dropped.txt", std::ios::app);
    for (int nFault : dropped)
        out << nFault << '\n';
    std::printf("%zu\n", dropped.size());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> args(argv + 1, argv + argc);
    if (args.size() > 5 && args[0] == "plant")
        return PlantAll(args[1], args[2], std::strtoull(args[3].c_str(), nullptr, 10),
                        std::strtoull(args[4].c_str(), nullptr, 10), {args.begin() + 5, args.end()});
    if (args.size() == 3 && args[0] == "drop")
        return Drop(args[1], args[2]);
    std::fprintf(stderr, "usage: planter plant ROOT OUT SEED COUNT FILE... | planter drop OUT LOG\n");
    return 2;
}
