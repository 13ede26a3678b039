// `grindle --data game --autoplay`: the game fills every slot with the computer, plays one whole
// match and quits after the results screen. The binary is run for the option itself; the match is
// played by the same engine in this process, replayed alike every time, so that its screens can be
// compared with golden images. The log lines the game prints are checked against its rules: three
// knock-outs per free-for-all round, the round goes to the player nobody knocked out, the match to
// the first to three round wins, named in exactly one "Winner:" line.
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "GameDriver.h"
#include "ProcessRun.h"

namespace grindle {
namespace {

ProcessResult RunGame(const std::string& arguments) {
  return RunProcess(std::string("SDL_VIDEODRIVER=offscreen ALSOFT_DRIVERS=null '") + GRINDLE_BINARY +
                    "' --data '" GRINDLE_GAME_DIR "' " + arguments + " 2>&1");
}

// The option writes the one value, before the first level's scripts can look; without it the game
// finds no such value and plays by its players' hands.
TEST(AutoplayOption, SetsAutoPlayBeforeTheFirstLevel) {
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

// The log of a whole match against the game's rules.
void ExpectTheMatchFollowsTheRules(const std::string& output) {
  EXPECT_EQ(output.find("LUA ERR"), std::string::npos) << output;
  EXPECT_EQ(output.find("Error executing"), std::string::npos) << output;
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
  std::istringstream lines(output);
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

  ASSERT_EQ(winners.size(), 1u) << output;
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

// Each screen also shows what it is for in a direct pixel test, so that a wrong reference cannot
// pass.
void ExpectScreensMatchTheirGoldenImages(std::map<std::string, gfx::Image>& images) {
  for (const char* name : {"menu", "lobby", "round", "results"}) {
    ASSERT_EQ(images.count(name), 1u) << name << " was not captured";
    ASSERT_EQ(images[name].width, kSmallWindowWidth) << name;
    ASSERT_EQ(images[name].height, kSmallWindowHeight) << name;
  }
  const auto yellow = [](const glm::vec4& c) { return c.r > 0.6f && c.g > 0.5f && c.b < 0.4f; };
  // The cursor starts on Play, the top line.
  EXPECT_TRUE(yellow(images["menu"].At(160, 76)));
  // The four characters in red, blue, green and yellow, shaded as computer players.
  const gfx::Image& lobby = images["lobby"];
  EXPECT_GT(lobby.At(75, 140).r, lobby.At(75, 140).b + 0.15f);
  EXPECT_GT(lobby.At(130, 140).b, lobby.At(130, 140).r + 0.15f);
  EXPECT_GT(lobby.At(187, 140).g, lobby.At(187, 140).r + 0.15f);
  EXPECT_GT(lobby.At(245, 140).g, lobby.At(245, 140).b + 0.15f);
  // "GO!" over the arena as play begins.
  EXPECT_TRUE(yellow(images["round"].At(145, 70)));
  // The winner, Player 4 in this replay, stands raised above the others.
  EXPECT_TRUE(yellow(images["results"].At(245, 100)));
  EXPECT_LT(images["results"].At(80, 100).r, 0.2f);
  for (const char* name : {"menu", "lobby", "round", "results"})
    gfx::ExpectMatchesGoldenFile(images[name], GRINDLE_GAME_GOLDEN_DIR, std::string("game_") + name);
}

// One unattended match, its log checked and its screens captured at fixed frames into the main
// menu, the lobby, the first round and the results.
TEST(AutoplayMatch, PlaysOneWholeMatchByTheRulesAndItsScreensMatchTheirGoldenImages) {
  // Generous: the match is a few hundred frames; the game quits by itself long before.
  constexpr int kFrameBound = 3000;
  std::map<std::string, gfx::Image> images;
  game::Steps steps;
  const auto capture = [&](std::vector<std::string> levels, int frames, const char* name) {
    steps.emplace_back(name, game::Check([levels](Database& root) {
      for (const std::string& level : levels)
        if (game::CurrentLevel(root) == level) return true;
      return false;
    }));
    steps.emplace_back(std::string(name) + " settles", game::Wait(frames));
    steps.emplace_back(std::string(name) + " captured", game::Capture(images, name));
  };
  capture({"LevelTitleScreen"}, 6, "menu");
  capture({"Lobby"}, 6, "lobby");
  capture({"Arena", "ArenaStorm"}, 5, "round");
  capture({"Results"}, 6, "results");
  steps.emplace_back("quits by itself", game::Wait(kFrameBound));
  game::GameRun run;
  run.options.autoPlay = true;
  game::StdoutCapture output;
  const std::string stuck = game::PlayGame(run, std::move(steps), kFrameBound);
  const std::string log = output.Finish();
  // Only the last step is left: the game quit after the results screen.
  EXPECT_EQ(stuck, "quits by itself");
  ExpectTheMatchFollowsTheRules(log);
  ExpectScreensMatchTheirGoldenImages(images);
}

}  // namespace
}  // namespace grindle
