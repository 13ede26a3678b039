// Reads a model file one line format at a time, as formatted input would ("Position: %f %f %f\n"):
// white space in a format matches any amount of white space, %i reads a decimal (or 0x/0 prefixed)
// integer, %f a floating-point number, %s one token of at most 255 characters. A format is one
// line: whatever follows its last conversion on that line is dropped, so a malformed line leaves
// its targets untouched (they are written only when every conversion matched) and the next format
// starts on the next line. Remembers the first line that did not match. Single owner, any thread.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace grindle::models {

using ScanTarget = std::variant<int32_t*, uint16_t*, float*, std::string*>;

// The first line that did not match its format, and whether the text ran out before the formats.
struct ScanProblem {
  int line = 0;  // 0: every line matched
  std::string expected;
  bool endedEarly = false;  // the first problem is the end of the text
  bool truncated = false;   // some format found the text at its end
};

class FormatScanner {
 public:
  explicit FormatScanner(std::string text) : text_(std::move(text)) {}

  // True when every conversion of `format` matched; the targets are written only then.
  bool Scan(std::string_view format, std::initializer_list<ScanTarget> targets);
  // Bytes not read yet (an upper bound on how many records can still follow).
  size_t Remaining() const { return text_.size() - pos_; }
  bool AtEnd() const { return pos_ >= text_.size(); }
  const ScanProblem& FirstProblem() const { return problem_; }
  // Records a problem the caller found (a count the rest of the file cannot hold).
  void Report(std::string expected, bool endedEarly);

 private:
  void SkipSpace();
  void SkipRestOfLine();

  std::string text_;
  size_t pos_ = 0;
  int line_ = 1;
  ScanProblem problem_;
};

}  // namespace grindle::models
