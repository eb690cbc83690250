// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/process/SignalHandler.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <csignal>

using velmora::base::SignalHandler;
using Program = SignalHandler::Program;

namespace {

/// What the process does with a signal.
decltype(SIG_DFL) handlerOf(int signal) {
  struct sigaction standing {};
  ::sigaction(signal, nullptr, &standing);
  return standing.sa_handler;
}

class SignalHandling : public testing::Test {
 protected:
  ~SignalHandling() override {
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) ::signal(signal, SIG_DFL);
  }

  int ends = 0;
};

TEST_F(SignalHandling, EndsOnceHoweverManySignalsCome) {
  const SignalHandler handler(Program::Desktop, [this] { ++ends; });
  for (const int signal : {SIGHUP, SIGHUP, SIGTERM}) ::raise(signal);
  EXPECT_EQ(ends, 0) << "not from within the signal";
  QCoreApplication::processEvents();
  ::raise(SIGHUP);
  QCoreApplication::processEvents();
  EXPECT_EQ(ends, 1);
}

TEST_F(SignalHandling, LetsTheSecondSignalEndTheProcessWhereAsked) {
  const SignalHandler handler(Program::Desktop, [] {});
  for (const int signal : {SIGTERM, SIGHUP}) ::raise(signal);
  EXPECT_EQ(handlerOf(SIGTERM), SIG_DFL);
  EXPECT_NE(handlerOf(SIGHUP), SIG_DFL);
}

TEST_F(SignalHandling, LeavesIgnoredSignalsIgnoredUnlessTold) {
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) ::signal(signal, SIG_IGN);
  {
    const SignalHandler handler(Program::Desktop, [this] { ++ends; });
    for (const int signal : {SIGTERM, SIGHUP}) ::raise(signal);
    QCoreApplication::processEvents();
    EXPECT_EQ(ends, 0);
  }
  for (const int signal : {SIGTERM, SIGINT}) {
    const SignalHandler handler(Program::Service, [this] { ++ends; });
    ::raise(signal);
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(ends, 2);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    const SignalHandler handler(Program::Console, [this] { ++ends; });
    ::raise(signal);
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(ends, 5);
}

TEST_F(SignalHandling, LeavesToTheSystemWhatIsNotOnTheList) {
  {
    const SignalHandler handler(Program::Desktop, [] {});
    EXPECT_EQ(handlerOf(SIGINT), SIG_DFL);
  }
  const SignalHandler handler(Program::Service, [] {});
  EXPECT_EQ(handlerOf(SIGHUP), SIG_DFL);
}

TEST_F(SignalHandling, EndsWithTheHandler) {
  {
    const SignalHandler handler(Program::Desktop, [] {});
  }
  for (const int signal : {SIGTERM, SIGHUP}) EXPECT_EQ(handlerOf(signal), SIG_DFL);
}

}  // namespace
