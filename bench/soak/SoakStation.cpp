#include "soak/SoakStation.h"

#include "board/Detection.h"
#include "simulator/SimulatorFiles.h"

namespace ombrix::soak {

namespace {

class NoDetectionView final : public DetectionView {
  public:
    void ShowOutcome(const std::string& /*text*/) override {}
    void ShowInitState(const std::string& /*text*/) override {}
    void ShowProgramming(const std::string& /*first*/, const std::string& /*second*/) override {}
    void SetTabCaption(std::int32_t /*board*/, const std::string& /*caption*/) override {}
};

std::filesystem::path Made(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    return folder;
}

} // namespace

Answer SoakOperator::Ask(const Message& message) {
    m_Shown += message.Text + "\n";
    switch (message.Buttons) {
    case MessageButtons::YesNo:
    case MessageButtons::YesNoCancel: return message.DeclinedUnattended ? Answer::No : Answer::Yes;
    case MessageButtons::RetryCancel: return Answer::Cancel;
    default: return Answer::Ok;
    }
}

std::optional<std::string> SoakOperator::AskText(const std::string& /*prompt*/,
                                                 const std::string& proposed,
                                                 const std::string& /*title*/) {
    return proposed;
}

SoakWorld::SoakWorld(const std::string& bench, std::uint64_t seed,
                     const std::filesystem::path& root)
    : Root(Made(root / "C")), Folder(Root), Bench(Time, {bench, {}, seed, {}}) {
    PrepareSimulatorFolder(Root); // lays the FPGA configuration files
    Folder.Mount("T:", Made(root / "T"));
    Folder.Mount(SoakProgram::Templates, TEMPLATES_FOLDER);
}

SoakProgram::SoakProgram(SoakWorld& world)
    : World(world), TheStation(BoardServices{world.Library, Ports}) {}

bool SoakProgram::Detect() {
    NoDetectionView view;
    if (!DetectAndProgramBoards(TheStation, view))
        return false;
    TheStation.CurrentAIB = TheStation.AIBList.AIB(0);
    TheStation.Calibration().ReadEPROMValues();
    return true;
}

} // namespace ombrix::soak
