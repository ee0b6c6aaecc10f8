#include "terminal/DiagnosticsReport.h"

#include "platform/os/FolderDrive.h"
#include "reports/Diagnostics.h"
#include "terminal/ProcedureResult.h"

namespace ombrix {

CommandResult RunDiagnostics(CommandContext& context, const std::filesystem::path& file) {
    Platform& world = context.TheStation.World;
    const std::string archive = MakeDiagnostics(context.TheStation, {context.Options});
    const std::filesystem::path path = file.empty() ? world.Files.RealPath(DiagnosticsPath(world))
                                                    : std::filesystem::absolute(file);
    ReplaceWholeFile(path, archive);
    CommandResult result;
    AddFiles(result, {path});
    return result;
}

} // namespace ombrix
