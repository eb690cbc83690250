// SPDX-License-Identifier: LGPL-3.0-or-later
#include "orv/chart/GraphLabels.h"

#include <algorithm>

namespace velmora::orv {

namespace {

// Labels that touch: they stand `spacing` apart from `first` on.
struct Block {
  double sumOfStarts;  ///< of the places that each label would give to the first of the block
  int count;
  double first;
};

}  // namespace

QList<double> spreadLabels(const QList<double>& wanted, double spacing, double lowest, double highest) {
  QList<Block> blocks;
  const auto settle = [&](Block& block) {
    const double room = highest - (block.count - 1) * spacing;
    block.first = std::max(lowest, std::min(block.sumOfStarts / block.count, room));
  };
  for (const double place : wanted) {
    Block block{place, 1, 0};
    settle(block);
    // A block that runs into the one above it becomes part of it.
    while (!blocks.isEmpty() && blocks.last().first + blocks.last().count * spacing > block.first) {
      const Block above = blocks.takeLast();
      block.sumOfStarts = above.sumOfStarts + block.sumOfStarts - block.count * above.count * spacing;
      block.count += above.count;
      settle(block);
    }
    blocks.append(block);
  }

  QList<double> places;
  for (const Block& block : blocks) {
    for (int label = 0; label < block.count; ++label) places.append(block.first + label * spacing);
  }
  return places;
}

}  // namespace velmora::orv
