// The element types of the engine's typed XML and how one element's value text becomes a database
// entry. Used by the XML parser on the main thread. The codes are fixed: 11 marks an end tag and
// 12 an unknown type name, which the parser stops on.
#pragma once

#include <cstdint>
#include <string_view>

namespace grindle {

class Database;

enum XmlType : uint32_t {
  XML_INT = 0,
  XML_FLOAT = 1,
  XML_DOUBLE = 2,
  XML_STRING = 3,
  XML_VEC4 = 4,
  XML_XMFLOAT4 = 5,
  XML_XMMATRIX4 = 6,
  XML_MATRIX_VECTOR = 7,
  XML_DATABASE = 8,
  XML_CHAR = 9,
  XML_UNUSED = 10,
  END_TAG = 11,
  ERROR_TYPE = 12,
};

// Exact, case-sensitive match of a tag's type name; ERROR_TYPE for anything else.
XmlType XmlTypeOf(std::string_view typeName);

// Adds the entry for a value element (any type but Database) under `name`. Numbers that do not
// parse become 0; text after the numbers a type needs is ignored.
void AddXmlValue(Database& database, XmlType type, std::string_view name, std::string_view text);

}  // namespace grindle
