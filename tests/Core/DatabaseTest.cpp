#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "TestOutput.h"

namespace grindle {
namespace {

TEST(KeyInterner, HandsOutKeysInStepsOfSevenInOrderOfFirstUseAndTheThousandAndFirstWrapsToSix) {
  KeyInterner keys;
  EXPECT_EQ(keys.HashValue("First"), 7u);
  EXPECT_EQ(keys.HashValue("Second"), 14u);
  EXPECT_EQ(keys.HashValue("First"), 7u);
  EXPECT_EQ(keys.NextOpenHash(), 21);
  EXPECT_EQ(keys.NameOf(14), "Second");
  EXPECT_EQ(keys.NameOf(21), "");
  for (int i = 2; i < 1000; ++i) keys.HashValue("name" + std::to_string(i));
  EXPECT_EQ(keys.HashValue("name1000"), 6u);
  EXPECT_EQ(keys.HashValue("name1001"), 13u);
}

TEST(KeyInterner, WellKnownNamesTakeTheFirstKeysInTableOrder) {
  KeyInterner keys;
  for (size_t i = 0; i < kWellKnownKeyCount; ++i) {
    ASSERT_EQ(keys.HashValue(kWellKnownKeyNames[i]), 7u * (i + 1)) << kWellKnownKeyNames[i];
  }
  EXPECT_NE(keys.HashValue("ViewX"), keys.HashValue("viewX"));
  EXPECT_STREQ(kWellKnownKeyNames[static_cast<size_t>(WellKnown::wMinute)], "wMinute");
}

TEST(KeyInternerDeathTest, TheSevenThousandAndFirstNameCollides) {
  EXPECT_DEATH(
      {
        StdoutToStderr();
        KeyInterner keys;
        for (int i = 0; i < 7001; ++i) keys.HashValue("n" + std::to_string(i));
      },
      "The expression cReverseLookupTable_\\[nextOpenHash\\] != \"\" failed\\.\n"
      "In file Core/Database\nAt line 138");
}

TEST(Database, AddFindAndTypeCodes) {
  Database db;
  db.Add<double>("Speed", 2.5);
  db.Add<int>("Lives", 3);
  db.Add<std::string>("Title", "Grindle");
  db.Add<bool>("Flag", true);
  db.Add<Database>("Child");
  db.Add<float>("Ratio", 0.5f);
  db.Add<char>("Letter", 'x');
  db.Add<unsigned int>("Count", 4u);

  // double, int, string, bool and database have codes of their own; other kinds 6, none 7.
  std::string codes;
  for (const char* name :
       {"Speed", "Lives", "Title", "Flag", "Child", "Ratio", "Letter", "Count", "NeverAdded"}) {
    codes += std::to_string(db.GetEntryType(name));
  }
  EXPECT_EQ(codes, "012346667");

  EXPECT_EQ(*db.Find<double>("Speed"), 2.5);
  EXPECT_EQ(*db.Find<std::string>("Title"), "Grindle");
  EXPECT_EQ(db.Find<Database>("Child")->Name(), "Child");
  // A typed lookup of another kind is refused rather than reinterpreted.
  EXPECT_FALSE(db.Find<int>("Speed"));
  EXPECT_FALSE(db.Find<double>("NeverAdded"));
}

TEST(Database, ReAddingReplacesTheEntryAndListsTheNameTwiceRemovingKeepsTheName) {
  Database db;
  db.Add<int>("Value", 1);
  db.Add<std::string>("Value", "two");
  EXPECT_EQ(db.GetEntryType("Value"), 2u);
  EXPECT_EQ(*db.Find<std::string>("Value"), "two");
  EXPECT_EQ(db.EntryCount(), 1u);
  ASSERT_EQ(db.Records().size(), 2u);
  EXPECT_EQ(db.Records()[1].name, "Value");
  // The replaced entry's block goes back to its pool and may be reused at once; removing a later
  // entry must still drop that entry's own record, not the stale one.
  db.Add<int>("Gone", 3);
  db.Remove("Gone");
  ASSERT_EQ(db.Records().size(), 2u);
  EXPECT_EQ(db.Records()[0].name, "Value");
  EXPECT_EQ(db.Records()[1].name, "Value");

  Database other;
  DataHandle<int> tracked = other.Add<int>("Gone", 1);
  other.Add<int>("Kept", 2);
  tracked.TrackEntry();
  const uint32_t key = HashValue("Gone");
  other.Remove("Gone");
  EXPECT_FALSE(tracked);  // tracked handles are cleared with their entry
  EXPECT_EQ(other.GetEntryType("Gone"), 7u);
  ASSERT_EQ(other.Records().size(), 1u);
  EXPECT_EQ(other.Records()[0].name, "Kept");
  EXPECT_EQ(HashValue("Gone"), key);
  other.Remove("NotThere");
}

TEST(Database, CopiesAreDeepAndIndependent) {
  Database source;
  DataHandle<Database> child = source.Add<Database>("Child");
  child->Add<double>("X", 1.0);
  source.Add<std::string>("Name", "original");

  Database copy(source);
  *copy.Find<Database>("Child")->Find<double>("X") = 9.0;
  *copy.Find<std::string>("Name") = "changed";

  EXPECT_EQ(*source.Find<Database>("Child")->Find<double>("X"), 1.0);
  EXPECT_EQ(*source.Find<std::string>("Name"), "original");
  EXPECT_EQ(*copy.Find<Database>("Child")->Find<double>("X"), 9.0);
}

// Long runs of adds, replacements and removals over names whose keys crowd the last slots of a
// 64-slot table (so probes wrap, the table grows and removals must close gaps) must keep every name
// findable with its latest value and kind, and a copy must hold exactly the same.
TEST(Database, ChurnAgreesWithAReferenceMapAndCopiesAgreeToo) {
  std::vector<std::string> names;
  for (int i = 0; names.size() < 40; ++i) {
    const std::string name = "Churn" + std::to_string(i);
    if (HashValue(name) % 64 >= 60) names.push_back(name);
  }
  Database db;
  std::map<std::string, double> expected;
  std::mt19937 random(11);
  const auto agrees = [&](const Database& d) {
    for (const std::string& name : names) {
      const auto found = expected.find(name);
      const DataHandle<double> value = d.Find<double>(name);
      if (found == expected.end() ? value.IsValid() : !value || *value != found->second) {
        return testing::AssertionFailure() << name;
      }
    }
    if (d.EntryCount() != expected.size()) return testing::AssertionFailure() << "count";
    return testing::AssertionSuccess();
  };
  for (int step = 0; step < 20000; ++step) {
    const std::string& name = names[random() % names.size()];
    if (random() % 3 == 0) {
      db.Remove(name);
      expected.erase(name);
    } else {
      db.Add<double>(name, step);
      expected[name] = step;
    }
    ASSERT_TRUE(agrees(db)) << step;
  }
  db.Add<int>(names[0], 3);  // another kind under a name: only that kind is found
  expected.erase(names[0]);
  EXPECT_FALSE(db.Find<double>(names[0]));
  EXPECT_EQ(*db.Find<int>(names[0]), 3);
  Database copy(db);
  copy.Remove(names[0]);
  EXPECT_TRUE(agrees(copy));
}

TEST(Database, LookupAndInterningAreCounted) {
  Database db;
  const DatabaseCounters before = Counters();
  db.Add<int>("Counted", 1);
  db.Find<int>(HashValue("Counted"));
  EXPECT_EQ(Counters().lookups - before.lookups, 1u);
  EXPECT_EQ(Counters().hashCalls - before.hashCalls, 3u);  // twice in Add, once here
}

TEST(Database, PrintLinesOfEveryKindWithNestedDatabasesIndentedByTwoSpaces) {
  auto printed = [](auto value) {
    Database db;
    db.Add<decltype(value)>("N", value);
    return CaptureStdout([&] { db.Print(1); });
  };
  EXPECT_EQ(printed(1.5), "  double (N) = 1.500000\n");
  EXPECT_EQ(printed(std::string("hi")), "  string (N) = hi\n");
  EXPECT_EQ(printed(true), "  unknown (N)\n");
  EXPECT_EQ(printed(2.0f), "  float (N) = 2.000000\n");
  EXPECT_EQ(printed('q'), "  char (N) = q\n");
  EXPECT_EQ(printed(7u), "  unknown (N)\n");
  Database root;
  root.Add<Database>("S")->Add<int>("A", 5);
  EXPECT_EQ(CaptureStdout([&] { root.Print(0); }), "Database (S) =\n  int (A) = 5\n");
}

TEST(DatabaseDeathTest, DereferencingANullHandleStops) {
  Database db;
  DataHandle<double> missing = db.Find<double>("Missing");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        (void)*missing;
      },
      "DETAILS: Attempt to dereference null data pointer(.|\n)*"
      "The expression pData_ == NULL failed\\.\nIn file Core/Database\\.h\nAt line 157\n"
      "Time & Date of occurence: ");
}

}  // namespace
}  // namespace grindle
