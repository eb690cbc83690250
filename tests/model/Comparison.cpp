// SPDX-License-Identifier: LGPL-3.0-or-later
#include "tests/model/Comparison.h"

#include <QDirIterator>
#include <QLineEdit>
#include <algorithm>

#include "link/protocol/LinkProtocol.h"
#include "platform/controls/TextFieldEditing.h"
#include "platform/text/DateFormatter.h"
#include "testing/files/Files.h"
#include "tests/model/Player.h"

using namespace velmora;

namespace model {

namespace {

/// Collects what differs.
class Differences {
 public:
  void compare(const QString& what, const QString& is, const QString& shouldBe) {
    if (is != shouldBe) all.append(QStringLiteral("%1 is %2, should be %3").arg(what, is, shouldBe));
  }
  void compare(const QString& what, bool is, bool shouldBe) {
    compare(what, QString::number(is), QString::number(shouldBe));
  }

  QStringList all;
};

QString editingIn(const TracedDocument& document) {
  QString fields;
  for (const QLineEdit* field :
       {document.identifierField(), document.birthField(), document.dateField(), document.measureField()}) {
    bool editing = false;
    for (const QObject* child : field->children()) {
      const auto* each = dynamic_cast<const platform::TextFieldEditing*>(child);
      if (each) editing = each->isEditing();
    }
    fields += editing ? QLatin1Char('1') : QLatin1Char('0');
  }
  return fields;
}

QString editingIn(const Doc& doc) {
  QString fields;
  for (int field = 0; field < FieldCount; ++field) {
    fields += doc.editing.contains(field) ? QLatin1Char('1') : QLatin1Char('0');
  }
  return fields;
}

void compareDocument(Differences& differences, const QString& what, const Player& player,
                     const TracedDocument& document, const Doc& doc) {
  const QString path = document.fileURL().toLocalFile();
  differences.compare(what + QStringLiteral("'s file"),
                      path.isEmpty() ? path : path.mid(player.home().size() + 1), doc.file);
  differences.compare(what + QStringLiteral(" shown"), described(document.shown()), described(doc.shown()));
  differences.compare(what + QStringLiteral(" stored"), described(document.record()), described(doc.record));
  differences.compare(what + QStringLiteral("'s current examination"),
                      QString::number(document.currentExam()), QString::number(doc.current));
  differences.compare(what + QStringLiteral(" edited"), document.isDocumentEdited(), doc.edited);
  differences.compare(what + QStringLiteral(" blank"), document.isBlank(), doc.blank);
  differences.compare(what + QStringLiteral(" wants a look-up"), document.lookUpRequired(),
                      doc.lookUpRequired);
  differences.compare(what + QStringLiteral("'s fields in edit"), editingIn(document), editingIn(doc));
  differences.compare(what + QStringLiteral("'s name"), document.patientName(), doc.name);
  differences.compare(what + QStringLiteral("'s study"), document.osiriXStudyID().toString(), doc.studyID);
  differences.compare(what + QStringLiteral(" with a sheet"), player.sheetIsOn(document),
                      doc.tokenAskedAbout.has_value());
}

QStringList sortedDescriptions(const QList<Record>& records) {
  QStringList all;
  for (const Record& record : records) all.append(described(record));
  all.sort();
  return all;
}

QString described(const std::map<QString, Record>& files) {
  QStringList all;
  for (const auto& [file, record] : files) all.append(file + QStringLiteral(" ") + described(record));
  return all.join(QLatin1Char('\n'));
}

QString described(const QList<Reply>& replies) {
  QStringList all;
  for (const Reply& reply : replies) {
    all.append(
        QStringList{reply.identifier, reply.name, reply.studyID, reply.examDate}.join(QLatin1Char('|')));
  }
  return all.join(QLatin1Char('\n'));
}

QList<Reply> repliesOf(const Player& player) {
  namespace link = velmora::link;
  QList<Reply> replies;
  for (const auto& posted : player.desktop().distributedCenter.posted()) {
    if (posted.object != link::ReplyObject) continue;
    const QDateTime date = posted.userInfo.value(link::DateOfStudy).toDateTime();
    replies.append({posted.userInfo.value(link::Identifier).toString(),
                    posted.userInfo.value(link::Name).toString(),
                    posted.userInfo.value(link::OsiriXStudyID).toString(),
                    date.isValid() ? date.date().toString(QStringLiteral("dd/MM/yyyy")) : QString()});
  }
  return replies;
}

QString sorted(QStringList list) {
  list.sort();
  return list.join(QStringLiteral(", "));
}

}  // namespace

std::map<QString, Record> filesBelow(const QString& folder) {
  std::map<QString, Record> files;
  for (const QString& name : testkit::filesBelow(folder))
    files[name] = decoded(testkit::readFile(folder + QLatin1Char('/') + name));
  return files;
}

QStringList Comparison::check(const Model& model, const Player& player) {
  Differences differences;
  differences.all.append(player.complaints());
  differences.compare(QStringLiteral("failures logged"), player.failuresLogged().join(QLatin1Char('\n')),
                      model.failuresLogged.join(QLatin1Char('\n')));
  differences.compare(QStringLiteral("restarted"), player.restarted(), model.restarted);

  // Documents.
  QList<Record> found;
  const QList<TracedDocument*> documents = player.frontToBack();
  differences.compare(QStringLiteral("number of documents"), QString::number(documents.size()),
                      QString::number(model.frontToBack().size()));
  for (qsizetype i = 0; i < documents.size(); ++i) {
    found.append(documents.at(i)->shown());
    if (i >= model.frontToBack().size()) continue;
    compareDocument(differences, QStringLiteral("document %1").arg(i), player, *documents.at(i),
                    *model.frontToBack().at(i));
  }

  // Files.
  std::map<QString, Record> files;
  for (const QString& folder : {QStringLiteral("Records"), QStringLiteral("Elsewhere")}) {
    for (const auto& [file, record] : filesBelow(player.home() + QLatin1Char('/') + folder)) {
      files[folder + QLatin1Char('/') + file] = record;
    }
  }
  differences.compare(QStringLiteral("files"), described(files), described(model.files()));
  for (const auto& [file, record] : files) found.append(record);
  QList<Record> kept;
  for (const auto& [file, record] :
       filesBelow(player.home() + QStringLiteral("/.local/share/") + BundleIdentifier)) {
    if (!file.endsWith(QLatin1String(".json"))) kept.append(record);  // the list of folders is no copy
  }
  differences.compare(QStringLiteral("copies kept"), sortedDescriptions(kept).join(QLatin1Char('\n')),
                      sortedDescriptions(model.kept()).join(QLatin1Char('\n')));
  found.append(kept);

  // The rest.
  differences.compare(QStringLiteral("cache"), sorted(player.controller().cachedDatabaseArray()),
                      sorted(model.cache()));
  differences.compare(QStringLiteral("replies"), described(repliesOf(player)), described(model.replies()));
  QStringList charts = testkit::fileNames(player.home() + QStringLiteral("/Charts"));
  charts.removeAll(QStringLiteral("free.jpg"));
  differences.compare(QStringLiteral("charts"), sorted(charts), sorted(model.charts().values()));
  differences.compare(QStringLiteral("beeps"), QString::number(player.desktop().feedback.beeps),
                      QString::number(model.beeps()));

  // Every examination is somewhere, and under an identifier under which it may be.
  QSet<QString> now;
  for (const Record& record : found) {
    now.unite(versions(record));
    for (const Exam& exam : record.exams) {
      if (!model.mayStandUnder(exam.token, record.identifier)) {
        differences.all.append(
            QStringLiteral("examination #%1 stands under '%2'").arg(exam.token).arg(record.identifier));
      }
    }
  }
  for (const QString& version : before_ - now) {
    if (!model.drops().contains(version)) differences.all.append(QStringLiteral("lost: ") + version);
  }
  before_ = now;
  return differences.all;
}

}  // namespace model
