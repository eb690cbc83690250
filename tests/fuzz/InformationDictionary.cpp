// SPDX-License-Identifier: LGPL-3.0-or-later
#include "platform/bundles/PropertyList.h"
#include "tests/fuzz/FuzzTargets.h"

using namespace velmora;

void fuzz::informationDictionary(const QByteArray& input) {
  const QVariant value = platform::propertyListFromData(input).valueOr({});
  if (value.typeId() != QMetaType::QVariantMap) return;
  const platform::Bundle bundle(value.toMap(), QStringLiteral("/nowhere"));
  bundle.bundleIdentifier();
  for (const QString& key : value.toMap().keys()) bundle.stringForInfoDictionaryKey(key);
}
