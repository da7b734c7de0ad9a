// Runs a fuzz body without a fuzzer: each file of its corpus and each finding of old, and mutations of them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>

#include "FuzzTools.h"
#include "support/TempDir.h"

extern "C" void __sanitizer_set_death_callback(void (*pfnCallback)()) __attribute__((weak));

namespace
{
// Each program is named after its target.
const std::string s_sTarget = std::string(program_invocation_short_name).substr(sizeof("fuzz_replay_") - 1);

constexpr int c_nMutations = 3000;
constexpr size_t c_nMaxInput = 8192;
constexpr std::chrono::milliseconds c_Budget(1200); // of mutations; a slow build runs fewer

std::string s_sInput;

// Leaves the input that a body ended the process on, to be kept among the findings.
void KeepInput()
{
    const std::string sPath = "fuzz_" + s_sTarget + "_finding";
    if (std::FILE* pFile = std::fopen(sPath.c_str(), "wb"))
    {
        std::fwrite(s_sInput.data(), 1, s_sInput.size(), pFile);
        std::fclose(pFile);
        std::fprintf(stderr, "the input is in %s\n", sPath.c_str());
    }
}

void Feed(const std::string& sInput)
{
    s_sInput = sInput;
    // A copy of exactly this size, so that a sanitizer sees a read beside it.
    const std::unique_ptr<uint8_t[]> pExact(new uint8_t[sInput.size()]);
    std::copy(sInput.begin(), sInput.end(), pExact.get());
    LLVMFuzzerTestOneInput(pExact.get(), sInput.size());
}

std::vector<std::string> ReadInputs(const char* pszFolder)
{
    const std::string sDir = std::string(EMBERDECK_SOURCE_DIR "/fuzz/") + pszFolder + "/" + s_sTarget;
    std::vector<std::string> names, inputs;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(sDir, error))
        names.push_back(entry.path());
    std::sort(names.begin(), names.end()); // the same mutations on every machine
    for (const std::string& sName : names)
        inputs.push_back(ReadBytes(sName));
    return inputs;
}

class CMutator
{
public:
    explicit CMutator(const std::vector<std::string>& inputs) : m_Inputs(inputs) {}

    std::string Next()
    {
        std::string s = Pick();
        for (size_t n = 1 + Below(4); n != 0; --n)
            Change(s);
        s.resize(std::min(s.size(), c_nMaxInput));
        return s;
    }

private:
    size_t Below(size_t n) { return n == 0 ? 0 : m_Random() % n; }
    const std::string& Pick() { return m_Inputs[Below(m_Inputs.size())]; }
    void Change(std::string& s)
    {
        static const char* const c_Bytes[] = {
            "\xFF\xFF\xFF\xFF", "\x7F", "\x80", "(", ")", "\"", "\n", "=", "]", "\\"};
        const size_t nAt = Below(s.size()), nLen = 1 + Below(Below(2) ? 8 : 200);
        switch (Below(7))
        {
        case 0:
            s.insert(nAt, c_Bytes[Below(std::size(c_Bytes))]);
            break;
        case 1:
            s.erase(nAt, nLen);
            break;
        case 2:
            s.insert(nAt, s.substr(Below(s.size()), nLen));
            break;
        case 3:
        {
            const std::string& sOther = Pick();
            s.replace(nAt, nLen, sOther.substr(Below(sOther.size()), nLen));
            break;
        }
        case 4:
            s.insert(nAt, 4, '\0');
            break;
        case 5:
            s.resize(nAt);
            break;
        default:
            if (!s.empty())
                s[nAt] = static_cast<char>(Below(2) ? s[nAt] ^ 1 << Below(8) : Below(256));
        }
    }

    const std::vector<std::string>& m_Inputs;
    std::mt19937 m_Random{2024};
};
} // namespace

TEST(Replay, CorpusFindingsAndMutations)
{
    if (__sanitizer_set_death_callback)
        __sanitizer_set_death_callback(KeepInput);
    std::signal(SIGABRT, [](int) { KeepInput(); });
    std::vector<std::string> inputs = ReadInputs("corpus");
    ASSERT_FALSE(inputs.empty());
    for (std::string& sInput : ReadInputs("findings"))
        inputs.push_back(std::move(sInput));
    inputs.emplace_back();
    for (const std::string& sInput : inputs)
        Feed(sInput);

    CMutator mutator(inputs);
    const auto end = std::chrono::steady_clock::now() + c_Budget;
    int nDone = 0;
    for (; nDone < c_nMutations && std::chrono::steady_clock::now() < end; ++nDone)
        Feed(mutator.Next());
    std::printf("%zu inputs, %d mutations\n", inputs.size(), nDone);
}
