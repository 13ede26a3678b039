#include <filesystem>

#include "Core/xmlParser.h"
#include "Findings.h"

namespace grindle::levelcheck {

uint32_t ParsedFile::LineOf(const Database* parent, const std::string& name) const {
  const auto found = elements.find({parent, name});
  return found == elements.end() ? 1 : found->second.first;
}

XmlType ParsedFile::TypeOf(const Database* parent, const std::string& name) const {
  const auto found = elements.find({parent, name});
  return found == elements.end() ? ERROR_TYPE : found->second.second;
}

void ReadForCheck(const std::string& path, ParsedFile& file) {
  file.path = path;
  file.exists = std::filesystem::is_regular_file(path);
  if (!file.exists) return;
  XmlParser parser;
  parser.EnableChecking();
  parser.ReadFile(path);
  parser.ParseInto(file.root);
  file.warnings = parser.Warnings();
  // Later elements of the same name replaced earlier ones; their lines win likewise.
  for (const XmlParser::Element& element : parser.Elements()) {
    file.elements[{element.parent, element.name}] = {element.line, element.type};
  }
}

}  // namespace grindle::levelcheck
