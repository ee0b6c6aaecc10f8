#pragma once

#include "platform/ports/Platform.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// A text file of what is measured, line by line; each line ends with CR LF and reaches the
/// operating system as it is written. When the disk takes no more, the file goes on in the folder
/// for temporary files, so that a test need not end for it.
class LineFile {
  public:
    enum class Existing { Kept, Replaced };

    /// @param name stands for the file in messages ("calibration log")
    /// @param existing what becomes of a file of that path: one that is kept has the new one get
    ///        " (2)", … before its extension
    /// @throws DriveError
    static LineFile Begin(Platform& world, const std::string& name, const std::string& path,
                          Existing existing = Existing::Kept);
    /// The same for what must not be lost: where it cannot be begun, it begins in the folder for
    /// temporary files. @throws DriveError when that takes it neither
    static LineFile BeginAnywhere(Platform& world, const std::string& name,
                                  const std::string& path);

    /// A line that a continuation begins with too.
    /// @throws DriveError when the folder for temporary files takes it neither
    void WriteHeading(std::string_view line);
    /// @throws DriveError as above
    void WriteLine(std::string_view line);
    /// Why it ends early: a disk that does not take it costs this line and nothing else.
    void WriteLast(std::string_view line) noexcept;
    bool IsOpen() const { return m_File != nullptr; }
    void Close() { m_File.reset(); }
    /// Takes the files away again; one that stays is logged.
    void Remove();

    /// Real paths; a second one when the first file could not be written to its end.
    const std::vector<std::filesystem::path>& Files() const { return m_Files; }
    /// What to tell the operator of a file that is not, or not all of it, where it belongs.
    const std::string& Trouble() const { return m_Trouble; }

  private:
    LineFile(Platform& world, const std::string& name, const std::string& path)
        : m_World(world), m_Name(name), m_Path(path) {}
    void Take(std::unique_ptr<OutputFile> file);
    void GoOnElsewhere(const std::string& reason);

    Platform& m_World;
    std::string m_Name;
    std::string m_Path;
    std::unique_ptr<OutputFile> m_File;
    std::vector<std::string> m_Headings;
    std::vector<std::filesystem::path> m_Files;
    std::string m_Trouble;
};

} // namespace ombrix
