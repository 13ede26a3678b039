// grindle_modelgen: the committed demo models are exactly what the generator writes, and they load
// cleanly with the names the game relies on (the character's clips "Idle" and "Run").
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "Graphics/Loader/Loader.h"
#include "Graphics/Loader/ModelCheck.h"
#include "ProcessRun.h"
#include "TempWorkDir.h"

namespace grindle {
namespace {

namespace fs = std::filesystem;

TEST(ModelGen, CommittedModelsAreTheGeneratorsOutputAndLoadCleanly) {
  TempWorkDir dir;
  const ProcessResult run = RunProcess(std::string("'") + GRINDLE_MODELGEN + "' out 2>&1");
  ASSERT_EQ(run.status, 0) << run.output;
  const fs::path committed = fs::path(GRINDLE_GAME_DIR) / "Assets" / "Models";
  for (const char* file : {"Static/Crate.mdl", "Static/Barrel.mdl", "Static/Pillar.mdl",
                           "Static/Potato.mdl", "Skinned/Character.smdl"}) {
    SCOPED_TRACE(file);
    const fs::path written = dir.path / "out" / "Assets" / "Models" / file;
    EXPECT_EQ(ReadFile(written), ReadFile(committed / file)) << "regenerate with grindle_modelgen game";
    models::ScanProblem problem;
    models::CheckedModel checked;
    if (fs::path(file).extension() == ".mdl") {
      models::StaticModelData m;
      models::LoadStaticMesh(written.string(), m.vertices, m.indices, m.subsets, m.materials,
                             &problem);
      checked = models::CheckStaticModel(file, m, problem);
    } else {
      models::SkinnedModelData m;
      models::LoadSkinnedMesh(written.string(), m.vertices, m.indices, m.subsets, m.materials,
                              m.skeleton, &problem);
      checked = models::CheckSkinnedModel(file, m, problem);
      EXPECT_EQ(m.skeleton.clips.count("Idle"), 1u);
      EXPECT_EQ(m.skeleton.clips.count("Run"), 1u);
      EXPECT_EQ(m.skeleton.boneNames.size(), 7u);
    }
    EXPECT_TRUE(checked.drawable);
    EXPECT_TRUE(checked.problems.empty()) << models::SummariseProblems(checked);
    EXPECT_FALSE(checked.ranges.empty());
  }
}

}  // namespace
}  // namespace grindle
