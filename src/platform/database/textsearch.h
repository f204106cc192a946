#pragma once

#include <cstddef>
#include <string_view>

namespace kovanix {

/// The place of the first occurrence of a text in another one, at or behind a place; npos where there is
/// none. What std::string_view::find gives, for long texts that are searched for short ones: sixteen places
/// are looked at in one step.
/// @param wanted  not empty
std::size_t findText(std::string_view text, std::string_view wanted, std::size_t from);

}  // namespace kovanix
