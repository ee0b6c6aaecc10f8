#include "board/Detection.h"
#include "board/Outputs.h"
#include "board/eprom/EpromFields.h"
#include "board/eprom/EpromGuard.h"
#include "board/eprom/EpromWriter.h"
#include "board/eprom/PartialWrite.h"
#include "board/unit/CalibrationSummary.h"
#include "platform/os/FolderDrive.h"
#include "platform/ports/Folders.h"
#include "platform/text/Text.h"
#include "reports/Diagnostics.h"
#include "terminal/Command.h"
#include "terminal/Commands.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;

/// A command's result says all that is worth knowing of a detection.
class QuietDetectionView final : public DetectionView {
  public:
    void ShowOutcome(const std::string& /*text*/) override {}
    void ShowInitState(const std::string& /*text*/) override {}
    void ShowProgramming(const std::string& /*first*/, const std::string& /*second*/) override {}
    void SetTabCaption(std::int32_t /*board*/, const std::string& /*caption*/) override {}
};

/// What another program has set up is not ready for this one.
bool IsReady(const AIB& board) {
    return board.MFCReady() && board.Programmed();
}

/// Null when the board has not said.
Json ReadyJson(const AIB& board) {
    return board.MFCReadyAnswer().Taken() ? Json(IsReady(board)) : Json();
}

std::string ReadyText(const AIB& board) {
    if (!board.MFCReadyAnswer().Taken())
        return "unknown";
    return IsReady(board) ? "ready" : "not ready";
}

/// That, and why, it is not known whether MFCs are ready; empty when it is.
std::string UnknownReadinessText(const AIB& board) {
    const BoardAnswer& answer = board.MFCReadyAnswer();
    return answer.Taken() ? std::string()
                          : fmt::format("Board {} does not say whether its MFCs are ready: {}",
                                        board.DevSerialNum(), answer.Sentence());
}

/// Adds what has failed to the error of a result.
void AddFailure(CommandResult& result, const std::string& failure) {
    if (failure.empty())
        return;
    result.Status = ExitStatus::NotPassed;
    result.Error += (result.Error.empty() ? "" : "\n") + failure;
}

Json BoardJson(AIB& board) {
    return {{"index", board.BoardIndex()},       {"bus", board.BusTypeText()},
            {"serial", board.DevSerialNum()},    {"hwVersion", board.HWVersion()},
            {"devType", board.DevType()},        {"vendor", Trimmed(board.Vendor())},
            {"module", Trimmed(board.Module())}, {"buildDate", Trimmed(board.BuildDate())},
            {"configBits", board.ConfigBits()},  {"digitalSetup", board.IsDigitalSetup()},
            {"mfcReady", ReadyJson(board)},      {"fpgaFile", board.FPGAFileName()},
            {"programmed", board.Programmed()}};
}

std::string BoardText(AIB& board) {
    return fmt::format("AIB_{}: {}, {}, {}, build {}, {} setup, MFCs {}{}\n", board.DevSerialNum(),
                       board.BusTypeText(), Trimmed(board.Vendor()), Trimmed(board.Module()),
                       Trimmed(board.BuildDate()), board.IsDigitalSetup() ? "digital" : "analog",
                       ReadyText(board), board.Programmed() ? "" : ", not programmed");
}

/// That, and why, a board has not been programmed; empty when it has.
std::string UnprogrammedText(CommandContext& context, const AIB& board) {
    if (board.Programmed())
        return {};
    BoardClaims& claims = context.TheStation.Claims;
    const std::int32_t serial = board.DevSerialNum();
    return fmt::format("Board {} has not been programmed: {}.", serial,
                       claims.ClaimUnlessTaken(serial)
                           ? "it has refused its configuration file"
                           : "it is in use by " + claims.Holder(serial));
}

void TellOfPartialWrites(Station& station) {
    for (const auto& [board, write] : PartlyWrittenBoards(station))
        station.World.Messages.Ask(
            {PartialWriteWarning(*board, write) +
                 "\r\n\r\nPlease repeat what was begun, or restore that file: ombrixctl eprom "
                 "restore FILE",
             MessageIcon::Warning, MessageButtons::Ok});
}

/// What `info` says of an EPROM that was written in part; null when it was not.
Json PartialWriteJson(const std::optional<PartialWrite>& write) {
    if (!write)
        return nullptr;
    return {{"purpose", write->Purpose},
            {"begun", write->Since},
            {"program", write->Program},
            {"backup", write->Backup}};
}

} // namespace

