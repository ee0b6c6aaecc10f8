// Makes the report templates. They are made, not stored, so that a change to one can be read.
#include "ACUHealthCheck.h"
#include "platform/FolderDrive.h"

#include <cstdio>
#include <exception>
#include <filesystem>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: ombrix_make_templates FOLDER\n", stderr);
        return 2;
    }
    try {
        const std::filesystem::path folder = argv[1];
        std::filesystem::create_directories(folder);
        ombrix::ReplaceWholeFile(folder / "ACUHealthCheck.xltx",
                                 ombrix::templates::MakeACUHealthCheck());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "The templates have not been made: %s\n", error.what());
        return 1;
    }
    return 0;
}
