// SPDX-License-Identifier: LGPL-3.0-or-later
#include "link/protocol/LinkReply.h"

#include <QDateTime>
#include <QMetaType>

#include "base/CalendarDay.h"
#include "link/protocol/LinkProtocol.h"

namespace velmora::link {
namespace {

class ReplyReader {
 public:
  explicit ReplyReader(const QVariantMap& payload) : payload_(payload) {}

  LinkReply read() {
    reply_.identifier = text(Identifier);
    if (!payload_.value(Identifier).isValid()) complain(QStringLiteral("no ") + Identifier);
    reply_.description = text(StudyDescription);
    if (!payload_.value(StudyDescription).isValid()) {
      reply_.complaints.append(QStringLiteral("no ") + StudyDescription);
    }
    reply_.jpeg = jpeg();
    reply_.name = text(Name);
    reply_.birthDay = day(DateOfBirth);
    reply_.studyDay = day(DateOfStudy);
    // Any value is allowed here and comes back as it was sent; only a text names a study.
    if (payload_.value(OsiriXStudyID).typeId() == QMetaType::QString) reply_.studyID = text(OsiriXStudyID);
    return reply_;
  }

 private:
  QString text(const QString& key) {
    const QVariant value = payload_.value(key);
    if (!value.isValid()) return {};
    if (value.typeId() != QMetaType::QString) {
      complain(key + QStringLiteral(" is not a string"));
      return {};
    }
    const QString whole = value.toString();
    if (whole.size() <= LinkReply::LongestText) return whole;
    complain(QStringLiteral("%1 is too long (%2 characters)").arg(key).arg(whole.size()));
    const QString cut = whole.left(LinkReply::LongestText);
    return cut.back().isHighSurrogate() ? cut.chopped(1) : cut;
  }

  QDate day(const QString& key) {
    const QVariant value = payload_.value(key);
    if (!value.isValid()) return {};
    const QDate day = value.typeId() == QMetaType::QDateTime ? base::localDayOf(value.toDateTime()) : QDate();
    // Other years cannot be written as ISO dates.
    if (day.isValid() && day.year() >= 1 && day.year() <= 9999) return day;
    complain(key + QStringLiteral(" is not a date"));
    return {};
  }

  QByteArray jpeg() {
    const QVariant value = payload_.value(JPEG);
    if (!value.isValid()) {
      complain(QStringLiteral("no ") + JPEG);
    } else if (value.typeId() != QMetaType::QByteArray) {
      complain(JPEG + QStringLiteral(" is not bytes"));
    } else {
      const QByteArray bytes = value.toByteArray();
      // The start-of-image marker (ITU-T T.81, B.1.1.3) and the first byte of the next one.
      if (!bytes.startsWith("\xff\xd8\xff")) complain(JPEG + QStringLiteral(" is not a JPEG file image"));
      return bytes;
    }
    return {};
  }

  void complain(const QString& what) {
    reply_.complaints.append(what);
    reply_.canBeFiled = false;
  }

  const QVariantMap& payload_;
  LinkReply reply_;
};

}  // namespace

LinkReply readReply(const QVariantMap& payload) { return ReplyReader(payload).read(); }

}  // namespace velmora::link
