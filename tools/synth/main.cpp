// grindle_synth <game folder>: writes the demo game's sounds, voice-over lines and songs into
// <game folder>/Assets/Audio/{Sounds,VO,Music} as Ogg Vorbis. Every run writes the same audio.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "Synth.h"
#include "ToolUsage.h"

namespace {

using synth::Envelope;
using synth::MidiToHertz;
using synth::Track;
using synth::Wave;

constexpr Envelope kPluck{0.004, 0.04, 6.0};
constexpr Envelope kSoft{0.02, 0.08, 1.5};
constexpr Envelope kHit{0.001, 0.03, 25.0};

// One voice of a song: notes as (beat, length in beats, MIDI note).
struct Part {
  struct Note {
    double beat, beats;
    int note;
  };
  std::vector<Note> notes;
  Wave wave;
  double level;
  Envelope envelope;
  double pan;
};

struct Song {
  const char* name;
  double bpm;
  int beats;
  std::vector<Part> parts;
  bool hasDrums;
};

// Expands a chord progression (one root per bar of four beats) into a bass line on every beat.
std::vector<Part::Note> BassLine(const std::vector<int>& roots) {
  std::vector<Part::Note> notes;
  for (size_t bar = 0; bar < roots.size(); ++bar) {
    for (int beat = 0; beat < 4; ++beat) {
      const int octave = beat == 2 ? 12 : 0;
      notes.push_back({double(bar * 4 + beat), 0.9, roots[bar] + octave});
    }
  }
  return notes;
}

// A melody of equal steps: `step` beats each, from the first beat; a pitch of 0 is a rest.
std::vector<Part::Note> Melody(double step, const std::vector<int>& pitches) {
  std::vector<Part::Note> notes;
  for (size_t i = 0; i < pitches.size(); ++i) {
    if (pitches[i] != 0) notes.push_back({double(i) * step, step * 0.95, pitches[i]});
  }
  return notes;
}

bool Render(const Song& song, const std::string& folder) {
  const double beat = 60.0 / song.bpm;
  Track track(song.beats * beat, 2);
  for (const Part& part : song.parts) {
    for (const Part::Note& n : part.notes) {
      track.Note(n.beat * beat, n.beats * beat, MidiToHertz(n.note), part.wave, part.level,
                 part.envelope, part.pan);
    }
  }
  if (song.hasDrums) {
    for (int b = 0; b < song.beats; ++b) {
      if (b % 2 == 0) track.Sweep(b * beat, 0.18, 120.0, 45.0, Wave::kSine, 0.8, kHit);
      track.Noise((b + 0.5) * beat, 0.06, 0.18, 0.9, kHit, 0.3);
    }
  }
  track.Normalise(0.8);
  return track.WriteOgg(folder + "/" + song.name + ".ogg", 0.25);
}

std::vector<Song> Songs() {
  // C major, bright and marching: the title screen.
  Song title{"TitleTheme", 120.0, 32, {}, true};
  title.parts.push_back(
      {Melody(0.5, {72, 76, 79, 76, 74, 77, 81, 77, 76, 79, 84, 79, 77, 74, 71, 74,
                    72, 76, 79, 84, 83, 79, 74, 77, 76, 72, 79, 76, 72, 0,  72, 0,
                    76, 79, 84, 79, 77, 81, 84, 81, 79, 83, 86, 83, 84, 0,  84, 0,
                    81, 79, 77, 76, 74, 72, 71, 74, 72, 0,  67, 0,  72, 0,  0,  0}),
       Wave::kSquare, 0.22, kPluck, -0.3});
  title.parts.push_back(
      {BassLine({48, 53, 52, 55, 48, 53, 55, 48}), Wave::kTriangle, 0.45, kSoft, 0.0});
  // A minor, slower and calmer: the menus.
  Song menu{"MenuTheme", 96.0, 32, {}, false};
  menu.parts.push_back({Melody(1.0, {69, 72, 76, 74, 72, 71, 69, 0, 67, 71, 74, 72, 71, 69, 68, 0,
                                     69, 72, 76, 79, 77, 76, 74, 0, 72, 71, 69, 68, 69, 0,  0,  0}),
                        Wave::kTriangle, 0.35, kSoft, 0.2});
  menu.parts.push_back({BassLine({45, 41, 43, 40, 45, 41, 43, 45}), Wave::kSine, 0.5, kSoft, 0.0});
  // G major, driving: a round in progress.
  Song game{"GameTheme", 140.0, 32, {}, true};
  game.parts.push_back(
      {Melody(0.5, {67, 71, 74, 79, 74, 71, 67, 71, 69, 72, 76, 81, 76, 72, 69, 72,
                    71, 74, 79, 83, 79, 74, 71, 74, 72, 76, 79, 84, 79, 76, 74, 71,
                    67, 71, 74, 79, 74, 71, 67, 71, 69, 72, 76, 81, 76, 72, 69, 72,
                    71, 74, 79, 74, 72, 69, 66, 69, 67, 0,  67, 0,  67, 0,  0,  0}),
       Wave::kSaw, 0.18, kPluck, 0.25});
  game.parts.push_back(
      {BassLine({43, 48, 47, 50, 43, 48, 50, 43}), Wave::kSquare, 0.25, kPluck, -0.1});
  return {title, menu, game};
}

struct Effect {
  const char* file;
  double seconds;
  void (*draw)(Track&);
};

std::vector<Effect> Effects() {
  return {
      {"Jump.ogg", 0.22, [](Track& t) { t.Sweep(0, 0.22, 300, 720, Wave::kSquare, 0.5, kSoft); }},
      {"Jump_2.ogg", 0.22, [](Track& t) { t.Sweep(0, 0.22, 340, 820, Wave::kSquare, 0.5, kSoft); }},
      {"Land.ogg", 0.2,
       [](Track& t) {
         t.Sweep(0, 0.2, 140, 50, Wave::kSine, 0.9, kHit);
         t.Noise(0, 0.08, 0.4, 0.3, kHit);
       }},
      {"Explosion.ogg", 0.9,
       [](Track& t) {
         t.Noise(0, 0.9, 1.0, 0.15, Envelope{0.002, 0.2, 4.0});
         t.Sweep(0, 0.5, 90, 30, Wave::kSine, 0.8, Envelope{0.002, 0.1, 5.0});
       }},
      {"PowerUp.ogg", 0.45,
       [](Track& t) {
         const int notes[] = {72, 76, 79, 84, 88};
         for (int i = 0; i < 5; ++i) {
           t.Note(i * 0.08, 0.12, MidiToHertz(notes[i]), Wave::kTriangle, 0.5, kPluck);
         }
       }},
      {"MenuMove.ogg", 0.06, [](Track& t) { t.Note(0, 0.06, 1200, Wave::kSine, 0.4, kHit); }},
      {"MenuSelect.ogg", 0.18,
       [](Track& t) {
         t.Note(0, 0.08, MidiToHertz(79), Wave::kSquare, 0.35, kPluck);
         t.Note(0.08, 0.1, MidiToHertz(84), Wave::kSquare, 0.35, kPluck);
       }},
      {"Countdown.ogg", 0.2, [](Track& t) { t.Note(0, 0.2, 880, Wave::kSine, 0.6, kSoft); }},
  };
}

// A "spoken" line: a buzzy voice with a pitch contour, one syllable per entry (MIDI pitch, length).
struct Line {
  const char* file;
  std::vector<std::pair<int, double>> syllables;
};

bool RenderLine(const Line& line, const std::string& folder) {
  double seconds = 0.1;
  for (const auto& syllable : line.syllables) seconds += syllable.second + 0.05;
  Track track(seconds, 1);
  double at = 0.05;
  for (const auto& [pitch, length] : line.syllables) {
    const double hertz = MidiToHertz(pitch);
    // A voice-like buzz: the fundamental and two vowel-ish resonances a little apart.
    track.Sweep(at, length, hertz * 1.03, hertz * 0.97, Wave::kSaw, 0.5, kSoft);
    track.Note(at, length, hertz * 4.0, Wave::kSine, 0.15, kSoft);
    track.Note(at, length, hertz * 7.0, Wave::kSine, 0.08, kSoft);
    at += length + 0.05;
  }
  track.Normalise(0.7);
  return track.WriteOgg(folder + "/" + line.file, 0.2);
}

std::vector<Line> Lines() {
  return {{"RoundStart.ogg", {{50, 0.18}, {53, 0.18}, {57, 0.35}}},
          {"RoundOver.ogg", {{55, 0.2}, {52, 0.2}, {48, 0.45}}},
          {"Winner.ogg", {{52, 0.15}, {55, 0.15}, {59, 0.15}, {64, 0.5}}}};
}

}  // namespace

int main(int argc, char** argv) {
  if (const auto stop = grindle::tools::CheckArguments(argc, argv, 1, "grindle_synth GAME_DIR")) {
    return *stop;
  }
  const std::string audio = std::string(argv[1]) + "/Assets/Audio";
  for (const char* folder : {"/Sounds", "/VO", "/Music"}) {
    std::filesystem::create_directories(audio + folder);
  }
  bool isOk = true;
  for (const Effect& effect : Effects()) {
    Track track(effect.seconds, 1);
    effect.draw(track);
    track.Normalise(0.8);
    isOk = track.WriteOgg(audio + "/Sounds/" + effect.file, 0.3) && isOk;
  }
  for (const Line& line : Lines()) isOk = RenderLine(line, audio + "/VO") && isOk;
  for (const Song& song : Songs()) isOk = Render(song, audio + "/Music") && isOk;
  if (!isOk)
    std::fprintf(stderr, "grindle_synth: could not write every file under %s\n", audio.c_str());
  return isOk ? 0 : 1;
}
