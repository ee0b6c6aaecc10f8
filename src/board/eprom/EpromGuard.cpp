#include "board/eprom/EpromGuard.h"

#include "board/eprom/PartialWrite.h"
#include "platform/os/FolderDrive.h"
#include "platform/os/ProgramLog.h"
#include "platform/ports/Folders.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace ombrix {

namespace {

/// What a message lists; the log has all.
constexpr std::size_t ListedPlaces = 5;

std::string Listed(const std::vector<EpromDifference>& differences,
                   const std::function<std::string(const EpromDifference&)>& show) {
    std::string text;
    for (std::size_t i = 0; i < std::min(differences.size(), ListedPlaces); ++i)
        text += "\r\n   " + show(differences.at(i));
    if (differences.size() > ListedPlaces)
        text += fmt::format("\r\n   and {} more", differences.size() - ListedPlaces);
    return text;
}

EpromImage ReadImage(AIB& board) {
    try {
        return EpromImage::Read(board);
    } catch (const BoardError& error) {
        throw BoardError(fmt::format("The board does not answer: {}.\r\n\r\nPlease check its cable "
                                     "and its power, then detect the boards again.",
                                     error.what()));
    }
}

} // namespace

EpromGuard::EpromGuard(Platform& world, BoardClaims& claims, AIB& board, std::string purpose,
                       Identity identity)
    : m_World(world), m_Claims(claims), m_Board(board), m_Purpose(std::move(purpose)),
      m_Identity(identity), m_Unit(fmt::format("ACU{:05}", board.SerialNumber())) {}

void EpromGuard::MakeReady() {
    if (IsReady())
        return;
    ClaimBoard();
    RequireSameBoard();
    ReadSteadily();
    Save();
}

void EpromGuard::ClaimBoard() {
    const std::int32_t serial = m_Board.SerialNumber();
    try {
        m_Claims.Require(serial);
    } catch (const BoardInUse& error) {
        Refuse(error.what());
    } catch (const DriveError& error) {
        Refuse(fmt::format("The board cannot be kept from other programs: {}.\r\n\r\nPlease make "
                           "the data folder writable, then try again.",
                           error.what()));
    }
}

void EpromGuard::RequireSameBoard() const {
    const std::int32_t reported = m_Board.ReportedSerial();
    const std::int32_t detected = m_Board.SerialNumber();
    constexpr const char* remedy = "\r\n\r\nPlease check its cable and its power, then detect the "
                                   "boards again.";
    if (reported != detected)
        Refuse(reported == 0
                   ? fmt::format("The board, detected with serial number {}, reports none now.{}",
                                 detected, remedy)
                   : fmt::format("The board reports serial number {} now; it was detected with "
                                 "{}.{}",
                                 reported, detected, remedy));
    if (reported == 0 && m_Identity == Identity::Required)
        Refuse("The board has no serial number.\r\n\r\nPlease write its identity, then detect the "
               "boards again.");
}

void EpromGuard::ReadSteadily() {
    m_Found = m_Content = ReadImage(m_Board);
    const auto differences = EpromDifferences(m_Content, ReadImage(m_Board));
    if (!differences.empty())
        Refuse("The link to the board is unsteady. Two readings of its EPROM differ:\r\n" +
               Listed(differences, PlaceText) +
               "\r\n\r\nPlease check the cable and its plugs, then try again.");
}

void EpromGuard::Save() {
    try {
        CreateFolderPath(m_World.Files, Paths::Backups);
        m_Backup = StoreUnderFreeName(m_World.Files,
                                      fmt::format("{}{}_{}_{}.bin", Paths::Backups, m_Unit,
                                                  DateText(m_World.Time.Now(), "yyyymmdd_hhnnss"),
                                                  FileNamePart(m_Purpose)),
                                      m_Content.Bytes());
    } catch (const DriveError& error) {
        Refuse(fmt::format("Its content cannot be saved first: {}.\r\n\r\nPlease make room on the "
                           "disk, or the folder writable, then try again.",
                           error.what()));
    }
    Log("EPROM saved as " + m_Backup);
}

