#pragma once

// Jobs of the real programs, whose calls to the machine are made to fail: whatever fails, the program says so and ends
// with 1; what was there is there or comes back; and after the next run nothing of ours is left behind.

#include <map>

#include "FaultBench.h"
#include "platform/Process.h"
#include "platform/ReplacingFile.h"

// One job of a program, on files of the bench.
struct CJob
{
    std::string m_sProgram;
    std::vector<std::string> m_Arguments; // what begins with an at sign is a file of the bench
    std::string m_sTarget;                // what it writes
    std::string m_sOld;                   // what stands there before
    bool m_bInPlace = false;              // what stood there may come back by "recover" alone
    std::string m_sSavedOver = {};        // what a save finds there before that; empty: there is none
};

struct CJobBench : CFaultBench
{
    CJobBench()
    {
        for (const char* pszName : {"a.Fx00a", "a.Fx00c"})
            m_Content[pszName] = MakeFile(pszName, 2, "Old");
        m_Content["b.Fx00a"] = MakeFile("b.Fx00a", 3, "New");
        for (const char* pszVariable : {"XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
            m_Environment.push_back(std::string(pszVariable) + "=" + dir.path("home"));
    }

    // A file of one of these forms is saved over in place.
    CJob Save(const std::string& sForm)
    {
        return {"emberdeck-batch",
                {"convert", "@b.Fx00a", "@file." + sForm},
                "file." + sForm,
                m_Content["a." + sForm],
                true};
    }
    CJob SaveOntoItself()
    {
        return {"emberdeck-batch",
                {"convert", "@file.Fx00a", "@file.Fx00a"},
                "file.Fx00a",
                m_Content["a.Fx00a"] + "\r\n",
                true};
    }
    CJob Update()
    {
        return {"emberdeck-batch",
                {"update", "--json", "@all"},
                "all/file.Fx00a",
                m_Content["a.Fx00a"] + "\r\n",
                true};
    }
    CJob Recovery()
    {
        return {"emberdeck-batch",   {"recover", "@file.Fx00a"}, "file.Fx00a", m_Content["b.Fx00a"], false,
                m_Content["a.Fx00a"]};
    }
    // What is written beside and takes its place as a whole.
    std::vector<CJob> Replacements()
    {
        const std::string sBatch = "emberdeck-batch", sWriter = "settings_writer";
        return {{sBatch, {"pack", "@b.Fx00a", "-o", "@file.Fx00p"}, "file.Fx00p", "old"},
                {sBatch, {"compress", "@b.Fx00a", "@file.z"}, "file.z", "old"},
                {sBatch, {"decompress", "@a.Fx00c", "@file.t"}, "file.t", "old"},
                {sWriter, {"settings", "@file.ini"}, "file.ini", "[Section]\r\nFirst=old\r\n"},
                {sWriter, {"palette", "@file.ccp"}, "file.ccp", "[Other]\r\na=b\r\n"}};
    }
    CJob DepFile()
    {
        Run(Command("emberdeck-batch", {"pack", "@b.Fx00a"}));
        return {"emberdeck-batch", {"pack", "@b.Fx00a", "--depfile", "@file.d"}, "file.d", "old"};
    }

    std::vector<std::string> Command(const std::string& sProgram,
                                     const std::vector<std::string>& arguments) const
    {
        std::vector<std::string> command = {EMBERDECK_BIN_DIR "/" + sProgram};
        for (const std::string& sArgument : arguments)
            command.push_back(sArgument[0] == '@' ? path(sArgument.substr(1)) : sArgument);
        return command;
    }
    std::vector<std::string> Command(const CJob& job) const
    {
        return Command(job.m_sProgram, job.m_Arguments);
    }

    // Variables are set besides those of the bench.
    CProcessResult Run(const std::vector<std::string>& command,
                       const std::vector<std::string>& variables = {})
    {
        CProcessRequest request;
        request.m_sProgram = command.front();
        request.m_Arguments.assign(command.begin() + 1, command.end());
        request.m_Environment = m_Environment;
        request.m_Environment.insert(request.m_Environment.end(), variables.begin(), variables.end());
        request.m_nTimeoutMs = 60000;
        const CProcessResult result = RunProcess(request);
        EXPECT_TRUE(result.m_bStarted && !result.m_bTimedOut) << command.front();
        return result;
    }

    // As it is before the job.
    void Prepare(const CJob& job)
    {
        std::filesystem::remove_all(dir.path("home"));
        if (!job.m_sSavedOver.empty())
        {
            dir.write("game/" + job.m_sTarget, job.m_sSavedOver);
            EXPECT_EQ(
                0, Run(Command("emberdeck-batch", {"convert", "@b.Fx00a", path(job.m_sTarget)})).m_nExitCode);
        }
        dir.write("game/" + job.m_sTarget, job.m_sOld);
    }
    // Does the job undisturbed, and notes what comes of it.
    void DoIt(const CJob& job)
    {
        Prepare(job);
        ASSERT_EQ(0, Run(Command(job)).m_nExitCode);
        m_sNew = ReadBytes(path(job.m_sTarget));
        ASSERT_TRUE(job.m_sOld != m_sNew) << "nothing to see";
        m_Others = Others(job);
    }
    // After a run in which something may have failed.
    void CheckOutcome(const CJob& job, const CProcessResult& result)
    {
        const std::string sTarget = path(job.m_sTarget);
        const std::string sFound = std::filesystem::exists(sTarget) ? ReadBytes(sTarget) : "";
        if (result.m_nExitCode == 0)
        {
            EXPECT_TRUE(sFound == m_sNew) << "done, it said";
        }
        else
        {
            EXPECT_EQ(1, result.m_nExitCode);
            EXPECT_FALSE(result.m_sErrors.empty()) << "failed without a word";
        }
        if (sFound != job.m_sOld && sFound != m_sNew)
        {
            EXPECT_TRUE(job.m_bInPlace) << "neither the old nor the new content";
            const CProcessResult recovered = Run(Command("emberdeck-batch", {"recover", sTarget}));
            EXPECT_EQ(0, recovered.m_nExitCode) << recovered.m_sErrors;
            EXPECT_TRUE(ReadBytes(sTarget) == job.m_sOld) << "the old content didn't come back";
        }
        EXPECT_EQ(0, Run(Command(job)).m_nExitCode) << "the next run";
        for (const auto& [sName, sBytes] : Others(job))
            EXPECT_TRUE(m_Others.count(sName) && m_Others.at(sName) == sBytes)
                << "changed, made or left behind: " << sName;
    }

    // All that is in the folders of the project and of the user's files, by name, but for the target and copies.
    std::map<std::string, std::string> Others(const CJob& job) const
    {
        std::map<std::string, std::string> files;
        for (const char* pszFolder : {"game", "home"})
        {
            if (!std::filesystem::exists(dir.path(pszFolder)))
                continue;
            for (const auto& entry : std::filesystem::recursive_directory_iterator(dir.path(pszFolder)))
                if (entry.is_regular_file() && entry.path() != path(job.m_sTarget) &&
                    entry.path().parent_path().filename() != "backups")
                    files[entry.path()] = ReadBytes(entry.path());
                else if (entry.path().filename().string().starts_with(c_szSafeWritePrefix))
                    files[entry.path()] = "left over";
        }
        return files;
    }

    std::map<std::string, std::string> m_Content;

private:
    std::vector<std::string> m_Environment;
    std::string m_sNew;
    std::map<std::string, std::string> m_Others;
};
