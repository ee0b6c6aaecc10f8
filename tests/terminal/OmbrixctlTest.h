#pragma once

#include "platform/os/FolderDrive.h"
#include "support/TemporaryFolder.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace ombrix {

using nlohmann::json;

/// Runs the real program, its data in a folder of the test, and takes its JSON.
class OmbrixctlTest : public ::testing::Test {
  protected:
    /// What a run of the program came to.
    struct Outcome {
        int Status = -1;
        json Result;
    };

    /// @param input what is typed at the prompts; nothing ends the input at once
    /// @param under a command that runs the program
    Outcome Run(const std::string& arguments, const std::string& input = "",
                const std::string& under = "") const {
        const std::string line =
            fmt::format("printf '{}' | {} '{}' --json {} {} 2>'{}'", input, under, OMBRIXCTL,
                        Folders(), arguments, ErrorFile().string());
        std::string output;
        FILE* pipe = ::popen(line.c_str(), "r");
        std::array<char, 4096> buffer{};
        while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe))
            output.append(buffer.data(), count);
        const int status = ::pclose(pipe);
        return {WEXITSTATUS(status), json::parse(output)};
    }
    Outcome RunSimulated(const std::string& arguments, const std::string& input = "") const {
        return Run("--simulate " + arguments, input);
    }
    /// Ctrl-C as soon as the procedure has begun to drive, however slow the machine is.
    Outcome RunUntilItDrives(const std::string& arguments) const {
        std::filesystem::remove_all(Claims()); // with the mark of a run that was unplugged before
        return Run(arguments, "",
                   fmt::format("sh -c '\"$@\" & "
                               "while kill -0 $! && ! ls {}/*.running; do sleep 0.02; done "
                               ">/dev/null 2>&1; kill -INT $!; wait $!' sh",
                               Claims().string()));
    }
    std::filesystem::path Claims() const { return m_Folder.Path() / "Claims"; }
    std::string Folders() const {
        return fmt::format("--data-root '{}' --claims-folder '{}'", m_Data.string(),
                           Claims().string());
    }
    std::filesystem::path ErrorFile() const { return m_Folder.Path() / "stderr.txt"; }
    std::string Errors() const { return ReadWholeFile(ErrorFile()); }

    TemporaryFolder m_Folder;
    std::filesystem::path m_Data = m_Folder.Path();
};

} // namespace ombrix
