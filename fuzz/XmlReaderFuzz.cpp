// The typed-XML reader on arbitrary text, in the checking mode (an unknown element type ends the
// parse with a warning; in the engine it is the specified assertion). The key table is renewed
// for every input, as the engine interns at most 7001 names in a whole run.
#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "Core/xmlParser.h"
#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  grindle::ProcessKeys() = grindle::KeyInterner();
  grindle::InternWellKnownKeys();
  grindle::Database root;
  grindle::XmlParser parser;
  parser.EnableChecking();
  parser.ReadFile(grindle::fuzz::WriteInput(data, size, ".xml"));
  parser.ParseInto(root);
  return 0;
}
