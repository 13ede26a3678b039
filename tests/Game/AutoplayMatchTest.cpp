// `grindle --data game --autoplay`: the game fills every slot with the computer, plays one whole
// match and quits after the results screen. The log lines the game prints are checked against its
// rules: three knock-outs per free-for-all round, the round goes to the player nobody knocked out,
// the match to the first to three round wins, named in exactly one "Winner:" line.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "ProcessRun.h"

namespace grindle {
namespace {

// Generous for a fast machine (a match is a few hundred frames); the run ends by itself long before.
constexpr const char* kFrameBound = "4000";

ProcessResult RunGame(const std::string& arguments) {
  return RunProcess(std::string("SDL_VIDEODRIVER=offscreen ALSOFT_DRIVERS=null '") + GRINDLE_BINARY +
                    "' --data '" GRINDLE_GAME_DIR "' " + arguments + " 2>&1");
}

// The option writes the one value, before the first level's scripts can look; without it the game
// finds no such value and plays by its players' hands.
TEST(AutoplayMatch, TheOptionSetsAutoPlayBeforeTheFirstLevel) {
  const ProcessResult with = RunGame("--autoplay --level LoadingScreen --frames 2 --print-database");
  const ProcessResult without = RunGame("--level LoadingScreen --frames 2 --print-database");
  ASSERT_EQ(with.status, 0) << with.output;
  ASSERT_EQ(without.status, 0) << without.output;
  EXPECT_NE(with.output.find("double (AutoPlay) = 1.000000"), std::string::npos) << with.output;
  EXPECT_EQ(without.output.find("(AutoPlay)"), std::string::npos) << without.output;
}

struct Round {
  std::vector<std::string> knockedOut;
  std::string winner;
};

TEST(AutoplayMatch, PlaysOneWholeMatchByTheRulesAndNamesTheWinnerOnce) {
  const ProcessResult run = RunGame(std::string("--autoplay --frames ") + kFrameBound);
  ASSERT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(run.output.find("LUA ERR"), std::string::npos) << run.output;
  EXPECT_EQ(run.output.find("Error executing"), std::string::npos) << run.output;

  const std::regex roundStart(R"(Round (\d+) in (Arena|ArenaStorm))");
  const std::regex holds(R"(Potato: (Player [1-4]) has the potato)");
  const std::regex exploded(R"(Potato exploded: (Player [1-4]) is out)");
  const std::regex roundWon(R"(Round (\d+): (Player [1-4]) wins the round)");
  const std::regex winnerLine(R"(Winner: (Player [1-4]|Team [12]))");
  std::vector<Round> rounds;
  std::set<std::string> holders;
  std::vector<std::string> winners;
  std::map<std::string, int> wins;
  std::string firstToThree;
  std::istringstream lines(run.output);
  std::smatch m;
  for (std::string line; std::getline(lines, line);) {
    if (std::regex_match(line, m, roundStart)) {
      EXPECT_EQ(std::stoul(m[1]), rounds.size() + 1) << line;
      rounds.emplace_back();
    } else if (std::regex_match(line, m, holds)) {
      holders.insert(m[1]);
    } else if (std::regex_match(line, m, exploded)) {
      ASSERT_FALSE(rounds.empty());
      rounds.back().knockedOut.push_back(m[1]);
    } else if (std::regex_match(line, m, roundWon)) {
      ASSERT_FALSE(rounds.empty());
      rounds.back().winner = m[2];
      if (++wins[m[2]] == 3 && firstToThree.empty()) firstToThree = m[2];
    } else if (line.rfind("Winner:", 0) == 0) {
      EXPECT_TRUE(std::regex_match(line, winnerLine)) << line;
      winners.push_back(line.substr(8));
    }
  }

  ASSERT_EQ(winners.size(), 1u) << run.output;
  EXPECT_EQ(winners[0], firstToThree);
  ASSERT_GE(rounds.size(), 3u);
  for (size_t i = 0; i < rounds.size(); ++i) {
    const Round& round = rounds[i];
    std::set<std::string> out(round.knockedOut.begin(), round.knockedOut.end());
    EXPECT_EQ(round.knockedOut.size(), 3u) << "round " << i + 1;
    EXPECT_EQ(out.size(), round.knockedOut.size()) << "a player knocked out twice in round " << i + 1;
    EXPECT_FALSE(round.winner.empty()) << "round " << i + 1 << " has no winner";
    EXPECT_EQ(out.count(round.winner), 0u) << round.winner << " won round " << i + 1 << " while out";
  }
  // Nobody had three wins before the last round, so the match took no round too many.
  EXPECT_EQ(wins[firstToThree], 3);
  EXPECT_EQ(rounds.back().winner, firstToThree);
  EXPECT_EQ(holders, (std::set<std::string>{"Player 1", "Player 2", "Player 3", "Player 4"}));
}

}  // namespace
}  // namespace grindle
