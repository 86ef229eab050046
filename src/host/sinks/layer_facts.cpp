#include "host/sinks/layer_facts.h"

#include <cmath>

#include "platform/interrupt.h"
#include "platform/notes.h"

namespace loom {
namespace {

constexpr int kMostDecimalsHeld = 15;

// Of the shortest decimal number; most values have as many as the one before.
int DecimalsOf(double value, int at_least) {
  double power = std::pow(10.0, at_least);
  for (int decimals = at_least; decimals < kMostDecimalsHeld; ++decimals, power *= 10) {
    if (std::nearbyint(value * power) / power == value) return decimals;
  }
  return kMostDecimalsHeld;
}

void AddNumber(double value, bool is_real, ColumnFacts& facts) {
  if (std::isnan(value)) return;
  if (!(facts.minimum <= value)) facts.minimum = value;
  if (!(facts.maximum >= value)) facts.maximum = value;
  if (is_real) facts.decimals = DecimalsOf(value, facts.decimals);
}

void Add(const RowBlock& block, LayerSchema& schema) {
  for (std::size_t at = 0; at < schema.columns.size(); ++at) {
    LayerColumn& column = schema.columns[at];
    for (std::size_t row = 0; row < block.rows; ++row) {
      if (column.IsText())
        column.facts.text_bytes = std::max(column.facts.text_bytes, block.columns[at].texts[row].size());
      else
        AddNumber(block.columns[at].numbers[row], column.type == ColumnType::kReal, column.facts);
    }
  }
}

}  // namespace

// What the rows give rise to is noted when they are written.
void CollectFacts(ILayerSource& source, LayerSchema& schema) {
  Notes unused;
  const NotesScope scope(unused);
  RowBlock block;
  for (source.GoToStart(); source.Next(block);) {
    StopIfInterrupted();
    Add(block, schema);
  }
}

}  // namespace loom
