#include "benchtests/RampLog.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

namespace ombrix {

RampLog::RampLog(Drive& files, clsAIB& output, clsAIB& input)
    : m_File(files.OpenForWriting(Path)), m_Output{output, {}}, m_Input{input, {}} {
    m_File->Write("Timer,OutA0,OutA1,OutA2,OutA3,InA0,InA1,InA2,InA3,"
                  "OutB0,OutB1,OutB2,OutB3,InB0,InB1,InB2,InB3\r\n");
}

RampLog::Channels RampLog::Take(double now_s) {
    const Channels readBack = ReadInputs(m_Output, now_s);
    const Channels inputs = ReadInputs(m_Input, now_s);
    // Both boards' outputs come first, whatever the names in the heading say: the files that are
    // kept have this order.
    std::string line = GeneralText(static_cast<float>(now_s));
    for (const Channels& values : {OutputsOf(m_Output), OutputsOf(m_Input), readBack, inputs})
        line += fmt::format(",{}", fmt::join(values, ","));
    m_File->Write(line + "\r\n");
    ++m_Lines;
    return inputs;
}

RampLog::Channels RampLog::OutputsOf(const WatchedBoard& board) {
    Channels values{};
    for (std::int32_t channel = 0; channel < clsAIB::DACChannels; ++channel)
        values.at(static_cast<std::size_t>(channel)) = board.Board.DAC(channel);
    return values;
}

RampLog::Channels RampLog::ReadInputs(WatchedBoard& board, double now_s) {
    Channels values{};
    constexpr std::int32_t last = clsAIB::DACChannels - 1;
    for (std::int32_t channel = 0; channel < last; ++channel)
        values.at(static_cast<std::size_t>(channel)) = board.Board.ADC(channel);
    // The converters' readings carry no status. The last channel is an analog one on every
    // board, so that it reads the same by the way that tells whether the board has answered.
    board.Watch.Note(board.Board.GetADC(last, values.back()), now_s);
    return values;
}

} // namespace ombrix
