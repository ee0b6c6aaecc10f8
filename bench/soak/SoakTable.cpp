#include "soak/Soak.h"

#include <fmt/format.h>

namespace ombrix::soak {

namespace {

std::string Heading(const char* first, const char* rest) {
    std::string text = fmt::format("| {} | tried |", first);
    std::string rule = "|---|---|";
    for (const char* ending : EndingNames) {
        text += fmt::format(" {} |", ending);
        rule += "---|";
    }
    return text + rest + "\n" + rule + "---|---|---|\n";
}

std::string Row(const char* name, const Tally& tally) {
    std::string text = fmt::format("| {} | {} |", name, tally.Tried);
    for (const int count : tally.Endings)
        text += fmt::format(" {} |", count);
    return text +
           fmt::format(" {} | {} | {} |\n", tally.TooLate, tally.AirRecovered, tally.EpromInPart);
}

} // namespace

std::string SoakTable::Text() const {
    constexpr const char* rest = " over before it came | air off at the next detection | EPROM in "
                                 "part, told |";
    std::string text = Heading("fault", rest);
    for (const auto& [fault, tally] : FaultTallies)
        text += Row(AllFaults().at(fault).Name, tally);
    text += "\n" + Heading("procedure", rest);
    for (const auto& [procedure, tally] : ProcedureTallies)
        text += Row(Procedures().at(procedure).Name, tally);
    text += "\n| fault |";
    std::string rule = "|---|";
    for (const char* phase : PhaseNames) {
        text += fmt::format(" {} |", phase);
        rule += "---|";
    }
    text += "\n" + rule + "\n";
    for (const auto& [fault, tally] : FaultTallies) {
        text += fmt::format("| {} |", AllFaults().at(fault).Name);
        for (std::size_t phase = 0; phase < PhaseNames.size(); ++phase) {
            const auto tried = FaultPhases.find({fault, static_cast<Phase>(phase)});
            text += fmt::format(" {} |", tried == FaultPhases.end() ? 0 : tried->second);
        }
        text += "\n";
    }
    return text;
}

} // namespace ombrix::soak
