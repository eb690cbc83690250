// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QList>
#include <QLocale>
#include <functional>

#include "apps/growth/testing/GrowthApplication.h"
#include "desktop/settings/Translations.h"

namespace languages {

/// A locale of the language.
QLocale localeOf(const QString& language);

/// The growth application in a language, with its translations from the build folder. Its windows are shown
/// as the person meets them, with something in every place that can hold a text.
class WindowsInLanguage {
 public:
  explicit WindowsInLanguage(const QString& language);

  /// Called with a shown window and what it shows: "Preferences of OsiriX".
  using Visit = std::function<void(const QString& what, QWidget& window)>;
  /// Shows one window after the other, in each of its states.
  void each(const Visit& visit);

  GrowthDocument& filledRecord();
  /// Leads through what the chart and the results say when there is nothing to show.
  void incompleteRecords(const Visit& visit);

 private:
  velmora::desktop::Translations translations_;

 public:
  growth::GrowthApplication application;

 private:
  void about(const Visit& visit);
  void records(const Visit& visit);
  void preferences(const Visit& visit);
  void batchExport(const Visit& visit);
  void progress(const Visit& visit);
};

}  // namespace languages
