// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/orthanc/PageScript.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "bridge/orthanc/PageScriptText.h"
#include "link/protocol/BundleIdentifier.h"

namespace bridge {
namespace {

constexpr qsizetype LongestName = 64;
constexpr qsizetype MostApplications = 20;

/// The applications of the section "Velmora", and what is wrong with it.
QJsonArray applicationsIn(const QJsonValue& section, QStringList& complaints) {
  QJsonArray applications;
  if (section.isUndefined()) return applications;
  const QJsonValue listed = section.toObject().value(QLatin1String("Applications"));
  if (!section.isObject() || !(listed.isUndefined() || listed.isArray())) {
    complaints.append(QStringLiteral("\"Velmora\" must be {\"Applications\": [...]}"));
    return applications;
  }
  const QJsonArray entries = listed.toArray();
  int number = 0;
  for (const auto& entry : entries) {
    ++number;
    const QString name = entry.toObject().value(QLatin1String("Name")).toString().trimmed();
    const QString identifier = entry.toObject().value(QLatin1String("BundleIdentifier")).toString();
    if (applications.size() == MostApplications) {
      complaints.append(QStringLiteral("\"Velmora\" names more than %1 applications; the others are left out")
                            .arg(MostApplications));
      break;
    }
    if (name.isEmpty() || name.size() > LongestName) {
      complaints.append(QStringLiteral("application %1 of \"Velmora\" has no \"Name\" of 1 to %2 characters")
                            .arg(number)
                            .arg(LongestName));
    } else if (!velmora::link::isBundleIdentifier(identifier)) {
      complaints.append(
          QStringLiteral("the \"BundleIdentifier\" of application %1 of \"Velmora\" is none; it has "
                         "letters, digits, dots, hyphens and underscores")
              .arg(number));
    } else {
      applications.append(
          QJsonObject{{QStringLiteral("name"), name}, {QStringLiteral("bundleIdentifier"), identifier}});
    }
  }
  return applications;
}

}  // namespace

PageScript pageScript(const QByteArray& orthancConfiguration) {
  PageScript script;
  const QJsonObject configuration = QJsonDocument::fromJson(orthancConfiguration).object();
  const QJsonArray applications =
      applicationsIn(configuration.value(QLatin1String("Velmora")), script.complaints);
  script.javaScript =
      "var velmoraApplications = " + QJsonDocument(applications).toJson(QJsonDocument::Compact) + ";\n" +
      PageScriptText;
  return script;
}

}  // namespace bridge