void DetectBoards(CommandContext& context) {
    QuietDetectionView view;
    if (DetectAndProgramBoards(context.TheStation, view)) {
        TellOfPartialWrites(context.TheStation);
        return;
    }
    const std::string& trouble = context.Messages.LastTrouble();
    throw CommandError(ExitStatus::NoBoard,
                       trouble.empty() ? "No AIBs have been detected. Please check cables and "
                                         "power of the boards."
                                       : WithPlainLineEnds(trouble));
}

AIB& ChosenBoard(CommandContext& context) {
    DetectBoards(context);
    TellOfUnfinishedRuns(context);
    Station& station = context.TheStation;
    const std::int32_t count = station.AIBList.AIBCount();
    if (context.Board >= count)
        throw CommandError(
            ExitStatus::NoBoard,
            fmt::format("There is no board {}: {} found, counted from 0.", context.Board, count));
    station.CurrentAIB = station.AIBList.AIB(context.Board);
    station.Calibration().ReadEPROMValues();
    if (const std::string lack = UnprogrammedText(context, *station.CurrentAIB); !lack.empty())
        station.World.Messages.Ask({lack, MessageIcon::Warning, MessageButtons::Ok});
    return *station.CurrentAIB;
}

CommandResult RunDetect(CommandContext& context) {
    CommandResult result;
    result.Json["boards"] = Json::array();
    try {
        DetectBoards(context);
    } catch (const CommandError& error) {
        result.Status = error.Status();
        result.Error = error.what();
        return result;
    }
    AIBList& list = context.TheStation.AIBList;
    for (std::int32_t index = 0; index < list.AIBCount(); ++index) {
        AIB& board = *list.AIB(index);
        result.Json["boards"].push_back(BoardJson(board));
        result.Text += BoardText(board);
        AddFailure(result, UnprogrammedText(context, board));
        AddFailure(result, UnknownReadinessText(board));
    }
    return result;
}

CommandResult RunInfo(CommandContext& context) {
    AIB& board = ChosenBoard(context);
    const ACURecord& record = context.TheStation.Calibration().Record();
    const CalibrationSummary summary = SumUp(record);
    const auto partial = FindPartialWrite(context.TheStation.World, board.SerialNumber());
    CommandResult result;
    if (!record.IsRead()) {
        result.Json["board"] = BoardJson(board);
        result.Json["writtenInPart"] = PartialWriteJson(partial);
        for (const char* unknown : {"acuInitialised", "mfcNumber", "velocitySystem",
                                    "velocityAudit", "pressureSystem", "pressureAudit"})
            result.Json[unknown] = nullptr;
        result.Text = BoardText(board);
        AddFailure(result, WithPlainLineEnds(record.UnreadText()));
        AddFailure(result, UnknownReadinessText(board));
        return result;
    }
    result.Json = {{"board", BoardJson(board)},
                   {"acuInitialised", record.ACUInitialised},
                   {"mfcNumber", summary.MFCNumber},
                   {"velocitySystem", summary.VelocitySystem.Text},
                   {"velocityAudit", summary.VelocityAudit.Text},
                   {"pressureSystem", summary.PressureSystem.Text},
                   {"pressureAudit", summary.PressureAudit.Text},
                   {"writtenInPart", PartialWriteJson(partial)}};
    result.Text =
        BoardText(board) + fmt::format("ACU record       {}\nMFC number       {}\n"
                                       "Velocity system  {}\nVelocity audit   {}\n"
                                       "Pressure system  {}\nPressure audit   {}\n",
                                       record.ACUInitialised ? "initialised" : "not initialised",
                                       summary.MFCNumber, summary.VelocitySystem.Text,
                                       summary.VelocityAudit.Text, summary.PressureSystem.Text,
                                       summary.PressureAudit.Text);
    if (partial)
        AddFailure(result, fmt::format("EPROM {}", PartialWriteText(*partial)));
    AddFailure(result, UnknownReadinessText(board));
    return result;
}

CommandResult RunSelfTest(CommandContext& context) {
    AIB& board = ChosenBoard(context);
    context.TheStation.Claims.Require(board.DevSerialNum());
    WalkingFindings found;
    const bool passed = board.RunWalkingRegisterTest(&found);
    board.CheckMFCReady();
    // A bit that fails settles the verdict, whatever was not answered.
    const bool isKnown = found.Refusal.Taken() || !found.FailedBits.empty();
    CommandResult result;
    result.Json = {{"registersPassed", isKnown ? Json(passed) : Json()},
                   {"failedBits", found.FailedBits},
                   {"mfcReady", ReadyJson(board)}};
    result.Text =
        fmt::format("Registers: {}\nMFCs: {}\n",
                    !isKnown ? "unknown" : (passed ? "passed" : "failed"), ReadyText(board));
    if (!found.FailedBits.empty())
        AddFailure(result, fmt::format("Register bits {} do not read back.",
                                       fmt::join(found.FailedBits, ", ")));
    if (!found.Refusal.Taken())
        AddFailure(result, fmt::format("The test register of board {} was not answered for: {}",
                                       board.DevSerialNum(), found.Refusal.Sentence()));
    AddFailure(result, UnknownReadinessText(board));
    if (board.MFCReadyAnswer().Taken() && !IsReady(board))
        AddFailure(result, "The MFCs are not ready.");
    return result;
}

