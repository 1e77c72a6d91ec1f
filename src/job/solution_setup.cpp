#include "job/solution_setup.h"

#include "solution/buffer_density.h"
#include "solution/protein_constants.h"
#include "solution/sequence.h"
#include "solution/solution_fault.h"

namespace quorvane {

namespace {

// Runs `work` on the text of a key, whose fault becomes one of the setup.
template <class Work>
void Take(TableReader& table, const char* key, Work&& work) {
  try {
    if (const std::optional<std::string> text = table.Text(key)) work(*text);
  } catch (const SolutionFault& fault) {
    table.Fail(key, fault.what());
  }
}

}  // namespace

void WriteSolution(const SolutionEntry& entry, TomlWriter& out) {
  if (entry == SolutionEntry()) return;
  out.Table("solution");
  if (!entry.name.empty()) out.Key("name", entry.name);
  if (!entry.letters.empty()) out.Key("sequence", entry.letters);
  if (entry.disulphides) out.Key("disulphides", *entry.disulphides);
  out.Key("buffer", BufferText(entry.buffer));
  if (entry.degC) out.Key("temperature", *entry.degC);
  out.Key("path", entry.path);
}

SolutionEntry ReadSolutionEntry(TableReader& root) {
  SolutionEntry entry;
  std::optional<TableReader> table = root.Table("solution");
  if (!table) return entry;
  entry.name = table->Text("name").value_or("");
  Take(*table, "sequence",
       [&](const std::string& text) { entry.letters = ReadSequence(text).letters; });
  entry.disulphides = table->Integer("disulphides");
  if (entry.disulphides) {
    try {
      ConstantsOfProtein(entry.letters.empty() ? "G" : entry.letters, *entry.disulphides, 20.0);
    } catch (const SolutionFault& fault) {
      table->Fail("disulphides", fault.what());
    }
  }
  Take(*table, "buffer", [&](const std::string& text) { entry.buffer = ReadBuffer(text); });
  entry.degC = table->Number("temperature");
  if (entry.degC && !(*entry.degC >= kColdest && *entry.degC <= kHottest)) {
    table->Fail("temperature", "0 to 100 is wanted");
  }
  entry.path = table->Number("path").value_or(entry.path);
  if (!(entry.path > 0.0)) table->Fail("path", "it must be greater than 0");
  table->RefuseUnknownKeys();
  return entry;
}

}  // namespace quorvane
