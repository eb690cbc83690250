// SPDX-License-Identifier: LGPL-3.0-or-later
#include "apps/growth/testing/GrowthApplication.h"

#include <QTest>
#include <stdexcept>

#include "link/protocol/LinkProtocol.h"
#include "platform/text/DateFormatter.h"
#include "testing/files/Files.h"

namespace growth {

using namespace velmora::testkit;

QVariantMap growthInformation() {
  return {{QStringLiteral("CFBundleIdentifier"), GrowthIdentifier},
          {QStringLiteral("CFBundleName"), QStringLiteral("Growth")},
          {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("0.1")}};
}

GrowthDocument& GrowthApplication::newRecord() {
  controller.newDocument();
  auto& document = dynamic_cast<GrowthDocument&>(*controller.orderedDocuments().last());
  user::bringToFront(document);
  return document;
}

GrowthDocument& GrowthApplication::front() const {
  auto* document = dynamic_cast<GrowthDocument*>(controller.currentDocument());
  if (!document) throw std::runtime_error("no record is open");
  return *document;
}

GrowthDocument& GrowthApplication::saveAndReopen() {
  front().saveDocument();
  desktop.runLoop.settle();
  const QUrl file = front().fileURL();
  front().close();
  desktop.runLoop.settle();
  if (!controller.openDocumentWithContentsOfURL(file, true).ok())
    throw std::runtime_error("the record does not open");
  user::bringToFront(front());
  return front();
}

QString GrowthApplication::whyNotOpened(const QByteArray& file) {
  const QString path = pathOfRecord(QStringLiteral("given"));
  writeFile(path, file);
  const auto opened = controller.openDocumentWithContentsOfURL(QUrl::fromLocalFile(path), true);
  if (opened.ok()) {
    (*opened)->close();
    desktop.runLoop.settle();
  }
  return opened.error();
}

void GrowthApplication::chooseStudy(const QString& identifier, const QDate& birth, const QDate& study) {
  namespace keys = velmora::link;
  desktop.distributedCenter.deliver(keys::notificationName(GrowthIdentifier), keys::RequestObject,
                                    {{keys::Identifier, identifier},
                                     {keys::Name, QStringLiteral("Doe^Jack")},
                                     {keys::DateOfBirth, velmora::platform::noonOf(birth)},
                                     {keys::DateOfStudy, velmora::platform::noonOf(study)},
                                     {keys::OsiriXStudyID, QStringLiteral("1.2.840.99")}});
  desktop.runLoop.advance(1);
}

GrowthDocument& GrowthApplication::typeBoy(const QString& examDate, const QString& weight) {
  GrowthDocument& document = newRecord();
  user::enter(user::field(document, "referenceIDField"), QStringLiteral("boy1"));
  user::enter(user::field(document, "birthDateField"), QStringLiteral("1/1/2022"));
  chooseSex(document, SexItem::Male);
  user::enter(user::field(document, "examDateField"), examDate);
  user::enter(user::field(document, "weightField"), weight);
  return document;
}

void GrowthApplication::addExamination(GrowthDocument& document, const QString& examDate,
                                       const QString& weight) {
  user::click(user::button(document, "newStudyButton"));
  user::enter(user::field(document, "examDateField"), examDate);
  user::enter(user::field(document, "weightField"), weight);
}

void GrowthApplication::chooseSex(GrowthDocument& document, SexItem sex) {
  QWidget* popUp = user::widget(document, "sexPopUp");
  popUp->setFocus(Qt::TabFocusReason);
  QTest::keyClick(popUp, Qt::Key_Home);
  for (int item = 0; item < static_cast<int>(sex); ++item) QTest::keyClick(popUp, Qt::Key_Down);
}

}  // namespace growth
