#pragma once

#include <string>

#include <nlohmann/json.hpp>
#include <values/Layout.h>

#include "ArgumentType.h"

// The JSON of values, by the names of their fields.
namespace sim {

std::string ToUtf8(const std::u16string& text);

template <class T> nlohmann::json ToJson(const T& value) {
    using nlohmann::json;
    json described;
    if constexpr (values::Optional<T>)
        described = value ? ToJson(*value) : json();
    else if constexpr (values::Named<T>)
        described = values::IsValid(value) ? json(NamesOf(value)[static_cast<std::size_t>(value)])
                                           : json(static_cast<std::int64_t>(value));
    else if constexpr (std::same_as<T, std::uint64_t>)
        described = ToHexText(value);
    else if constexpr (std::same_as<T, std::u16string>)
        described = ToUtf8(value);
    else if constexpr (values::Scalar<T> || values::Text<T>)
        described = value;
    else if constexpr (values::Described<T>)
        values::ForEachField<T>([&](auto, const auto& field) {
            json word = ToJson(value.*field.member);
            if (!word.is_null())
                described[field.name] = std::move(word);
        });
    else {
        described = json::array();
        for (const auto& element : value)
            described.push_back(ToJson(element));
    }
    return described;
}

} // namespace sim
