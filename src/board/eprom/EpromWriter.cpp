#include "board/eprom/EpromWriter.h"

#include "board/eprom/EpromGuard.h"
#include "platform/os/FolderDrive.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/Utf8Path.h"

#include <fmt/format.h>

#include <cstdio>
#include <stdexcept>

namespace ombrix {

AIBStatus WriteIdentity(Station& station, std::int32_t serial, MFCSetup setup) {
    EpromGuard guard(station, "Board Identity", EpromGuard::Identity::MayBeMissing);
    guard.MakeReady();
    AIB& board = *station.CurrentAIB;
    const auto code = static_cast<std::int32_t>(setup);
    const AIBStatus status = board.WriteAIBInfo(0, code, serial);
    WriteLog(station.World,
             fmt::format("ACU{:05}, Board Identity: serial number {} → {}, MFC setup {}: {}",
                         board.SerialNumber(), board.SerialNumber(), serial, code,
                         AIB::AIBErrorStr(status)));
    return status;
}

namespace {

EpromEnd WriteWords(Station& station, const char* purpose, const EpromWords& words,
                    const EpromProgress& progress) {
    const RunningProcedure running(station.Procedures, "writing of the EPROM");
    const bool whole = EpromGuard(station, purpose).Write(words, [&](std::int32_t address) {
        const bool goesOn = progress(address);
        station.World.Events.ProcessPendingEvents();
        return goesOn && !station.World.Events.ProgramEnding();
    });
    return whole ? EpromEnd::Done : EpromEnd::BrokenOff;
}

EpromEnd WriteImage(Station& station, const char* purpose, const EpromImage& image,
                    const EpromProgress& progress) {
    EpromWords words;
    for (std::int32_t address = 0; address < EpromBytes; address += EpromWordBytes)
        words.WriteEPROM(address, image.Word(address));
    return WriteWords(station, purpose, words, progress);
}

} // namespace

void WriteEPROMWord(Station& station, std::int32_t address, std::int32_t value) {
    EpromWords words;
    words.WriteEPROM(address, value);
    EpromGuard(station, "EPROM Word " + std::to_string(address)).Write(words);
}

EpromEnd WriteWholeEPROM(Station& station, std::int32_t value, const EpromProgress& progress) {
    const std::string unit = station.Calibration().Unit().SerialNumberStr();
    Message question{fmt::format("Are you sure you want to overwrite all memory locations with: "
                                 "{}\r\n\r\nUnit: {}",
                                 value, unit),
                     MessageIcon::Question, MessageButtons::YesNo};
    question.DefaultsToRefusal = true;
    if (station.World.Messages.Ask(question) != Answer::Yes)
        return EpromEnd::Declined;
    EpromImage image;
    for (std::int32_t address = 0; address < EpromBytes; address += EpromWordBytes)
        image.SetWord(address, value);
    return WriteImage(station, "EPROM To All", image, progress);
}

EpromImage ReadEpromFile(const std::filesystem::path& file) {
    const std::string bytes = ReadWholeFile(file);
    try {
        return EpromImage::FromBytes(bytes);
    } catch (const std::invalid_argument& error) {
        throw DriveError(fmt::format("{} is no saved EPROM: {}.", file.string(), error.what()));
    }
}

std::string OriginWarning(const std::filesystem::path& file, const AIB& board) {
    int serial = 0;
    if (std::sscanf(TextOf(file.filename()).c_str(), "ACU%5d_", &serial) != 1 ||
        serial == board.SerialNumber())
        return {};
    return fmt::format("This is the EPROM of another unit: ACU{:05}. It is about to go into "
                       "ACU{:05}.",
                       serial, board.SerialNumber());
}

EpromEnd RestoreEPROM(Station& station, const EpromImage& image, const EpromAgreement& agreed,
                      const EpromProgress& progress) {
    if (!agreed(EpromDifferences(EpromImage::Read(*station.CurrentAIB), image)))
        return EpromEnd::Declined;
    return WriteImage(station, "EPROM Restore", image, progress);
}

EpromEnd WriteEPROMFields(Station& station, const EpromWords& words, const EpromAgreement& agreed,
                          const EpromProgress& progress) {
    const EpromImage found = EpromImage::Read(*station.CurrentAIB);
    EpromImage wanted = found;
    for (const EpromWords::Word& word : words.All())
        wanted.SetWord(word.Address, word.Value);
    if (!agreed(EpromDifferences(found, wanted)))
        return EpromEnd::Declined;
    EpromWords changed;
    for (const std::int32_t address : DifferingWords(found, wanted))
        changed.WriteEPROM(address, wanted.Word(address));
    return WriteWords(station, "EPROM Fields", changed, progress);
}

} // namespace ombrix
