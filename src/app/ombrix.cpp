// The desktop program.
#include "app/Assembly.h"
#include "board/procedure/SafeOutputs.h"
#include "platform/os/CrashReport.h"
#include "platform/os/ProgramLog.h"
#include "platform/os/ProgramStop.h"
#include "platform/text/Paths.h"
#include "windows/desktop/QtOperator.h"
#include "windows/desktop/QtPorts.h"
#include "windows/desktop/SafeEnd.h"
#include "windows/desktop/WindowPlace.h"
#include "windows/main/AIBAccessoriesWindow.h"

#include <CLI/CLI.hpp>
#include <QIcon>
#include <QSettings>
#include <QTimer>

#include <exception>

namespace {

using namespace ombrix;

QIcon ProgramIcon() {
    QIcon icon;
    for (const int size : {16, 32, 48, 256})
        icon.addFile(QStringLiteral(":/icons/ombrix-%1.png").arg(size));
    return icon;
}

/// For the operator, once its file is written.
std::string TextAbout(const std::exception& error, const CrashReport& crash) {
    return UnexpectedErrorText(error, crash.WriteException(error));
}

/// The toolkit calls exit where its connection to the display breaks, in the middle of whatever
/// runs: no window is closed, no procedure ends.
void EndWithoutDisplay(Station& station, QtOperator& messages) noexcept {
    WriteLog(station.World, "The windows are gone, as when their display ends: outputs off");
    messages.DisplayIsGone();
    station.Outputs.TellNobody();
    station.Feed.Clear();
    SwitchAllOff(station);
}

constexpr auto LibraryKey = "Board/Library";

/// The library that an operator has chosen, where the command line names none.
void TakeChosenLibrary(StationOptions& options, const QSettings& settings) {
    if (options.Bench.empty() && options.Library == StationOptions().Library)
        options.Library = settings.value(LibraryKey, QString::fromStdString(options.Library))
                              .toString()
                              .toStdString();
}

/// Runs the main window until it is closed. @param options where it begins anew, with what
int RunWindows(StationOptions& options, bool& beginsAnew, SafeApplication& application,
               StopSignals& stopSignals, const CrashReport& crash) {
    beginsAnew = false;
    QtEventPump events;
    QtOperator messages;
    QtDocumentOpener documents;
    QtProgramEnd end;
    try {
        QSettings settings(QSettings::IniFormat, QSettings::UserScope, "ombrix", "ombrix");
        TakeChosenLibrary(options, settings);
        const WindowPlaces places(settings);
        Assembly assembly(options, {events, messages, documents, end}, "ombrix");
        const auto startAnew = [&](const std::string& library) {
            beginsAnew = true;
            options.Bench = library.empty() ? "acu" : "";
            if (library.empty())
                return;
            options.Library = library;
            settings.setValue(LibraryKey, QString::fromStdString(library));
        };
        AIBAccessoriesWindow window(
            assembly.TheStation(),
            {[&events] { events.EndProgram(); },
             [&assembly](OpenExcelView& wait) { return assembly.Reports(wait); }, ReadersOfJournals,
             OMBRIX_VERSION, assembly.OptionsText(), assembly.SimulationText(), startAnew});
        end.BeforeEnd = [&assembly] { SwitchAllOff(assembly.TheStation()); };
        const AtExit withoutDisplay([&] { EndWithoutDisplay(assembly.TheStation(), messages); });
        SafeEnd safeEnd(assembly.TheStation(), messages, stopSignals,
                        {[&events] { events.EndProgram(); }, [&window] { window.EndUnasked(); }});
        application.OnUnexpectedError = [&](const std::exception& error) {
            safeEnd.EndAfterError(TextAbout(error, crash));
        };
        QObject::connect(&safeEnd, &QObject::destroyed,
                         [&application] { application.OnUnexpectedError = nullptr; });
        window.show();
        QTimer::singleShot(0, &window, [&window, board = options.Board] {
            if (window.DetectAndProgramAIBs())
                window.ShowTab(board);
            window.OfferUnfinishedRuns();
        });
        return QApplication::exec();
    } catch (const DriveError& error) {
        messages.Ask({error.what(), MessageIcon::Critical, MessageButtons::Ok});
    } catch (const std::exception& error) {
        messages.Ask({TextAbout(error, crash), MessageIcon::Critical, MessageButtons::Ok});
    }
    return static_cast<int>(ExitStatus::NotStored);
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"Production and service tool for powder-testing accessories", "ombrix"};
    StationOptions options;
    AddStationOptions(app, options);
    app.set_version_flag("--version", "ombrix " OMBRIX_VERSION);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& success) {
        return app.exit(success); // --help, --version
    } catch (const CLI::ParseError& error) {
        app.exit(error);
        return static_cast<int>(ExitStatus::WrongUsage);
    }
    const CrashReport crash(options.DataRoot / Paths::DiagnosticsName, "ombrix", OMBRIX_VERSION);
    StopSignals stopSignals; // before the toolkit's threads
    SafeApplication application(argc, argv);
    QApplication::setWindowIcon(ProgramIcon());
    // Where windows carry no icons of their own, the desktop takes that of the program's entry.
    QGuiApplication::setDesktopFileName("org.ombrix.Ombrix");
    bool beginsAnew = false;
    int status = 0;
    do
        status = RunWindows(options, beginsAnew, application, stopSignals, crash);
    while (beginsAnew);
    return status;
}
