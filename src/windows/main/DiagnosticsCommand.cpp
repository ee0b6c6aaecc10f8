#include "windows/main/DiagnosticsCommand.h"

#include "board/AIBTools.h"
#include "reports/Diagnostics.h"

#include <QtGlobal>

namespace ombrix {

void SaveDiagnostics(Station& station, const std::string& options) {
    Platform& world = station.World;
    const std::string archive =
        MakeDiagnostics(station, {options, {std::string("Qt ") + qVersion()}});
    const std::string path = DiagnosticsPath(world);
    world.Files.ReplaceFile(path, archive);
    const Answer answer = world.Messages.Ask({"The diagnostics have been saved:\r\n\r\n   " +
                                                  world.Files.RealPath(path).string() +
                                                  "\r\n\r\nDo you want to open the folder?",
                                              MessageIcon::Question, MessageButtons::YesNo});
    if (answer == Answer::Yes)
        ShellOpenFile(world.Files, world.Documents, GetFolderOfPath(path));
}

} // namespace ombrix
