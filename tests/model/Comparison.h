// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QSet>
#include <QStringList>
#include <map>

#include "tests/model/Record.h"

namespace model {

class Model;
class Player;

/// The data files below a folder, by their place below it; one that is not a data file stands with a damaged
/// record.
std::map<QString, Record> filesBelow(const QString& folder);

/// Compares the program with its model after a step, and looks whether every examination is still where it
/// may be.
class Comparison {
 public:
  /// What is not as it should be, in words; nothing when all is well. To be called after every step: it
  /// remembers what there was before.
  QStringList check(const Model& model, const Player& player);

 private:
  QSet<QString> before_;  // every version of an examination that could be found
};

}  // namespace model
