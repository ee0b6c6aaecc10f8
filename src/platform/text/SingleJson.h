#pragma once

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <optional>

namespace ombrix {

/// JSON whose fractions are Singles: they are written with the digits that give the same bits
/// back, and no more.
using SingleJson = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool,
                                        std::int64_t, std::uint64_t, float>;

/// A Single of a damaged EPROM may be no number, which JSON lacks: that is null, and infinities
/// are texts.
inline SingleJson ToJson(float value) {
    if (std::isinf(value))
        return value > 0.0F ? "infinity" : "-infinity";
    return std::isnan(value) ? SingleJson() : SingleJson(value);
}

/// The same for JSON whose fractions are Doubles; what JSON lacks is null there.
inline nlohmann::ordered_json NumberJson(std::optional<float> value) {
    if (!value || !std::isfinite(*value))
        return nullptr;
    return nlohmann::ordered_json::parse(SingleJson(*value).dump());
}

inline nlohmann::ordered_json NumbersJson(const auto& values) {
    auto list = nlohmann::ordered_json::array();
    for (const auto& value : values)
        list.push_back(NumberJson(value));
    return list;
}

/// @throws SingleJson::exception for something else
inline float SingleOf(const SingleJson& json) {
    using Limits = std::numeric_limits<float>;
    if (json.is_null())
        return Limits::quiet_NaN();
    if (json.is_string())
        return json == "infinity" ? Limits::infinity() : -Limits::infinity();
    return json.get<float>();
}

/// One line of a file of JSON lines. Texts of a damaged EPROM may be no UTF-8.
inline std::string LineOf(const SingleJson& json) {
    return json.dump(-1, ' ', false, SingleJson::error_handler_t::replace) + "\n";
}

} // namespace ombrix
