// SPDX-License-Identifier: LGPL-3.0-or-later
#include "bridge/pacs/WebPacs.h"

#include <QByteArrayList>
#include <QUrl>
#include <algorithm>

#include "bridge/dicom/DicomText.h"
#include "bridge/pacs/DicomJson.h"
#include "bridge/pacs/DimseStatus.h"
#include "bridge/pacs/StowMessage.h"
#include "bridge/pacs/StudyMatch.h"
#include "bridge/pacs/WebExchange.h"

namespace bridge {
namespace {

/// "Duplicate SOP instance" (PS3.7 annex C.4.4).
constexpr int AlreadyThere = 0x0111;
constexpr const char* Json = "application/dicom+json";
/// A proper UID (PS3.5 B.2, of the UUID that is all ones) that no study has.
constexpr const char* NoStudy = "2.25.340282366920938463463374607431768211455";

/// The address of the archive's studies. A user and password in it are left to the settings of these names.
QUrl studiesUrl(const PacsSettings& settings) {
  QUrl url = settings.url;
  url.setUserInfo(QString());
  url.setFragment(QString());
  // As it was written: an encoded slash or percent sign stays one.
  QString path = url.path(QUrl::FullyEncoded);
  while (path.endsWith(QLatin1Char('/'))) path.chop(1);
  url.setPath(path + QStringLiteral("/studies"), QUrl::StrictMode);
  return url;
}

QString shown(const QUrl& url) { return url.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemoveQuery); }

/// Characters that stand in a query as they are (RFC 3986, 3.4) and separate nothing in it.
constexpr const char* PlainInQuery = "!$'()*/:?@";

QByteArray encoded(const QString& value) { return QUrl::toPercentEncoding(value, PlainInQuery); }

/// The value with a wildcard in place of all characters that would have to be encoded, for a server that does
/// not decode a query, or that compares it with values from which it has removed such characters.
QString withWildcards(const QString& value) {
  const QChar any = QLatin1Char('*');
  QString result;
  for (const QChar character : value) {
    const QString one(character);
    const QChar sent = encoded(one) == one.toUtf8() ? character : any;
    if (sent != any || !result.endsWith(any)) result += sent;
  }
  return result;
}

/// The query with wildcards in the texts of the patient's identifier and the accession number.
StudyQuery withWildcards(StudyQuery query) {
  query.patientID = withWildcards(query.patientID);
  query.accessionNumber = withWildcards(query.accessionNumber);
  return query;
}

bool sameTexts(const StudyQuery& a, const StudyQuery& b) {
  return a.patientID == b.patientID && a.accessionNumber == b.accessionNumber;
}

/// What the status of an answer means when it is no success and its body does not tell.
PacsFailure refusal(const WebAnswer& answer, const QUrl& url) {
  const auto words = [&](const QString& what) {
    return QStringLiteral("%1 (status %2 from %3)").arg(what).arg(answer.status).arg(shown(url));
  };
  const auto tryAgain = [&](const QString& what) { return PacsFailure::tryAgain(words(what)); };
  const auto never = [&](const QString& what) { return PacsFailure::never(words(what)); };
  switch (answer.status) {
    case 401:
      return tryAgain(QStringLiteral("the archive does not accept the user or the password"));
    case 403:
      return tryAgain(QStringLiteral("the archive does not permit this"));
    case 404:
    case 405:
    case 501:
      return tryAgain(QStringLiteral("there is no DICOMweb service at this address"));
    case 408:
    case 429:
    case 503:
    case 504:
      return tryAgain(QStringLiteral("the archive is busy"));
    case 413:
      return never(QStringLiteral("the chart is too large for the archive"));
    case 507:
      return tryAgain(QStringLiteral("the archive has no room for the chart"));
    default:
      break;
  }
  if (answer.status / 100 == 3) {
    const QUrl target = url.resolved(QUrl(QString::fromUtf8(answer.location)));
    return tryAgain(QStringLiteral("the archive sends us on to %1, which must be configured if it is right")
                        .arg(shown(target)));
  }
  if (answer.status / 100 == 4) return never(QStringLiteral("the archive refuses the request"));
  return tryAgain(QStringLiteral("the archive failed"));
}

/// Whether the server has said that it left studies out of its answer (PS3.18 8.3.4.4).
bool leftSomeOut(const WebAnswer& answer) {
  return std::any_of(answer.warnings.begin(), answer.warnings.end(), [](const QByteArray& warning) {
    return warning.startsWith("299") && warning.toLower().contains("additional results");
  });
}

PacsFailure tooMany() {
  return PacsFailure::never(
      QStringLiteral("more than %1 studies match: ask for something narrower").arg(Pacs::MostStudies));
}

WebRequest storeRequest(const QUrl& url, const QByteArray& file) {
  const StowMessage message = stowMessage(file);
  return {url, Json, message.contentType, message.body};
}

QUrl searchUrl(const QUrl& studies, const StudyQuery& query) {
  QByteArrayList parts;
  const auto add = [&parts](const char* name, const QString& value) {
    if (!value.isEmpty()) parts.append(QByteArray(name) + '=' + encoded(value));
  };
  add("StudyInstanceUID", query.studyInstanceUID);
  add("AccessionNumber", query.accessionNumber);
  add("PatientID", query.patientID);
  add("StudyDate", dicomDate(query.studyDate));
  for (const Tag tag : StudyAttributes) {
    if (tag != tags::StudyInstanceUID) add("includefield", jsonKey(tag));  // it always comes along
  }
  // One more than we take, to know whether there are more.
  add("limit", QString::number(Pacs::MostStudies + 1));
  QUrl url = studies;
  url.setQuery(QString::fromLatin1(parts.join('&')), QUrl::StrictMode);
  return url;
}

/// Asks for one query, and gives those studies of the answer that match another.
PacsResult<QList<Study>> search(const PacsSettings& settings, const StudyQuery& asked,
                                const StudyQuery& meant) {
  const QUrl url = studiesUrl(settings);
  const auto answer = exchange(settings, {searchUrl(url, asked), Json, {}, {}});
  if (!answer.ok()) return PacsFailure::tryAgain(answer.error());
  QList<Study> studies;
  if (answer->status == 204) return studies;
  if (answer->status != 200) return refusal(*answer, url);
  if (leftSomeOut(*answer)) return tooMany();
  const auto found = studiesFromJson(answer->body);
  if (!found.ok()) return PacsFailure::tryAgain(found.error());
  if (found->size() > Pacs::MostStudies) return tooMany();
  for (const Study& study : *found) {
    if (matches(study, meant) && !studies.contains(study)) studies.append(study);
  }
  return studies;
}

}  // namespace

