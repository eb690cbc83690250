// SPDX-License-Identifier: LGPL-3.0-or-later
#include <gtest/gtest.h>

#include "link/protocol/LinkProtocol.h"
#include "testing/application/RecordApplication.h"

using namespace velmora;
using namespace velmora::testkit;

namespace keys = velmora::link;

TEST(LinkNotification, IsNamedAfterTheBundleIdentifier) {
  EXPECT_EQ(keys::notificationName("org.velmora.recorder"), "org.velmora.recorder.osirixLink");
  EXPECT_EQ(keys::RequestObject, "OsirixLink");
  EXPECT_EQ(keys::ReplyObject, "OsirixLinkReturn");
}

TEST(LinkNotification, IsHeardOnlyWithTheObjectOfARequest) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  const QString name = keys::notificationName("org.velmora.recorder");
  for (const char* object : {"OsirixLinkReturn", "osirixlink", "", "OsirixLink "}) {
    application.desktop.distributedCenter.deliver(name, object, study("AB1"));
  }
  application.settle();
  EXPECT_EQ(document.identifier(), "");
  EXPECT_FALSE(document.isDocumentEdited());
  application.desktop.distributedCenter.deliver(name, "OsirixLink", study("AB1"));
  application.settle();
  EXPECT_EQ(document.identifier(), "AB1");
}

TEST(LinkNotification, OfTheApplicationsOwnRepliesIsNotHeard) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  application.desktop.distributedCenter.postNotificationName(keys::notificationName("org.velmora.recorder"),
                                                             keys::ReplyObject, study("AB1"));
  application.settle();
  EXPECT_EQ(document.identifier(), "");
}

TEST(LinkNotification, ToAnotherApplicationIsNotHeard) {
  RecordApplication application;
  RecordingDocument& document = application.newRecord();
  for (const char* other : {"org.velmora.other", "org.velmora.recorder.two", "org.velmora"}) {
    application.desktop.distributedCenter.deliver(keys::notificationName(other), keys::RequestObject,
                                                  study("AB1"));
  }
  application.settle();
  EXPECT_EQ(document.identifier(), "");
}

TEST(LinkNotification, ReachesOfTwoApplicationsTheOneItNames) {
  RecordApplication first;
  // A second application on a desktop of its own, but on the same distributed centre.
  TestServices own(recorderInformation("org.velmora.second"));
  platform::Services services = testkit::with(own.services, first.desktop.distributedCenter);
  VelmoraAppController second(services);
  second.setDocumentFactory([&] { return std::make_unique<VelmoraDocument>(services, second); });
  second.awakeFromNib();
  auto* inSecond = dynamic_cast<VelmoraDocument*>(second.openUntitledDocument(true));
  RecordingDocument& inFirst = first.newRecord();

  const auto choose = [&](const char* bundle, const char* identifier) {
    first.desktop.distributedCenter.deliver(keys::notificationName(bundle), keys::RequestObject,
                                            study(identifier));
    first.settle();
    own.runLoop.settle();
  };
  choose("org.velmora.second", "FOR-SECOND");
  EXPECT_EQ(inFirst.identifier(), "");
  EXPECT_EQ(inSecond->identifier(), "FOR-SECOND");
  choose("org.velmora.recorder", "FOR-FIRST");
  EXPECT_EQ(inFirst.identifier(), "FOR-FIRST");
  EXPECT_EQ(inSecond->identifier(), "FOR-SECOND");
}
