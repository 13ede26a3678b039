#include "Graphics/Loader/FormatScanner.h"

#include <cctype>
#include <cstdlib>
#include <vector>

namespace grindle::models {
namespace {

constexpr size_t kNameBuffer = 256;

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// One converted value before it is committed to its target.
using Value = std::variant<long long, float, std::string>;

}  // namespace

void FormatScanner::SkipSpace() {
  while (pos_ < text_.size() && IsSpace(text_[pos_])) {
    if (text_[pos_] == '\n') ++line_;
    ++pos_;
  }
}

void FormatScanner::SkipRestOfLine() {
  while (pos_ < text_.size() && text_[pos_] != '\n') ++pos_;
  if (pos_ < text_.size()) {
    ++pos_;
    ++line_;
  }
}

void FormatScanner::Report(std::string expected, bool endedEarly) {
  problem_.truncated = problem_.truncated || endedEarly;
  if (problem_.line != 0) return;
  problem_.line = line_;
  problem_.expected = std::move(expected);
  problem_.endedEarly = endedEarly;
}

bool FormatScanner::Scan(std::string_view format, std::initializer_list<ScanTarget> targets) {
  SkipSpace();
  const int startLine = line_;
  const bool startedAtEnd = AtEnd();
  std::vector<Value> values;
  bool matched = true;
  size_t f = 0;
  // The format's trailing white space (its "\n") is applied after the rest of the line is dropped.
  size_t body = format.size();
  while (body > 0 && IsSpace(format[body - 1])) --body;
  while (matched && f < body) {
    const char c = format[f];
    if (IsSpace(c)) {
      // Within one line a blank in the format skips blanks but never the line end.
      while (pos_ < text_.size() && IsSpace(text_[pos_]) && text_[pos_] != '\n') ++pos_;
      ++f;
      continue;
    }
    if (c != '%') {
      matched = pos_ < text_.size() && text_[pos_] == c;
      if (matched) ++pos_;
      ++f;
      continue;
    }
    const char conversion = f + 1 < body ? format[f + 1] : '\0';
    f += 2;
    SkipSpace();
    const char* start = text_.c_str() + pos_;
    char* end = nullptr;
    if (conversion == 'i') {
      const long long value = std::strtoll(start, &end, 0);
      matched = end != start;
      if (matched) values.emplace_back(value);
    } else if (conversion == 'f') {
      const float value = std::strtof(start, &end);
      matched = end != start;
      if (matched) values.emplace_back(value);
    } else {
      size_t length = 0;
      while (pos_ + length < text_.size() && !IsSpace(text_[pos_ + length])) ++length;
      matched = length > 0;
      if (matched) values.emplace_back(text_.substr(pos_, std::min(length, kNameBuffer - 1)));
      end = const_cast<char*>(start) + length;
    }
    pos_ += static_cast<size_t>(end - start);
  }
  SkipRestOfLine();
  SkipSpace();
  if (!matched || values.size() != targets.size()) {
    problem_.truncated = problem_.truncated || startedAtEnd;
    if (problem_.line == 0) {
      problem_.line = startLine;
      problem_.expected = std::string(format.substr(0, body));
      problem_.endedEarly = startedAtEnd;
    }
    return false;
  }
  size_t i = 0;
  for (const ScanTarget& target : targets) {
    const Value& value = values[i++];
    std::visit(
        [&](auto* out) {
          using Out = std::remove_pointer_t<decltype(out)>;
          if constexpr (std::is_same_v<Out, std::string>) {
            *out = std::get<std::string>(value);
          } else if constexpr (std::is_same_v<Out, float>) {
            *out = std::get<float>(value);
          } else {
            // Integers narrow by truncation: 16-bit indices of 65536 and more wrap.
            *out = static_cast<Out>(std::get<long long>(value));
          }
        },
        target);
  }
  return true;
}

}  // namespace grindle::models
