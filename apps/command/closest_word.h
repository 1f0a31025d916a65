#pragma once

#include <string>
#include <vector>

namespace korvel::command {

/// The word that was probably meant: the first of those that differ the least, or that begin with
/// it; empty if none is close. Counts letters that are missing, added, replaced, or exchanged with
/// the next one (the optimal string alignment distance).
std::string closest_word(const std::string& word, const std::vector<std::string>& words);

} // namespace korvel::command
