#include "benchtests/DigitalMFCRecord.h"

#include "platform/text/Index.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

/// Each level is compared with itself on the other side of the profile.
constexpr std::int32_t Levels = DigitalMFCRecord::Steps / 2;
/// Where the comparison of channel 1 stands beside the samples; channel 0 has its header in the
/// file's.
constexpr std::int32_t SecondHeaderRow = 6;

std::string SampleText(const std::vector<DigitalMFCRecord::Sample>& samples, std::int32_t row) {
    const DigitalMFCRecord::Sample sample =
        Index(row) < samples.size() ? samples[Index(row)] : DigitalMFCRecord::Sample{};
    return fmt::format("{},{},{},{}", GeneralText(sample.Time_s), GeneralText(sample.Demand_bits),
                       GeneralText(sample.Value_bits), GeneralText(sample.Pressure_bits));
}

std::string LevelText(const std::array<float, DigitalMFCRecord::Steps>& means, std::int32_t level) {
    const float up = means.at(Index(level));
    const float down = means.at(Index(DigitalMFCRecord::Steps - 1 - level));
    return fmt::format(",,{},{},{},{}", GeneralText(DigitalMFCRecord::ProfileDemand(level)),
                       GeneralText(up), GeneralText(down), GeneralText(up - down));
}

} // namespace

const char* DigitalMFCRecord::Header() {
    return "Timer0,Demand0,Value0,Pressure0,,Timer1,Demand1,Value1,Pressure1,,"
           "Data0,EndPointUp,EndPointDn";
}

float DigitalMFCRecord::ProfileDemand(std::int32_t step) {
    constexpr float lowest = 2.0F;
    static constexpr std::array<float, Steps> profile = {lowest, lowest, 20.0F, 50.0F,  80.0F,
                                                         80.0F,  50.0F,  20.0F, lowest, lowest};
    return step >= 0 && step < Steps ? profile.at(Index(step)) : lowest;
}

void DigitalMFCRecord::Add(std::int32_t channel, const Sample& sample) {
    if (SampleCount(channel) < Rows)
        m_Samples.at(Index(channel)).push_back(sample);
}

void DigitalMFCRecord::SetMean(std::int32_t channel, std::int32_t step, float mean_bits) {
    m_Means.at(Index(channel)).at(Index(step)) = mean_bits;
}

std::int32_t DigitalMFCRecord::SampleCount(std::int32_t channel) const {
    return static_cast<std::int32_t>(m_Samples.at(Index(channel)).size());
}

std::string DigitalMFCRecord::Line(std::int32_t row) const {
    return SampleText(m_Samples[0], row) + ",," + SampleText(m_Samples[1], row) +
           EndPointBlock(row);
}

std::string DigitalMFCRecord::EndPointBlock(std::int32_t row) const {
    if (row < Levels)
        return LevelText(m_Means[0], row);
    if (row == SecondHeaderRow)
        return ",,Data1,EndPointUp,EndPointDn,Diff";
    const std::int32_t level = row - SecondHeaderRow - 1;
    return level >= 0 && level < Levels ? LevelText(m_Means[1], level) : "";
}

} // namespace ombrix
