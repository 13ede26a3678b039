#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <glm/mat4x4.hpp>
#include <glm/vec4.hpp>
#include <random>
#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/MathTypes.h"
#include "Core/xmlParser.h"
#include "TestOutput.h"

namespace grindle {
namespace {

namespace fs = std::filesystem;

class XmlParserTest : public testing::Test {
 protected:
  ~XmlParserTest() override { fs::remove(path_); }

  std::string WriteFile(const std::string& text) {
    std::ofstream(path_, std::ios::binary) << text;
    return path_;
  }
  // Parses `text` as a file into db_ and returns what the parser printed.
  std::string Parse(const std::string& text) {
    const std::string path = WriteFile(text);
    return CaptureStdout([&] { ParseFile(path, db_); });
  }

  const std::string path_ =
      fs::temp_directory_path() / ("grindle_" + std::to_string(::getpid()) + "_Level.xml");
  Database db_;
};

TEST_F(XmlParserTest, EveryTypeNameMakesItsEntry) {
  Parse(
      "<int name=\"Lives\">3</int>\n"
      "<float name=\"Speed\">2.5</float>\n"
      "<double name=\"Mass\">-0.125</double>\n"
      "<string name=\"Title\">Hello big  world</string>\n"
      "<vec4 name=\"Position\">1 2 3 4</vec4>\n"
      "<xmfloat4 name=\"Colour\">0.5 0.25 1 0.75</xmfloat4>\n"
      "<xmmatrix4 name=\"World\">2 0 0 0 anything</xmmatrix4>\n"
      "<std::vector name=\"Bones\">1 2 3</std::vector>\n"
      "<char name=\"Grade\">  B+</char>\n");
  EXPECT_EQ(*db_.Find<int>("Lives"), 3);
  EXPECT_FLOAT_EQ(*db_.Find<float>("Speed"), 2.5f);
  EXPECT_DOUBLE_EQ(*db_.Find<double>("Mass"), -0.125);
  EXPECT_EQ(*db_.Find<std::string>("Title"), "Hello big  world");
  const Vector4 p = *db_.Find<Vector4>("Position");
  EXPECT_EQ(glm::vec4(p.x, p.y, p.z, p.w), glm::vec4(1, 2, 3, 0));  // a fourth number is ignored
  EXPECT_EQ(*db_.Find<glm::vec4>("Colour"), glm::vec4(0.5f, 0.25f, 1.0f, 0.75f));
  EXPECT_EQ(*db_.Find<glm::mat4>("World"), glm::mat4(1.0f));
  EXPECT_TRUE(db_.Find<std::vector<glm::mat4>>("Bones")->empty());
  EXPECT_EQ(*db_.Find<char>("Grade"), 'B');
  EXPECT_EQ(db_.EntryCount(), 9u);
}

TEST_F(XmlParserTest, NumbersReadTheirLeadingTextAndOtherwiseGiveZero) {
  Parse(
      "<int name=\"Plus\">+4</int><int name=\"Fraction\">3.9</int>"
      "<int name=\"Word\">three</int><int name=\"Huge\">99999999999</int>"
      "<double name=\"Empty\"></double><float name=\"Infinite\">inf</float>"
      "<vec4 name=\"Broken\">1 x 3</vec4><xmfloat4 name=\"Short\">5 6</xmfloat4>"
      "<double name=\"Exponent\"> 1.5e3 metres</double>");
  EXPECT_EQ(*db_.Find<int>("Plus"), 4);
  EXPECT_EQ(*db_.Find<int>("Fraction"), 3);
  EXPECT_EQ(*db_.Find<int>("Word"), 0);
  EXPECT_EQ(*db_.Find<int>("Huge"), 0);
  EXPECT_EQ(*db_.Find<double>("Empty"), 0.0);
  EXPECT_EQ(*db_.Find<float>("Infinite"), 0.0f);
  const Vector4 b = *db_.Find<Vector4>("Broken");
  EXPECT_EQ(glm::vec4(b.x, b.y, b.z, b.w), glm::vec4(1, 0, 0, 0));  // stops at the first bad number
  EXPECT_EQ(*db_.Find<glm::vec4>("Short"), glm::vec4(5.0f, 6.0f, 0.0f, 0.0f));
  EXPECT_EQ(*db_.Find<double>("Exponent"), 1500.0);
}

TEST_F(XmlParserTest, DatabasesNestAndEndTagsCloseByPositionOnly) {
  Parse(
      "<Database name=\"Player\">\n"
      "  <Database name=\"Transform\">\n"
      "    <vec4 name=\"Position\">1 2 3</vec4>\n"
      "  </Mesh>\n"
      "  <int name=\"Lives\">3</float>\n"
      "</Database>\n"
      "<int name=\"Score\">10</int>\n");
  DataHandle<Database> player = db_.Find<Database>("Player");
  ASSERT_TRUE(player);
  EXPECT_EQ(player->Name(), "Player");
  DataHandle<Database> transform = player->Find<Database>("Transform");
  ASSERT_TRUE(transform);
  EXPECT_EQ(transform->Find<Vector4>("Position")->y, 2.0f);
  EXPECT_EQ(transform->EntryCount(), 1u);
  EXPECT_EQ(*player->Find<int>("Lives"), 3);
  EXPECT_EQ(*db_.Find<int>("Score"), 10);
  EXPECT_EQ(db_.EntryCount(), 2u);
}

// The reader as first written: recursive, erasing from the front of its text. The real reader
// must leave the same tree and the same unread text for any sequence of well-formed tags, however
// their end tags are missing, misplaced or extra.
struct RecursiveReader {
  void ParseInto(Database& db) {
    if (text_.empty()) return;
    XmlType type = END_TAG;
    if (text_.compare(0, 2, "</") == 0) {
      text_.erase(0, text_.find('>') + 1);
    } else {
      const size_t space = text_.find(' ');
      type = XmlTypeOf(text_.substr(1, space - 1));
      text_.erase(0, space + 1);
    }
    if (type == END_TAG) return;
    const size_t open = text_.find('"');
    const size_t close = text_.find('"', open + 1);
    const std::string name = text_.substr(open + 1, close - open - 1);
    text_.erase(0, close + 2);
    if (type == XML_DATABASE) {
      ParseInto(*db.Add<Database>(name));
    } else {
      const std::string value = text_.substr(0, text_.find('<'));
      text_.erase(0, value.size());
      AddXmlValue(db, type, name, value);
      ParseInto(db);
    }
    if (!text_.empty()) ParseInto(db);
  }

