// similar_command.cpp: `zeb similar A B`, every similarity score of two strings, one per line as
// "name: value": the edit distance, the proportion, the word proportion, the character-set
// overlaps and the composite score.
#include <memory>

#include "tools/zeb/zeb_tool.h"
#include "zeb/zeb_common.h"

namespace zebtool {

namespace {

struct SimilarOptions {
  std::string a;
  std::string b;
};

int runSimilar(const SimilarOptions& options) {
  TStrSimilar similar;
  const char* a = options.a.c_str();
  const char* b = options.b.c_str();
  const std::pair<const char*, unsigned> scores[] = {
      {"distance", similar.distance(a, b, 0)},
      {"proportion", similar.similarity_proportion(a, b)},
      {"words proportion", similar.similarityWords_proportion(a, b)},
      {"characters in common", similar.similarity_InterSec(a, b)},
      {"characters in common, any case", similar.similarity_InterSecNoCase(a, b)},
      {"composite", similar.simlarity_composite(a, b)},
  };
  std::string lines;
  for (const auto& score : scores) lines += std::string(score.first) + ": " +
                                            std::to_string(score.second) + "\n";
  return writeOutput(lines) ? kSuccess : kFailure;
}

}  // namespace

void addSimilarCommand(CLI::App& app, ToolRun& run) {
  auto options = std::make_shared<SimilarOptions>();
  CLI::App* command = app.add_subcommand(
      "similar", "Every similarity score of two strings (0 to 100; the distance in edits).");
  command->add_option("a", options->a, "the first string")->required();
  command->add_option("b", options->b, "the second string")->required();
  command->callback([options, &run] { run.status = runSimilar(*options); });
}

}  // namespace zebtool