CommandResult RunAdc(CommandContext& context) {
    AIB& board = ChosenBoard(context);
    CommandResult result;
    const auto failed = [&result](const std::string& input, const BoardAnswer& answer) {
        result.Status = ExitStatus::NotPassed;
        result.Error += fmt::format("{}{} cannot be read: {}", result.Error.empty() ? "" : "\n",
                                    input, answer.Text());
        return Json();
    };
    result.Json["adc"] = Json::array();
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel) {
        BoardAnswer answer;
        const auto value = board.Reading(channel, &answer);
        const std::string input = fmt::format("ADC {}", channel);
        result.Text += fmt::format("{}    {}\n", input, ShownText(value));
        result.Json["adc"].push_back(value ? Json(*value) : failed(input, answer));
    }
    std::int32_t pressure = 0;
    const AIBStatus status = board.ReadReg(AIB::PressureRegister, pressure);
    const bool answered = status == Status::NoError;
    result.Text +=
        fmt::format("Pressure {}\n", ShownText(answered ? std::optional(pressure) : std::nullopt));
    result.Json["pressureRegister"] =
        answered ? Json(pressure) : failed("The pressure register", {status});
    return result;
}

CommandResult RunDac(CommandContext& context, std::int32_t channel, std::int32_t value) {
    AIB& board = ChosenBoard(context);
    context.TheStation.Claims.Require(board.DevSerialNum());
    const std::int32_t sent = SliderScale::HeldToRange(value);
    const BoardAnswer answer = context.TheStation.Outputs.Set(board, channel, sent);
    if (answer.MFCsNotReady)
        throw CommandError(ExitStatus::NotPassed, answer.Text());
    if (!answer.Taken())
        throw CommandError(ExitStatus::NotPassed,
                           fmt::format("DAC {} cannot be set: {}", channel, answer.Text()));
    CommandResult result;
    result.Json["value"] = sent;
    result.Text = fmt::format("DAC {}    {}\n", channel, sent);
    return result;
}

CommandResult RunIdentity(CommandContext& context, std::int32_t serial, const std::string& setup) {
    ChosenBoard(context);
    const MFCSetup mfcs = MFCSetupOf(setup != "analog", setup != "digital");
    const AIBStatus status = WriteIdentity(context.TheStation, serial, mfcs);
    if (status != Status::NoError)
        throw CommandError(ExitStatus::NotStored,
                           "The identity could not be written: " + AIB::AIBErrorStr(status));
    context.TheStation.World.Messages.Ask(
        {"The AIB has been programmed - restart application to check.", MessageIcon::Information,
         MessageButtons::Ok});
    CommandResult result;
    const auto code = static_cast<std::int32_t>(mfcs);
    result.Json = {{"serial", serial}, {"code", code}};
    result.Text = fmt::format("Serial number {}, hardware configuration {}\n", serial, code);
    return result;
}

CommandResult RunMFCNumber(CommandContext& context, const std::string& number) {
    RequireMFCNumber(number);
    AIB& board = ChosenBoard(context);
    CommandResult result;
    try {
        EpromGuard guard(context.TheStation, "MFC Number");
        context.TheStation.Calibration().SaveMFCNumber(guard, number);
    } catch (const EpromMismatch& mismatch) {
        result.Status = ExitStatus::NotStored;
        result.Error = WithPlainLineEnds(mismatch.what());
    }
    std::string stored;
    std::int32_t address = ACUMemoryMap::MFCNumber;
    board.ReadEPROMString(address, stored, ACUMemoryMap::MFCNumberLength);
    result.Json["mfcNumber"] = Trimmed(stored);
    result.Text = fmt::format("MFC number {}\n", Trimmed(stored));
    return result;
}

CommandResult RunDiagnostics(CommandContext& context, const std::filesystem::path& file) {
    Platform& world = context.TheStation.World;
    const std::string archive = MakeDiagnostics(context.TheStation, {context.Options});
    CommandResult result;
    if (file.empty()) {
        AddFiles(result, {world.Files.RealPath(
                             StoreUnderFreeName(world.Files, DiagnosticsPath(world), archive))});
        return result;
    }
    ReplaceWholeFile(std::filesystem::absolute(file), archive);
    AddFiles(result, {std::filesystem::absolute(file)});
    return result;
}

} // namespace ombrix
