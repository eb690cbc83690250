// SPDX-License-Identifier: LGPL-3.0-or-later
#include "desktop/activation/ActivationMessages.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QDir>
#include <QUrl>
#include <QVariantMap>
#include <ctime>

#include "link/protocol/BundleIdentifier.h"

namespace velmora::desktop::activationmessages {

namespace {

const QString ActivationToken = QStringLiteral("activation-token");
const QString StartupId = QStringLiteral("desktop-startup-id");
const QString Deadline = QStringLiteral("velmora-deadline");
const QString PrintAction = QStringLiteral("print");

constexpr qsizetype LongestLocation = 3 * 4096;  // a path of the longest kind, every byte escaped
constexpr qsizetype LongestToken = 512;
constexpr qsizetype LongestAction = 100;

/// A word that may go into the environment: printable ASCII, not too long. Else empty.
QString harmless(const QVariant& word) {
  const QString text = word.typeId() == QMetaType::QString ? word.toString() : QString();
  const bool printable =
      std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'!' && c <= u'~'; });
  return printable && text.size() <= LongestToken ? text : QString();
}

/// The path of a local file; nothing for any other location.
std::optional<QString> localFile(const QString& location) {
  if (location.size() > LongestLocation) return std::nullopt;
  const QUrl url(location, QUrl::StrictMode);
  if (!url.isValid() || !url.isLocalFile() || url.hasQuery() || url.hasFragment()) return std::nullopt;
  if (!url.host().isEmpty() && url.host() != QLatin1String("localhost")) return std::nullopt;
  const QString path = url.path(QUrl::FullyDecoded);
  const bool usable = QDir::isAbsolutePath(path) && !path.contains(QChar::Null);
  return usable ? std::optional(path) : std::nullopt;
}

QStringList filesOf(const QStringList& locations, QString& refusal) {
  if (locations.size() > MostFiles) {
    refusal = QStringLiteral("%1 files are more than %2").arg(locations.size()).arg(MostFiles);
    return {};
  }
  QStringList files;
  for (const QString& location : locations) {
    if (const auto file = localFile(location)) files.append(*file);
  }
  const qsizetype others = locations.size() - files.size();
  if (others > 0) refusal = QStringLiteral("%1 of %2 are no local files").arg(others).arg(locations.size());
  return files;
}

/// The arguments of an action; nothing unless all of them are texts.
std::optional<QStringList> textsOf(const QVariant& arguments) {
  QStringList texts;
  for (const QVariant& argument : qdbus_cast<QVariantList>(arguments)) {
    if (argument.typeId() == QMetaType::QString) {
      texts.append(argument.toString());
    } else if (argument.typeId() == QMetaType::QStringList) {
      texts += argument.toStringList();
    } else {
      return std::nullopt;
    }
  }
  return texts;
}

void takeFiles(const QStringList& locations, ActivationRequest::Kind kind, Incoming& incoming) {
  ActivationRequest request;
  request.kind = kind;
  request.files = filesOf(locations, incoming.refusal);
  if (request.files.isEmpty()) {
    if (incoming.refusal.isNull()) incoming.refusal = QStringLiteral("no file is named");
    return;
  }
  incoming.request = request;
}

void takeAction(const QDBusMessage& call, Incoming& incoming) {
  const QString action = call.arguments().value(0).toString();
  const std::optional<QStringList> texts = textsOf(call.arguments().value(1));
  if (!texts) {
    incoming.refusal = QStringLiteral("an action takes texts only");
  } else if (action == PrintAction) {
    takeFiles(*texts, ActivationRequest::Kind::Print, incoming);
  } else if (action.isEmpty() || action.size() > LongestAction) {
    incoming.refusal = QStringLiteral("there is no action of that name");
  } else {
    ActivationRequest request;
    request.kind = ActivationRequest::Kind::Action;
    request.action = action;
    incoming.request = request;
  }
}

QStringList locationsOf(const QStringList& files) {
  QStringList locations;
  for (const QString& file : files)
    locations.append(QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded(QUrl::FullyEncoded)));
  return locations;
}

}  // namespace

std::optional<QString> objectPath(const QString& identifier) {
  if (!link::isBusName(identifier)) return std::nullopt;
  QString path = QLatin1Char('/') + identifier;
  // An object path knows no hyphen; the entry's own rule puts an underscore in its place.
  return path.replace(QLatin1Char('.'), QLatin1Char('/')).replace(QLatin1Char('-'), QLatin1Char('_'));
}

Incoming fromBus(const QDBusMessage& call) {
  Incoming incoming;
  const QString shape = call.member() + QLatin1Char(' ') + call.signature();
  QVariant platformData;
  if (shape == QLatin1String("Activate a{sv}")) {
    platformData = call.arguments().value(0);
    incoming.request.emplace();
  } else if (shape == QLatin1String("Open asa{sv}")) {
    platformData = call.arguments().value(1);
    takeFiles(call.arguments().value(0).toStringList(), ActivationRequest::Kind::Open, incoming);
  } else if (shape == QLatin1String("ActivateAction sava{sv}")) {
    platformData = call.arguments().value(2);
    takeAction(call, incoming);
  } else {
    incoming.refusal = QStringLiteral("'%1' is no call of this interface").arg(shape.left(200));
    return incoming;
  }
  const auto details = qdbus_cast<QVariantMap>(platformData);
  if (incoming.request) {
    incoming.request->activationToken = harmless(details.value(ActivationToken));
    if (incoming.request->activationToken.isEmpty())
      incoming.request->activationToken = harmless(details.value(StartupId));
  }
  if (const QVariant deadline = details.value(Deadline); deadline.typeId() == QMetaType::LongLong)
    incoming.deadline = deadline.toLongLong();
  return incoming;
}

QDBusMessage toBus(const QString& identifier, const ActivationRequest& request, qint64 deadline) {
  using Kind = ActivationRequest::Kind;
  const QString member = request.kind == Kind::Activate ? QStringLiteral("Activate")
                         : request.kind == Kind::Open   ? QStringLiteral("Open")
                                                        : QStringLiteral("ActivateAction");
  QDBusMessage call = QDBusMessage::createMethodCall(identifier, objectPath(identifier).value_or(QString()),
                                                     Interface, member);
  // Only whoever runs is meant: the bus must not start another one for this.
  call.setAutoStartService(false);
  if (request.kind == Kind::Open) call << locationsOf(request.files);
  if (request.kind == Kind::Action) call << request.action << QVariantList();
  if (request.kind == Kind::Print) {
    QVariantList files;
    for (const QString& location : locationsOf(request.files)) files.append(location);
    call << PrintAction << QVariant(files);
  }
  QVariantMap details{{Deadline, deadline}};
  if (!request.activationToken.isEmpty()) {
    details.insert(ActivationToken, request.activationToken);
    details.insert(StartupId, request.activationToken);
  }
  call << details;
  return call;
}

qint64 deadlineNow() noexcept {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<qint64>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

}  // namespace velmora::desktop::activationmessages