bool EpromGuard::Write(const EpromWords& words, const Progress& progress) {
    if (IsReady())
        RequireSameBoard();
    else
        MakeReady();
    const EpromImage before = m_Content;
    NoteBeginning(words);
    Written written;
    bool whole = false;
    try {
        whole = WriteWords(words, progress, written);
    } catch (const std::exception& error) {
        // The log is to say what has been changed, and the operator that it is a part only.
        ReadBack(written);
        NoteEnd(words, false);
        if (m_Content == before)
            throw;
        throw EpromError(fmt::format(
            "The writing to the EPROM of {} was broken off: {}\r\n\r\nIt has been written in part. "
            "Please repeat \"{}\", or restore the content from before, which lies in\r\n\r\n   {}",
            m_Unit, error.what(), m_Purpose, m_World.Files.RealPath(m_Backup).string()));
    }
    ReadBack(written);
    NoteEnd(words, whole);
    return whole;
}

void EpromGuard::NoteBeginning(const EpromWords& words) const {
    std::set<std::int32_t> addresses;
    for (const EpromWords::Word& word : words.All())
        addresses.insert(word.Address);
    try {
        NotePartialWrite(m_World, m_Board.SerialNumber(), m_Purpose,
                         m_World.Files.RealPath(m_Backup), addresses);
    } catch (const DriveError& error) {
        Refuse(fmt::format("It cannot be noted that it is written: {}.\r\n\r\nPlease make room on "
                           "the disk, or the folder writable, then try again.",
                           error.what()));
    }
}

void EpromGuard::NoteEnd(const EpromWords& words, bool whole) const {
    const std::int32_t serial = m_Board.SerialNumber();
    const auto noted = FindPartialWrite(m_World, serial);
    if (!noted || m_IsOpen)
        return;
    std::set<std::int32_t> missing = noted->Addresses;
    if (whole) {
        for (const EpromWords::Word& word : words.All())
            missing.erase(word.Address);
    }
    if (missing.empty() || IsAsIn(noted->Backup))
        RemovePartialWrite(m_World, serial);
}

bool EpromGuard::IsAsIn(const std::string& backup) const {
    try {
        return EpromImage::FromBytes(ReadWholeFile(backup)) == m_Content;
    } catch (const std::exception&) {
        return false; // it is gone, or no image
    }
}

void EpromGuard::Settle() {
    m_IsOpen = false;
    RemovePartialWrite(m_World, m_Board.SerialNumber());
}

bool EpromGuard::WriteWords(const EpromWords& words, const Progress& progress, Written& written) {
    const AIB::EpromWriting writing(m_Board);
    for (const EpromWords::Word& word : words.All()) {
        if (progress && !progress(word.Address))
            return false;
        // A call that throws has left its own reason, and the word as it was.
        const AIBStatus status = m_Board.WriteEPROM(word.Address, word.Value);
        written.Words.insert_or_assign(word.Address, word.Value);
        if (written.Failure == Status::NoError)
            written.Failure = status;
    }
    return true;
}

void EpromGuard::ReadBack(const Written& written) {
    EpromImage wanted = m_Content;
    EpromImage found = m_Content;
    std::vector<EpromMismatch::Word> wrong;
    AIBStatus status = Status::NoError;
    for (const auto& [address, word] : written.Words)
        m_Unread.insert(address);
    for (const auto& [address, word] : written.Words) {
        std::int32_t stored = 0;
        status = m_Board.ReadEPROM(address, stored);
        if (status != Status::NoError)
            break;
        m_Unread.erase(address);
        wanted.SetWord(address, word);
        found.SetWord(address, stored);
        if (stored != word)
            wrong.push_back({address, stored});
    }
    for (const EpromDifference& difference : EpromDifferences(m_Content, found))
        Log("EPROM " + DifferenceText(difference));
    m_Content = found;
    if (status != Status::NoError)
        ReportUnreadable(status);
    if (!wrong.empty()) {
        NoteEnd({}, false);
        Report(wanted, std::move(wrong), written.Failure);
    }
}

