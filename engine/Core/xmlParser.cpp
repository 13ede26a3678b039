#include "Core/xmlParser.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <unordered_map>

#include "Core/Assert.h"
#include "Core/Database.h"

namespace grindle {
namespace {

bool ReadWholeFile(const std::string& path, std::string& contents) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return false;
  char chunk[1 << 16];
  size_t count;
  while ((count = std::fread(chunk, 1, sizeof(chunk), file)) > 0) contents.append(chunk, count);
  std::fclose(file);
  return true;
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

void XmlParser::ReadFile(const std::string& path) {
  std::string contents;
  if (!ReadWholeFile(path, contents)) {
    const std::string details = "Missing File" + path;
    GRINDLE_ASSERT_TEXT(true, "true", details.c_str());
  }
  sPath_ = path;
  warnings_.clear();
  elements_.clear();
  buffer_.clear();
  pos_ = 0;
  lineStarts_.clear();
  buffer_.reserve(contents.size());

  bool isInComment = false;
  uint32_t lineNumber = 0;
  for (size_t start = 0; start < contents.size();) {
    size_t end = contents.find('\n', start);
    if (end == std::string::npos) end = contents.size();
    std::string_view line(contents.data() + start, end - start);
    start = end + 1;
    ++lineNumber;
    // Files were written in text mode on a system that ends lines with "\r\n".
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty()) continue;

    if (line.find("<!--") != std::string_view::npos) {
      isInComment = true;
    } else if (!isInComment) {
      size_t first = 0;
      while (first < line.size() && IsBlank(line[first])) ++first;
      if (first == line.size()) continue;
      size_t last = line.size();
      while (IsBlank(line[last - 1])) --last;
      lineStarts_.emplace_back(buffer_.size(), lineNumber);
      buffer_.append(line.substr(first, last - first));
    }
    if (line.find("-->") != std::string_view::npos) isInComment = false;
  }
}

// Every element opened inside a call is closed by "one more ParseInto" on the database it belongs
// to, and siblings follow by a tail call. That recursion is kept as an explicit stack of target
// databases, so that long files cost no native stack: a frame is pushed where the recursion would
// call, popped where it would return on an end tag, and the sibling tail call is the loop itself.
void XmlParser::ParseInto(Database& database) {
  std::vector<Frame> frames(1);
  frames.back().database = &database;
  while (!frames.empty() && pos_ < buffer_.size()) {
    Database& target = *frames.back().database;
    const size_t tagStart = pos_;
    const XmlType type = ReadTagType();
    if (type == ERROR_TYPE) {
      const std::string text(std::string_view(buffer_).substr(tagStart, 40));
      if (isChecking_) {
        Warn(SourceLine(tagStart),
             "unknown element type at \"" + text + "\" (the engine stops here)");
        pos_ = buffer_.size();
        return;
      }
      std::fprintf(stderr, "%s:%u: unknown element type at \"%s\"\n", sPath_.c_str(),
                   SourceLine(tagStart), text.c_str());
    }
    GRINDLE_ASSERT(type == ERROR_TYPE, "Error Type in XML");
    if (type == END_TAG) {
      frames.pop_back();
      continue;
    }
    if (Remaining().find('"') == std::string_view::npos) {
      StopAtMalformedTag("a quoted name after the element type");
      return;
    }
    const std::string_view name = ReadName();
    const uint32_t line = SourceLine(tagStart);
    if (isChecking_) elements_.push_back({&target, std::string(name), line, type});
    if (type == XML_DATABASE) {
      NoteDatabaseName(frames.back(), name, line);
      frames.push_back({target.Add<Database>(name).Get(), name, line, {}});
    } else {
      AddXmlValue(target, type, name, ReadValueText());
      // The element's end tag is read by a call of its own on the same database.
      frames.push_back({&target, name, line, {}});
    }
  }
  // Besides the caller's own level, every frame left is an element the file never closed.
  if (frames.size() > 1) {
    const Frame& innermost = frames.back();
    std::string message = "\"";
    message.append(innermost.name)
        .append("\" is not closed: the file ends inside it (")
        .append(std::to_string(frames.size() - 1))
        .append(" open element(s)); it may be cut short");
    Warn(innermost.line, message);
  }
}

void XmlParser::NoteDatabaseName(Frame& parent, std::string_view name, uint32_t line) {
  const auto [first, isNew] = parent.databaseLines.try_emplace(name, line);
  if (isNew) return;
  std::string message = "\"";
  message.append(name)
      .append("\" is defined twice in the same database (first at line ")
      .append(std::to_string(first->second))
      .append("); the second replaces the first");
  Warn(line, message);
  first->second = line;
}

void XmlParser::Warn(uint32_t line, const std::string& message) {
  warnings_.push_back(sPath_ + ":" + std::to_string(line) + ": " + message);
  if (!isChecking_) std::fprintf(stderr, "%s\n", warnings_.back().c_str());
}

XmlType XmlParser::ReadTagType() {
  const std::string_view rest = Remaining();
  if (rest.substr(0, 2) == "</") {
    const size_t close = rest.find('>');
    Consume(close == std::string_view::npos ? rest.size() : close + 1);
    return END_TAG;
  }
  const size_t typeStart = rest.find_first_not_of('<');
  const size_t space = rest.find(' ');
  if (typeStart == std::string_view::npos || space == std::string_view::npos) return ERROR_TYPE;
  const XmlType type = XmlTypeOf(rest.substr(typeStart, space - typeStart));
  // The front loses one '<', the type name and one space, whatever stood there.
  Consume(space - typeStart + 2);
  return type;
}

std::string_view XmlParser::ReadName() {
  const std::string_view rest = Remaining();
  const size_t open = rest.find('"');
  const size_t close = rest.find('"', open + 1);
  if (close == std::string_view::npos) {
    Consume(rest.size());
    return rest.substr(open + 1);
  }
  Consume(close + 2);  // the closing quote and the '>' after it
  return rest.substr(open + 1, close - open - 1);
}

std::string_view XmlParser::ReadValueText() {
  const std::string_view rest = Remaining();
  const std::string_view value = rest.substr(0, rest.find('<'));
  Consume(value.size());
  return value;
}

void XmlParser::Consume(size_t count) { pos_ = std::min(buffer_.size(), pos_ + count); }

uint32_t XmlParser::SourceLine(size_t position) const {
  auto after = std::upper_bound(
      lineStarts_.begin(), lineStarts_.end(), position,
      [](size_t value, const std::pair<size_t, uint32_t>& start) { return value < start.first; });
  return after == lineStarts_.begin() ? 0 : std::prev(after)->second;
}

void XmlParser::StopAtMalformedTag(const char* expected) {
  if (isChecking_) {
    Warn(SourceLine(pos_),
         std::string("expected ") + expected + "; the rest of the file is not read");
  } else {
    std::printf("%s:%u: expected %s; the rest of the file is not read\n", sPath_.c_str(),
                SourceLine(pos_), expected);
  }
  pos_ = buffer_.size();
}

void ParseFile(const std::string& path, Database& database) {
  XmlParser parser;
  parser.ReadFile(path);
  parser.ParseInto(database);
}

}  // namespace grindle
