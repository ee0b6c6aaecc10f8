#include "simulator/SimulatorFolder.h"

#include "platform/os/FolderDrive.h"

#include <system_error>

namespace ombrix {

namespace fs = std::filesystem;

fs::path PrepareSimulatorFolder(const fs::path& dataRoot) {
    fs::path folder = dataRoot / "simulator";
    if (fs::exists(folder))
        return folder;
    const fs::path systemFolder = dataRoot / "Program Files" / "Pulvatron" / "System";
    std::error_code error;
    fs::create_directories(systemFolder, error);
    if (error)
        throw DriveError(systemFolder.string() + " cannot be made: " + error.message());
    for (const char* name : {"AIBCNF00.bin", "AIBCNF01.bin", "AIBCNF02.bin", "AIBCNF03.bit"}) {
        if (!fs::exists(systemFolder / name))
            ReplaceWholeFile(systemFolder / name, "FPGA configuration of the simulated bench\n");
    }
    // Made last: a folder that is there says that the files were laid.
    fs::create_directory(folder, error);
    if (error)
        throw DriveError(folder.string() + " cannot be made: " + error.message());
    return folder;
}

} // namespace ombrix