bool EpromGuard::PutBack() {
    std::set<std::int32_t> addresses = DifferingWords(m_Found, m_Content);
    addresses.insert(m_Unread.begin(), m_Unread.end());
    m_NotPutBack.clear();
    m_IsOpen = false;
    if (addresses.empty()) {
        NoteEnd({}, false);
        return true;
    }
    EpromWords words;
    for (const std::int32_t address : addresses)
        words.WriteEPROM(address, m_Found.Word(address));
    Log("EPROM is put back as it was");
    try {
        Write(words);
    } catch (const std::exception& error) {
        const std::string reason = error.what();
        m_NotPutBack = reason.substr(0, reason.find("\r\n"));
    }
    return m_NotPutBack.empty();
}

std::string EpromGuard::ChangesText() const {
    const std::set<std::int32_t> changed = DifferingWords(m_Found, m_Content);
    std::string text;
    if (!changed.empty())
        text = fmt::format("Changed in the EPROM: {}.", PartsText(changed));
    if (!m_Unread.empty())
        text += fmt::format("{}Written, and not known to be in the EPROM: {}.",
                            text.empty() ? "" : " ", PartsText(m_Unread));
    if (text.empty())
        return "The EPROM is as it was.";
    if (!m_NotPutBack.empty())
        text += fmt::format(" It could not be put back: {} Please check the board's cable and "
                            "power, detect the boards again and restore the content from before: "
                            "{}",
                            m_NotPutBack, m_World.Files.RealPath(m_Backup).string());
    return text;
}

void EpromGuard::ReportUnreadable(AIBStatus status) const {
    const std::string reason = AIB::AIBErrorStr(status);
    Log("EPROM cannot be read back: " + reason);
    throw EpromError(fmt::format(
        "What was written to the EPROM of {} cannot be read back: {}.\r\n\r\nPlease check the "
        "board's cable and power, detect the boards again and repeat \"{}\". The content from "
        "before lies in\r\n\r\n   {}",
        m_Unit, reason, m_Purpose, m_World.Files.RealPath(m_Backup).string()));
}

void EpromGuard::Report(const EpromImage& wanted, std::vector<EpromMismatch::Word> wrong,
                        AIBStatus failure) const {
    const auto show = [](const EpromDifference& difference) {
        return fmt::format("{}: {} written, {} read", PlaceText(difference), difference.Old,
                           difference.New);
    };
    const auto differences = EpromDifferences(wanted, m_Content);
    for (const EpromDifference& difference : differences)
        Log("EPROM reads back wrong: " + show(difference));
    const std::string reason =
        failure == Status::NoError ? "" : fmt::format(" ({})", AIB::AIBErrorStr(failure));
    const std::string text = fmt::format(
        "The EPROM does not hold what was written.\r\n\r\n{} word{} of {}{}:{}\r\n\r\nPlease check "
        "the board, then repeat \"{}\". The content from before lies in\r\n\r\n   {}",
        wrong.size(), wrong.size() == 1 ? "" : "s", m_Unit, reason, Listed(differences, show),
        m_Purpose, m_World.Files.RealPath(m_Backup).string());
    throw EpromMismatch(text, std::move(wrong));
}

void EpromGuard::Refuse(const std::string& reason) const {
    Log("EPROM not written: " + reason.substr(0, reason.find("\r\n\r\nPlease")));
    throw EpromError(fmt::format("The EPROM of {} is not written. {}", m_Unit, reason));
}

void EpromGuard::Log(std::string_view line) const {
    WriteLog(m_World, fmt::format("{}, {}: {}", m_Unit, m_Purpose, line));
}

} // namespace ombrix
