// Checks a generated part of a reference page: the text between the page's begin and end marker
// lines must equal what the code renders. With GRINDLE_UPDATE_DOCS set, a differing part is
// rewritten instead, which is how the pages are regenerated after the code changes.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "TempWorkDir.h"

inline void ExpectGeneratedSection(const std::string& path, const std::string& name,
                                   const std::string& rendered) {
  const std::string begin = "<!-- " + name + " begins -->\n";
  const std::string end = "<!-- " + name + " ends -->\n";
  std::string page = grindle::ReadFile(path);
  const size_t first = page.find(begin);
  const size_t last = page.find(end);
  ASSERT_NE(first, std::string::npos) << path << " has no line " << begin;
  ASSERT_NE(last, std::string::npos) << path << " has no line " << end;
  const size_t from = first + begin.size();
  const std::string listed = page.substr(from, last - from);
  if (listed != rendered && std::getenv("GRINDLE_UPDATE_DOCS") != nullptr) {
    page.replace(from, last - from, rendered);
    std::ofstream(path) << page;
    return;
  }
  EXPECT_EQ(listed, rendered) << path << " differs from the code; rerun this test with "
                              << "GRINDLE_UPDATE_DOCS=1 to rewrite it";
}
