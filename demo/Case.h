// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QDate>
#include <QLocale>
#include <QString>

#include "demo/Viewer.h"

/// The patient of the demonstration, an invented one.
namespace demo {

inline const Study FirstVisit{"12/345/6", "Doe, Robin", QDate(2019, 1, 21), QDate(2022, 5, 6),
                              "2.25.31827665148201"};
inline const Study LaterVisit{"12/345/6", "Doe, Robin", QDate(2019, 1, 21), QDate(2025, 5, 15),
                              "2.25.31827665148202"};
inline const QDate SecondExamination(2023, 11, 14);

/// Two more, for the batch export.
inline const Study SecondPatient{"22-200-2", "Roe, Alex", QDate(2023, 8, 3), QDate(2024, 9, 10),
                                 "2.25.31827665148203"};
inline const Study ThirdPatient{"33-300-3", "Poe, Kim", QDate(2016, 2, 18), QDate(2024, 9, 11),
                                "2.25.31827665148204"};

/// What is typed at each examination: kilograms, centimetres, centimetres.
struct Measurements {
  QString weight, height, head;
};
inline const Measurements First{"14.6", "97.2", "50.1"};
inline const Measurements Second{"17.6", "107.8", "50.9"};
inline const Measurements Third{"20.9", "118.4", "51.5"};
inline const QString CorrectedWeight = "21.8";  // of the third
inline const QString FinalWeight = "21.4";      // and corrected again

/// How the identifier must read in the application and in file names.
inline const QString SavedIdentifier = "12-345-6";
inline const QString RecordName = SavedIdentifier + ".growth";

/// A date as the application shows it where the language is plain C.
inline QString shown(const QDate& date) { return QLocale::c().toString(date, "d MMM yyyy"); }

/// A stretch of time for reading.
inline QString seconds(qint64 milliseconds) {
  return QString::number(static_cast<double>(milliseconds) / 1000, 'f', 2) + " s";
}

}  // namespace demo
