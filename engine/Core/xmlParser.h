// The reader for the engine's typed XML (levels, archetypes, menus): one tag shape,
// <type name="Name">value</type>, nested through Database elements, written straight into a
// database the caller owns. Main thread only (it writes the database). End tags close the open
// element by position alone, and comments drop whole lines: files are written against both.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
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
  // "file:line: message" for what the file most likely got wrong without breaking the parse (an
  // element left open at the end, an object defined twice); also printed to standard error.
  const std::vector<std::string>& Warnings() const { return warnings_; }

  // For the level checker: every element is listed with its line, and an unknown element type is
  // a warning that ends the parse instead of the assertion.
  struct Element {
    const Database* parent;
    std::string name;
    uint32_t line;
    XmlType type;
  };
  void EnableChecking() { isChecking_ = true; }
  const std::vector<Element>& Elements() const { return elements_; }

 private:
  // One open element: where its content goes, and for databases the lines of the databases
  // already read into it.
  struct Frame {
    Database* database = nullptr;
    std::string_view name;
    uint32_t line = 0;
    std::unordered_map<std::string_view, uint32_t> databaseLines;
  };

  void NoteDatabaseName(Frame& parent, std::string_view name, uint32_t line);
  void Warn(uint32_t line, const std::string& message);
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
  std::vector<std::string> warnings_;
  bool isChecking_ = false;
  std::vector<Element> elements_;
};

// Reads `path` and parses all of it into `database`, which the caller has already created.
void ParseFile(const std::string& path, Database& database);

}  // namespace grindle
