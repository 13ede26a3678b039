// What the checker found, one "file:line: message" each, in the order found. Also the parsed form
// of a typed-XML file that keeps every element's line, which the rules report against.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Core/Database.h"
#include "Core/XmlValues.h"

namespace grindle::levelcheck {

struct Findings {
  std::vector<std::string> lines;
  void Add(const std::string& file, uint32_t line, const std::string& message) {
    lines.push_back(file + ":" + std::to_string(line) + ": " + message);
  }
};

struct ParsedFile {
  std::string path;
  Database root;
  bool exists = false;
  std::vector<std::string> warnings;
  std::map<std::pair<const Database*, std::string>, std::pair<uint32_t, XmlType>> elements;

  // The line of element `name` read into `parent` (the line of the parent's own element when the
  // file has no such element, 1 when nothing is known).
  uint32_t LineOf(const Database* parent, const std::string& name) const;
  XmlType TypeOf(const Database* parent, const std::string& name) const;
};

// Parses `path` for checking: an unknown element type ends the parse with a warning instead of
// stopping the program. A missing file leaves `exists` false.
void ReadForCheck(const std::string& path, ParsedFile& file);

}  // namespace grindle::levelcheck
