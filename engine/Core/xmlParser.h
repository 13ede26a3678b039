// The reader for the engine's typed XML (levels, archetypes, menus): one tag shape,
// <type name="Name">value</type>, nested through Database elements, written straight into a
// database the caller owns. Main thread only (it writes the database). End tags close the open
// element by position alone, and comments drop whole lines: files are written against both.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Core/XmlValues.h"

namespace grindle {

class Database;

class XmlParser {
 public:
  // Loads and cleans a file: comment lines dropped, every other line trimmed and glued to the
  // previous one with no separator. A missing file stops the program.
  void ReadFile(const std::string& path);
  // Consumes elements into `database` until the buffer is empty or an end tag closes the level it
  // began at; a stray end tag at the top therefore ends the parse early.
  void ParseInto(Database& database);

  // What is left of the cleaned text.
  std::string_view Remaining() const { return std::string_view(buffer_).substr(pos_); }

 private:
  XmlType ReadTagType();
  std::string_view ReadName();
  std::string_view ReadValueText();
  void Consume(size_t count);
  // The file line that the buffer position came from, for messages about bad input.
  uint32_t SourceLine(size_t position) const;
  void StopAtMalformedTag(const char* expected);

  std::string buffer_;
  size_t pos_ = 0;
  std::string sPath_;
  // (buffer offset, file line) for the start of every line appended to the buffer.
  std::vector<std::pair<size_t, uint32_t>> lineStarts_;
};

// Reads `path` and parses all of it into `database`, which the caller has already created.
void ParseFile(const std::string& path, Database& database);

}  // namespace grindle
