#pragma once

#include <nlohmann/json.hpp>

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

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
    if (json == "infinity")
        return Limits::infinity();
    if (json == "-infinity")
        return -Limits::infinity();
    return json.get<float>();
}

/// A whole number. @throws std::runtime_error for a fraction, and for what the type does not hold
template <std::integral Integer>
Integer IntegerOf(const SingleJson& json) {
    const bool holds =
        json.is_number_unsigned()
            ? std::in_range<Integer>(json.get<std::uint64_t>())
            : json.is_number_integer() && std::in_range<Integer>(json.get<std::int64_t>());
    if (!holds)
        throw std::runtime_error(json.dump() + " is no number that may stand there");
    return json.get<Integer>();
}

/// One line of a file of JSON lines. Texts of a damaged EPROM may be no UTF-8.
inline std::string LineOf(const SingleJson& json) {
    return json.dump(-1, ' ', false, SingleJson::error_handler_t::replace) + "\n";
}

} // namespace ombrix