  std::string text_;
};

// The live entries in listing order, nested databases in braces.
std::string Describe(const Database& db) {
  std::string out;
  for (const Database::Record& record : db.Records()) {
    if (db.FindEntry(record.name) != record.entry) continue;  // replaced later
    const DataHandle<Database> child = db.Find<Database>(record.name);
    const DataHandle<int> value = db.Find<int>(record.name);
    out += record.name;
    if (child) {
      out.append("{").append(Describe(*child)).append("}");
    } else {
      out.append("=").append(std::to_string(*value)).append(" ");
    }
  }
  return out;
}

TEST_F(XmlParserTest, AnyTagSequenceReadsAsTheRecursiveReaderReadIt) {
  const std::vector<std::string> tags = {"<Database name=\"D0\">",
                                         "<Database name=\"D1\">",
                                         "<int name=\"V0\">1",
                                         "<int name=\"V1\">2 ",
                                         "<int name=\"D0\">3",
                                         "</int>",
                                         "</Database>",
                                         "</x>"};
  std::mt19937 random(20261122);
  for (int trial = 0; trial < 500; ++trial) {
    std::string text;
    const int count = 1 + static_cast<int>(random() % 14);
    for (int i = 0; i < count; ++i) text += tags[random() % tags.size()];

    XmlParser parser;
    parser.ReadFile(WriteFile(text));
    Database expected;
    RecursiveReader reference{std::string(parser.Remaining())};
    reference.ParseInto(expected);

    Database actual;
    parser.ParseInto(actual);
    ASSERT_EQ(Describe(actual), Describe(expected)) << text;
    ASSERT_EQ(parser.Remaining(), reference.text_) << text;
  }
}

TEST_F(XmlParserTest, CommentsDropWholeLinesAndLinesAreGluedWithoutSeparator) {
  Parse(
      "<int name=\"A\">1</int> <!-- the whole line goes -->\n"
      "<!-- a comment over\n"
      "   several lines\n"
      "ends here --> <int name=\"B\">2</int>\n"
      "\t  <int name=\"C\">3</int>  \t\n"
      "\n"
      "<string name=\"Glued\">Hello\n"
      "     world</string>\n"
      "<string name=\"D\">a --> b</string>\r\n"
      "<string name=\"Windows\">line end</string>\r\n");
  EXPECT_FALSE(db_.Find<int>("A"));
  EXPECT_FALSE(db_.Find<int>("B"));
  EXPECT_EQ(*db_.Find<int>("C"), 3);
  EXPECT_EQ(*db_.Find<std::string>("Glued"), "Helloworld");
  EXPECT_EQ(*db_.Find<std::string>("D"), "a --> b");  // outside a comment it is ordinary text
  EXPECT_EQ(*db_.Find<std::string>("Windows"), "line end");
}

TEST_F(XmlParserTest, ATagWithoutQuotedNameIsReportedWithItsLine) {
  const std::string printed = Parse(
      "<int name=\"A\">1</int>\n"
      "<!-- skipped -->\n"
      "<int name=\"B\">2</int>\n"
      "<int name=C>3</int>\n");
  EXPECT_NE(printed.find("Level.xml:4: expected a quoted name"), std::string::npos) << printed;
  EXPECT_TRUE(db_.Find<int>("B"));
  EXPECT_FALSE(db_.Find<int>("C"));
}

// Files that parse but most likely lost something: each case gives the warnings expected, with
// the lines of the file (comments and blank lines counted).
TEST_F(XmlParserTest, UnclosedElementsAndDatabasesDefinedTwiceAreWarnedWithTheirLines) {
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"<Database name=\"GameObjects\">\n"
       "  <Database name=\"Ball\"><int name=\"A\">1</int></Database>\n"
       "\n"
       "  <Database name=\"Crate\">\n"
       "    <int name=\"B\">2</int>\n",
       {":4: \"Crate\" is not closed: the file ends inside it (2 open element(s)); it may be cut "
        "short"}},
      {"<Database name=\"GameObjects\">\n<!-- two balls -->\n"
       "  <Database name=\"Ball\"><int name=\"A\">1</int></Database>\n"
       "  <Database name=\"Ball\"><int name=\"B\">2</int></Database>\n"
       "  <Database name=\"Ball\"></Database>\n"
       "</Database>\n"
       "<Database name=\"Ball\"></Database>\n",
       {":4: \"Ball\" is defined twice in the same database (first at line 3); the second replaces "
        "the first",
        ":5: \"Ball\" is defined twice in the same database (first at line 4); the second replaces "
        "the first"}},
      {"<int name=\"A\">1</int>\n<int name=\"A\">2</int>\n<int name=\"B\">3",
       {":3: \"B\" is not closed: the file ends inside it (1 open element(s)); it may be cut "
        "short"}},
  };
  for (const auto& [text, expected] : cases) {
    SCOPED_TRACE(text);
    db_ = Database();
    XmlParser parser;
    parser.ReadFile(WriteFile(text));
    parser.ParseInto(db_);
    std::vector<std::string> lines;
    for (const std::string& line : expected) lines.push_back(path_ + line);
    EXPECT_EQ(parser.Warnings(), lines);
  }
}

TEST_F(XmlParserTest, ManyElementsParseWithoutDeepNativeRecursion) {
  // The reader as first written went one native call deeper for every sibling element and ran
  // out of stack long before 200,000. Each value replaces the one before: the pools stay small.
  std::string text;
  for (int i = 0; i < 200000; ++i) text += "<int name=\"Value\">" + std::to_string(i) + "</int>\n";
  Parse(text);
  EXPECT_EQ(db_.EntryCount(), 1u);
  EXPECT_EQ(*db_.Find<int>("Value"), 199999);
}

TEST_F(XmlParserTest, AMissingFileOrAnUnknownTypeStops) {
  const std::string missing = "/nonexistent/Grindle/Nowhere.xml";
  EXPECT_DEATH(
      {
        StdoutToStderr();
        ParseFile(missing, db_);
      },
      "DETAILS: Missing File" + missing + "(.|\n)*The expression true failed\\.");
  const std::string unknown = WriteFile("<?xml version=\"1.0\"?>\n<int name=\"A\">1</int>\n");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        ParseFile(unknown, db_);
      },
      "DETAILS: Error Type in XML(.|\n)*The expression type == ERROR_TYPE failed\\.");
}

}  // namespace
}  // namespace grindle
