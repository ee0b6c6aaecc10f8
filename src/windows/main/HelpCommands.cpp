#include "windows/main/HelpCommands.h"

#include "platform/ports/Folders.h"
#include "reports/Diagnostics.h"
#include "windows/widgets/Guarded.h"

#include <QtGlobal>

namespace ombrix {

void OpenFromMenu(Platform& world, const std::string& path) {
    Guarded(world.Messages, [&] { OpenOrTell(world, world.Files.RealPath(path)); });
}

void ShowAbout(Operator& messages, const std::string& version) {
    messages.Ask({"Ombrix " + version +
                      "\r\n\r\nProduction and service tool for the accessories of a "
                      "powder-testing instrument.",
                  MessageIcon::Information, MessageButtons::Ok, "About Ombrix"});
}

void SaveDiagnostics(Station& station, const std::string& options) {
    Platform& world = station.World;
    const std::string archive =
        MakeDiagnostics(station, {options, {std::string("Qt ") + qVersion()}});
    const std::string path = StoreUnderFreeName(world.Files, DiagnosticsPath(world), archive);
    const Answer answer = world.Messages.Ask({"The diagnostics have been saved:\r\n\r\n   " +
                                                  world.Files.RealPath(path).string() +
                                                  "\r\n\r\nDo you want to open the folder?",
                                              MessageIcon::Question, MessageButtons::YesNo});
    if (answer == Answer::Yes)
        ShellOpenFile(world.Files, world.Documents, GetFolderOfPath(path));
}

} // namespace ombrix
