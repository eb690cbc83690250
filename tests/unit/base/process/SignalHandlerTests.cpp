// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/process/SignalHandler.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <csignal>

using velmora::base::SignalHandler;

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
    for (const int signal : {SIGUSR1, SIGUSR2}) ::signal(signal, SIG_DFL);
  }

  int ends = 0;
};

TEST_F(SignalHandling, EndsOnceHoweverManySignalsCome) {
  const SignalHandler handler({{SIGUSR1}, {SIGUSR2}}, [this] { ++ends; });
  for (const int signal : {SIGUSR1, SIGUSR1, SIGUSR2}) ::raise(signal);
  EXPECT_EQ(ends, 0) << "not from within the signal";
  QCoreApplication::processEvents();
  ::raise(SIGUSR2);
  QCoreApplication::processEvents();
  EXPECT_EQ(ends, 1);
}

TEST_F(SignalHandling, LetsTheSecondSignalEndTheProcessWhereAsked) {
  const SignalHandler handler({{SIGUSR1, true}, {SIGUSR2}}, [] {});
  for (const int signal : {SIGUSR1, SIGUSR2}) ::raise(signal);
  EXPECT_EQ(handlerOf(SIGUSR1), SIG_DFL);
  EXPECT_NE(handlerOf(SIGUSR2), SIG_DFL);
}

TEST_F(SignalHandling, LeavesIgnoredSignalsIgnoredUnlessTold) {
  for (const int signal : {SIGUSR1, SIGUSR2}) ::signal(signal, SIG_IGN);
  const SignalHandler handler({{SIGUSR1}, {SIGUSR2, false, true}}, [this] { ++ends; });
  ::raise(SIGUSR1);
  QCoreApplication::processEvents();
  EXPECT_EQ(ends, 0);
  ::raise(SIGUSR2);
  QCoreApplication::processEvents();
  EXPECT_EQ(ends, 1);
}

TEST_F(SignalHandling, EndsWithTheHandler) {
  {
    const SignalHandler handler({{SIGUSR1}}, [] {});
  }
  EXPECT_EQ(handlerOf(SIGUSR1), SIG_DFL);
}

}  // namespace
