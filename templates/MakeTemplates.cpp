// Makes the report templates. They are made, not stored, so that a change to one can be read.
#include "ReportTemplates.h"
#include "platform/os/FolderDrive.h"

#include <cstdio>
#include <exception>
#include <filesystem>

namespace {

struct Template {
    const char* FileName;
    std::string (*Make)();
};

constexpr Template Templates[] = {
    {"ACUHealthCheck.xltx", ombrix::templates::MakeACUHealthCheck},
    {"PV16_ACUAudit_Velocity.xltx", ombrix::templates::MakePV16_ACUAudit_Velocity},
    {"PV17_ACUAudit_Pressure.xltx", ombrix::templates::MakePV17_ACUAudit_Pressure},
    {"QX_ACU_Calibration.xltx", ombrix::templates::MakeQX_ACU_Calibration},
    {"QX_ACU_Calibraiton_Info.xltx", ombrix::templates::MakeQX_ACU_Calibraiton_Info}};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: ombrix_make_templates FOLDER\n", stderr);
        return 2;
    }
    try {
        const std::filesystem::path folder = argv[1];
        std::filesystem::create_directories(folder);
        for (const Template& report : Templates)
            ombrix::ReplaceWholeFile(folder / report.FileName, report.Make());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "The templates have not been made: %s\n", error.what());
        return 1;
    }
    return 0;
}