PacsResult<QList<Study>> WebPacs::findStudies(const StudyQuery& query) {
  if (isUnrestricted(query)) return PacsFailure::never(QStringLiteral("nothing was asked for"));
  if (cannotMatch(query)) return QList<Study>();
  const PacsResult<QList<Study>> found = search(settings_, query, query);
  // Orthanc's DICOMweb plugin 1.7 takes "%20" for three characters, and finds nothing.
  const StudyQuery generous = withWildcards(query);
  const bool askAgain = found.ok() && found->isEmpty() && !sameTexts(query, generous);
  return askAgain ? search(settings_, generous, query) : found;
}

PacsResult<> WebPacs::store(const QByteArray& file, const QString& sopClassUID,
                            const QString& sopInstanceUID) {
  // The file names its SOP class itself.
  Q_UNUSED(sopClassUID)
  const QUrl url = studiesUrl(settings_);
  const auto answer = exchange(settings_, storeRequest(url, file));
  if (!answer.ok()) return PacsFailure::tryAgain(answer.error());
  const bool success = answer->status / 100 == 2;
  // 409 says that nothing was stored, 202 that not all was, and some servers say 400: what they say of the
  // instance goes before the status.
  const StowVerdict verdict = stowVerdict(answer->body, sopInstanceUID);
  if (verdict.said == StowVerdict::Said::Failed && verdict.failureReason > 0) {
    // A reason that is a warning elsewhere does not make a success of what the archive lists as failed; that
    // the object is there already does.
    const PacsResult<> result = storeOutcome(static_cast<quint16>(verdict.failureReason));
    if (!result.ok() || verdict.failureReason == AlreadyThere) return result;
  }
  if (!success) return refusal(*answer, url);
  if (verdict.said == StowVerdict::Said::Stored) return {};
  return PacsFailure::tryAgain(QStringLiteral("the archive does not say that it has stored the chart"));
}

PacsResult<> WebPacs::check() {
  StudyQuery nowhere;
  nowhere.studyInstanceUID = QString::fromLatin1(NoStudy);
  const PacsResult<QList<Study>> found = findStudies(nowhere);
  if (!found.ok()) return found.failure();
  const QUrl url = studiesUrl(settings_);
  const auto answer = exchange(settings_, storeRequest(url, {}));
  if (!answer.ok()) return PacsFailure::tryAgain(answer.error());
  // An archive that refuses an empty package as such would still take a full one.
  switch (answer->status) {
    case 401:
    case 403:
    case 404:
    case 405:
    case 501:
      return refusal(*answer, url);
    default:
      return answer->status / 100 == 3 ? refusal(*answer, url) : PacsResult<>();
  }
}

}  // namespace bridge
