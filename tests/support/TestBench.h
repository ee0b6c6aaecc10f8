#pragma once

#include "board/Station.h"
#include "platform/os/Clocks.h"
#include "platform/os/FolderDrive.h"
#include "simulator/SimulatedBench.h"
#include "simulator/SimulatorFiles.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace ombrix {

/// Events by a script: actions that happen when the virtual clock has reached their time.
class ScriptedEvents final : public EventPump {
  public:
    explicit ScriptedEvents(const VirtualClock& clock) : m_Clock(clock) {}

    /// @param at_s seconds since the clock was made
    void At(double at_s, std::function<void()> action) {
        m_Script.emplace(at_s, std::move(action));
    }
    void EndProgram() { m_Ending = true; }
    /// Work done with every pass, such as handling a window's events.
    std::function<void()> EveryPass;

    void ProcessPendingEvents() override {
        if (EveryPass)
            EveryPass();
        const double now_s =
            static_cast<double>(m_Clock.Counter()) / static_cast<double>(m_Clock.Frequency());
        while (!m_Script.empty() && m_Script.begin()->first <= now_s) {
            const auto action = std::move(m_Script.begin()->second);
            m_Script.erase(m_Script.begin());
            action();
        }
    }
    bool ProgramEnding() const override { return m_Ending; }

  private:
    const VirtualClock& m_Clock;
    std::multimap<double, std::function<void()>> m_Script;
    bool m_Ending = false;
};

/// An operator who answers as told, in the affirmative when told nothing, and remembers what
/// was shown.
class ScriptedOperator final : public Operator {
  public:
    std::vector<Message> Shown;
    std::vector<std::string> Prompts;
    std::deque<Answer> Answers;
    std::deque<std::optional<std::string>> Texts;

    /// What happens while a message stands there.
    std::function<void(const Message& message)> WhileAsked;

    Answer Ask(const Message& message) override {
        Shown.push_back(message);
        if (WhileAsked)
            WhileAsked(message);
        if (!Answers.empty()) {
            const Answer answer = Answers.front();
            Answers.pop_front();
            return answer;
        }
        switch (message.Buttons) {
        case MessageButtons::YesNo:
        case MessageButtons::YesNoCancel: return Answer::Yes;
        case MessageButtons::RetryCancel: return Answer::Cancel;
        default: return Answer::Ok;
        }
    }
    std::optional<std::string> AskText(const std::string& prompt, const std::string& proposed,
                                       const std::string& /*title*/) override {
        Prompts.push_back(prompt);
        if (Texts.empty())
            return proposed;
        auto text = Texts.front();
        Texts.pop_front();
        return text;
    }
};

class RecordedDocuments final : public DocumentOpener {
  public:
    std::vector<std::filesystem::path> Opened;
    bool OpenDocument(const std::filesystem::path& path) override {
        Opened.push_back(path);
        return true;
    }
};

/// Thrown where the real program would be gone.
struct ProgramEnded {
    ExitStatus Status;
};

class ThrowingEnd final : public ProgramEnd {
  public:
    void EndProgram(ExitStatus status) override { throw ProgramEnded{status}; }
};

/// Puts a word into a board's EPROM past the guard that the program's own writing has.
inline void PutWord(AIB& board, std::int32_t address, std::int32_t word) {
    const AIB::EpromWriting writing(board);
    board.WriteEPROM(address, word);
}

/// A station on a simulated bench in virtual time, with its data in a temporary folder.
class TestBench {
  public:
    /// @param library in the place of the bench
    explicit TestBench(const std::string& bench = "acu",
                       const std::vector<std::string>& faults = {}, AIBControl* library = nullptr)
        : Bench(Time, {bench, Faults::Parse(faults), 1, {}}),
          TheStation({library == nullptr ? Bench : *library, World}) {
        PrepareSimulatorFolder(Folder.Path()); // for the FPGA files; EPROMs stay in memory
        std::filesystem::create_directory(Folder.Path() / "Kept");
        Files.Mount("T:", Folder.Path() / "Kept");
    }

    TemporaryFolder Folder;
    VirtualClock Time;
    ScriptedEvents Events{Time};
    ScriptedOperator Messages;
    FolderDrive Files{Folder.Path()};
    RecordedDocuments Documents;
    ThrowingEnd End;
    Platform World{Time, Events, Messages, Files, Documents, End};
    SimulatedBench Bench;
    Station TheStation;

    /// What flows on a board's channels a few seconds later, both together in bits. A set-point
    /// that stands counts, even where an analog demand came after it: it would flow again.
    std::int32_t FlowLater_bits(std::int32_t index = 0) {
        constexpr double settled_s = 5.0;
        Time.Advance(settled_s);
        const double now_s =
            static_cast<double>(Time.Counter()) / static_cast<double>(Time.Frequency());
        SimulatedBoard& board = Bench.Board(index);
        std::int32_t flow_bits = 0;
        for (const std::int32_t channel : {0, 1})
            flow_bits += std::max(board.FlowReading(channel, now_s), board.FlowSetPoint(channel));
        return flow_bits;
    }
    static constexpr std::int32_t NoFlow_bits = 40;

    /// Opens the library and makes the board current.
    AIB& Detect(std::int32_t index = 0) {
        std::int32_t count = 0;
        TheStation.AIBList.OpenAIBAPI(count);
        TheStation.CurrentAIB = TheStation.AIBList.AIB(index);
        return *TheStation.CurrentAIB;
    }
};

} // namespace ombrix
