// Judges a night: every archive against what was heard on the line, and what was told against what happened.
#pragma once

#include "app/night_plan.h"
#include "app/night_reader.h"
#include "app/night_run.h"

#include <string>
#include <vector>

namespace velorn::test {

// What is wrong, a sentence each; empty for a good night.
std::vector<std::string> judge(const NightPlan& plan, const Night& night);

// The two halves of it. `heard` has one entry for each watch.
void judge_archive(const NightPlan& plan, const Night& night, const std::vector<HeardNight>& heard,
                   std::size_t site, std::vector<std::string>& complaints);
void judge_words(const NightPlan& plan, const Watch& watch, const HeardNight& heard,
                 std::vector<std::string>& complaints);

} // namespace velorn::test
