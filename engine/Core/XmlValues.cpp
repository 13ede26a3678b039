#include "Core/XmlValues.h"

#include <cctype>
#include <charconv>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>
#include <glm/vec4.hpp>

#include "Core/Database.h"
#include "Core/MathTypes.h"

namespace grindle {
namespace {

// Reads numbers one after another the way stream extraction does (leading white space skipped,
// an optional '+' accepted, the longest numeric prefix taken), but without a stream per value,
// which would dominate the cost of reading a level. After the first failure every later read
// fails too and leaves its target as it was.
class NumberReader {
 public:
  explicit NumberReader(std::string_view text) : pos_(text.data()), end_(text.data() + text.size()) {}

  template <class T>
  void Read(T& value) {
    if (isFailed_) return;
    while (pos_ != end_ && std::isspace(static_cast<unsigned char>(*pos_))) ++pos_;
    const char* start = pos_;
    if (start != end_ && *start == '+' && start + 1 != end_ && *(start + 1) != '-' &&
        *(start + 1) != '+') {
      ++start;
    }
    T parsed{};
    auto [next, error] = std::from_chars(start, end_, parsed);
    if (error != std::errc() || IsSpelledNumber(start)) {
      isFailed_ = true;
      return;
    }
    value = parsed;
    pos_ = next;
  }

 private:
  // from_chars also takes "inf" and "nan", which stream extraction refuses.
  bool IsSpelledNumber(const char* start) const {
    if (start != end_ && *start == '-') ++start;
    return start != end_ && std::isalpha(static_cast<unsigned char>(*start));
  }

  const char* pos_;
  const char* end_;
  bool isFailed_ = false;
};

template <class T>
T ReadNumber(std::string_view text) {
  T value{};
  NumberReader(text).Read(value);
  return value;
}

// A line read: everything up to the first newline. The cleaned buffer holds none, but the rule
// stays the one files were written against.
std::string ReadLine(std::string_view text) {
  return std::string(text.substr(0, text.find('\n')));
}

char ReadChar(std::string_view text) {
  for (char c : text) {
    if (!std::isspace(static_cast<unsigned char>(c))) return c;
  }
  return '\0';
}

}  // namespace

XmlType XmlTypeOf(std::string_view typeName) {
  static constexpr std::pair<std::string_view, XmlType> kNames[] = {
      {"int", XML_INT},           {"float", XML_FLOAT},         {"double", XML_DOUBLE},
      {"string", XML_STRING},     {"vec4", XML_VEC4},           {"xmfloat4", XML_XMFLOAT4},
      {"xmmatrix4", XML_XMMATRIX4}, {"std::vector", XML_MATRIX_VECTOR},
      {"Database", XML_DATABASE}, {"char", XML_CHAR},
  };
  for (const auto& [text, type] : kNames) {
    if (text == typeName) return type;
  }
  return ERROR_TYPE;
}

void AddXmlValue(Database& database, XmlType type, std::string_view name, std::string_view text) {
  switch (type) {
    case XML_INT:
      database.Add<int>(name, ReadNumber<int>(text));
      break;
    case XML_FLOAT:
      database.Add<float>(name, ReadNumber<float>(text));
      break;
    case XML_DOUBLE:
      database.Add<double>(name, ReadNumber<double>(text));
      break;
    case XML_STRING:
      database.Add<std::string>(name, ReadLine(text));
      break;
    case XML_VEC4: {
      Vector4 v;
      NumberReader reader(text);
      reader.Read(v.x);
      reader.Read(v.y);
      reader.Read(v.z);
      database.Add<Vector4>(name, v);
      break;
    }
    case XML_XMFLOAT4: {
      glm::vec4 v(0.0f);
      NumberReader reader(text);
      for (int i = 0; i < 4; ++i) reader.Read(v[i]);
      database.Add<glm::vec4>(name, v);
      break;
    }
    case XML_XMMATRIX4:
      database.Add<glm::mat4>(name, glm::mat4(1.0f));
      break;
    case XML_MATRIX_VECTOR:
      database.Add<std::vector<glm::mat4>>(name);
      break;
    case XML_CHAR:
      database.Add<char>(name, ReadChar(text));
      break;
    case XML_DATABASE:
    case XML_UNUSED:
    case END_TAG:
    case ERROR_TYPE:
      break;
  }
}

}  // namespace grindle
