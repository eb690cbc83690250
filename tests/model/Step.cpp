// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Random steps. What a user does often comes often; what tends to meet other things comes more often than in
// life.
#include "tests/model/Step.h"

#include <QDate>
#include <QStringList>

namespace model {

namespace {

struct Weight {
  Kind kind;
  int weight;
};
constexpr Weight weights[] = {
    {Kind::Link, 16},         {Kind::Pass, 14},         {Kind::TypeIdentifier, 12},
    {Kind::TypeBirth, 3},     {Kind::TypeDate, 4},      {Kind::TypeMeasure, 12},
    {Kind::TypeOn, 7},        {Kind::NewExam, 7},       {Kind::DeleteExam, 5},
    {Kind::AnswerSheet, 7},   {Kind::Next, 3},          {Kind::Previous, 4},
    {Kind::Click, 3},         {Kind::Save, 9},          {Kind::SaveAs, 3},
    {Kind::Close, 6},         {Kind::CloseAll, 1},      {Kind::Quit, 2},
    {Kind::SessionEnd, 1},    {Kind::NewDocument, 7},   {Kind::OpenFile, 4},
    {Kind::BatchOpen, 3},     {Kind::Export, 2},        {Kind::Front, 6},
    {Kind::AutoSave, 2},      {Kind::ToOsirix, 1},      {Kind::ForeignChange, 2},
    {Kind::ForeignRemove, 2}, {Kind::ForeignDamage, 1}, {Kind::ForeignRace, 2},
    {Kind::OpenKept, 2},      {Kind::FailingWrites, 2}, {Kind::FailingCopies, 2},
    {Kind::KeepsBlank, 1},
};

int below(std::mt19937& random, int limit) {
  return static_cast<int>(random() % static_cast<unsigned>(limit));
}

template <typename Values>
auto oneOf(std::mt19937& random, const Values& values) {
  return values[below(random, static_cast<int>(std::size(values)))];
}

QString someDay(std::mt19937& random) {
  return QDate(2024, 1, 1).addDays(below(random, 120)).toString(QStringLiteral("dd/MM/yyyy"));
}

QString someSeconds(std::mt19937& random) {
  static const char* const seconds[] = {"0", "0.05", "0.1", "0.1", "1", "4", "10"};
  return QString::fromLatin1(oneOf(random, seconds));
}

Event someLink(std::mt19937& random) {
  static const char* const patients[] = {"P1", "P1", "P2", "P2", "p1", "12/3", "12-3", "Q9", "P3"};
  if (below(random, 40) == 0) return {Kind::Link, QString(), 0};
  return {Kind::Link, QString::fromLatin1(oneOf(random, patients)), below(random, 400)};
}

Answer someAnswer(std::mt19937& random) {
  Answer answer{below(random, 5) < 3 ? 0 : below(random, 4), {}};
  if (below(random, 4) == 0) answer.meanwhile.append(someLink(random));
  if (below(random, 4) == 0) answer.meanwhile.append({Kind::Pass, someSeconds(random), 0});
  return answer;
}

}  // namespace

Step randomStep(std::mt19937& random, int serial) {
  int total = 0;
  for (const Weight& each : weights) total += each.weight;
  int place = below(random, total);
  Step step;
  for (const Weight& each : weights) {
    step.kind = each.kind;
    place -= each.weight;
    if (place < 0) break;
  }
  static const char* const identifiers[] = {"P1", "P1", "p1", "P2", "p2", "12/3", "X7", "x8", "old/P3", ""};
  switch (step.kind) {
    case Kind::Link:
      static_cast<Event&>(step) = someLink(random);
      break;
    case Kind::Pass:
      step.text = someSeconds(random);
      break;
    case Kind::TypeIdentifier:
      step.text = QString::fromLatin1(oneOf(random, identifiers));
      step.number = below(random, 2);
      break;
    case Kind::TypeBirth:
    case Kind::TypeDate:
      if (below(random, 8) != 0) step.text = someDay(random);
      step.number = below(random, 2);
      break;
    case Kind::TypeMeasure:
      step.text = QStringLiteral("m%1").arg(serial);
      step.number = below(random, 2);
      break;
    case Kind::TypeOn:
      step.text = QStringLiteral("x");
      step.number = below(random, 4) == 0 ? 1 : 0;
      break;
    case Kind::FailingWrites:
    case Kind::FailingCopies:
      step.number = below(random, 3) == 0 ? 1 : 0;
      break;
    case Kind::AutoSave:
      step.number = below(random, 3) == 0 ? 0 : 1;
      break;
    default:
      step.number = below(random, 6);
      break;
  }
  for (int answers = below(random, 4); answers > 0; --answers) step.answers.append(someAnswer(random));
  return step;
}

}  // namespace model
