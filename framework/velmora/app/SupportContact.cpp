// SPDX-License-Identifier: LGPL-3.0-or-later
#include "velmora/app/SupportContact.h"

#include <QUrl>

#include "platform/bundles/Bundle.h"
#include "platform/text/Localization.h"
#include "platform/workspace/Workspace.h"

namespace velmora {

namespace {

const QString WebSite = QStringLiteral("https://velmora.org");
const QString SupportAddress = QStringLiteral("support@velmora.org");

}  // namespace

void SupportContact::openWebSite() { workspace_.openURL(QUrl(WebSite)); }

void SupportContact::beginMail() {
  const QString subject = platform::formatted(
      QStringLiteral("Technical Support Query for %@ %@"),
      {application_.stringForInfoDictionaryKey(QStringLiteral("CFBundleName")),
       application_.stringForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString"))});
  // The subject is escaped by itself, so that a "&" or "#" in an application's name stays in it.
  workspace_.openURL(QUrl(QStringLiteral("mailto:") + SupportAddress + QStringLiteral("?subject=") +
                          QString::fromLatin1(QUrl::toPercentEncoding(subject))));
}

}  // namespace velmora
