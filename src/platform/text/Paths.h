#pragma once

#include <array>
#include <string>
#include <string_view>

namespace ombrix {

/// Every folder and fixed file name of the programs, as operators know them: Windows-style paths,
/// which a Drive turns into real ones. Folders end with a backslash.
namespace Paths {

inline constexpr const char* DriveC = R"(C:\)";
inline constexpr const char* ShareDrive = "S:";
inline constexpr const char* TemporaryDrive = "T:";
/// The folder for temporary files: what cannot be stored where it belongs is kept there.
inline constexpr const char* Temporary = R"(T:\)";
/// Where the program stands, with the report templates below it.
inline constexpr const char* Program = R"(C:\Program Files\Ombrix)";
inline constexpr const char* Templates = R"(C:\Program Files\Ombrix\Templates\)";

/// The guides as they are shown to operators, and what they are called there.
inline constexpr const char* Guides = R"(C:\Program Files\Ombrix\Guides\)";
inline constexpr const char* OperatorsGuide = "operators-guide.html";
inline constexpr const char* ServiceGuide = "service-guide.html";
inline constexpr const char* TerminalGuide = "ombrixctl.html";
inline constexpr const char* FormatsGuide = "file-formats.html";

/// The instrument's system folder with the FPGA configuration files: its two places, in the order
/// in which they are searched.
inline constexpr std::array<std::string_view, 2> SystemFolders = {
    R"(C:\Program Files\Pulvatron\System\)", R"(C:\Program Files (x86)\Pulvatron\System\)"};
/// Where the instrument keeps its files: its folder below one of these, else a folder of the drive.
inline constexpr std::array<std::string_view, 2> ProgramFiles = {R"(C:\Program Files\)",
                                                                 R"(C:\Programme\)"};
inline constexpr const char* SystemSubfolder = R"(Pulvatron\System\)";

// What the programs keep beside what operators ask for.
inline constexpr const char* Backups = R"(C:\Backups\)";
inline constexpr const char* Claims = R"(C:\Claims\)";
inline constexpr const char* Diagnostics = R"(C:\Diagnostics\)";
/// Its name in the real data folder, where a program that dies writes past every drive.
inline constexpr const char* DiagnosticsName = "Diagnostics";
inline constexpr const char* History = R"(C:\History\)";
inline constexpr const char* Journals = R"(C:\Journals\)";
inline constexpr const char* Logs = R"(C:\Logs\)";
/// Sub-folder of the system folder.
inline constexpr const char* CalibrationLogs = "Calibration";

// Reports of health checks: on the production file server's share when it can be reached, which
// the marker tells, else on the local drive.
inline constexpr const char* ShareMarker = R"(S:\.aibshare)";
inline constexpr const char* ShareReports = R"(S:\Production\ACUs\_Initial Tests\)";
inline constexpr const char* LocalReports = R"(C:\ACUs\)";

// What the names of CSV files begin with.
inline constexpr const char* Recording = R"(C:\Data_)";
inline constexpr const char* AirSweep = R"(C:\AirData)";
inline constexpr const char* AirFlowTest = R"(C:\_AirTest_)";
inline constexpr const char* DigitalMFCTest = R"(C:\ACU_)";
/// The file of the test rig; each ramp begins it anew.
inline constexpr const char* TestRig = R"(C:\_AIBData.csv)";

/// Folder of the simulated bench in the real data folder.
inline constexpr const char* Simulator = "simulator";

} // namespace Paths

/// A text as a part of a file's name: an MFC number comes from an EPROM, which may hold anything.
/// What cannot stand in a file name becomes "_".
std::string FileNamePart(std::string text);

} // namespace ombrix
