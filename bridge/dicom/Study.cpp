// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/dicom/Study.h"

#include <QSet>
#include <QStringList>
#include <algorithm>

#include "bridge/dicom/DicomText.h"

namespace bridge {
namespace {

bool bothDiffer(const QString& one, const QString& other) {
  return !one.isEmpty() && !other.isEmpty() && one != other;
}

/// The words of one component group, without case and accents.
QSet<QString> wordsOf(const QString& group) {
  QString plain;
  for (const QChar c : group.normalized(QString::NormalizationForm_KD).toCaseFolded()) {
    if (!c.isMark()) plain += c.isLetterOrNumber() || c.isSurrogate() ? c : QLatin1Char(' ');
  }
  const QStringList words = plain.split(QLatin1Char(' '), Qt::SkipEmptyParts);
  return QSet<QString>(words.begin(), words.end());
}

bool areOtherNames(const QString& one, const QString& other) {
  const QStringList ours = one.split(QLatin1Char('='));
  const QStringList theirs = other.split(QLatin1Char('='));
  bool differ = false;
  for (qsizetype group = 0; group < std::min(ours.size(), theirs.size()); ++group) {
    const QSet<QString> our = wordsOf(ours.at(group));
    const QSet<QString> their = wordsOf(theirs.at(group));
    if (our.isEmpty() || their.isEmpty()) continue;
    if (our.intersects(their)) return false;
    differ = true;
  }
  return differ;
}

}  // namespace

std::optional<PatientAttribute> contradiction(const Study& one, const Study& other) {
  if (bothDiffer(withoutPadding(one.patientID), withoutPadding(other.patientID))) {
    return PatientAttribute::Identifier;
  }
  if (bothDiffer(one.issuerOfPatientID, other.issuerOfPatientID)) return PatientAttribute::Issuer;
  if (one.birthDate.isValid() && other.birthDate.isValid() && one.birthDate != other.birthDate) {
    return PatientAttribute::BirthDate;
  }
  const QString sexes = one.sex + other.sex;
  if (sexes == QLatin1String("MF") || sexes == QLatin1String("FM")) return PatientAttribute::Sex;
  if (areOtherNames(one.patientName, other.patientName)) return PatientAttribute::Name;
  return std::nullopt;
}

}  // namespace bridge
