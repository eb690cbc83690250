// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/LogRecorder.h"

#include <cstring>
#include <mutex>

namespace velmora::testkit {

namespace {

std::mutex recorderMutex;
QStringList recordedLines;
QtMessageHandler handlerBefore = nullptr;

void record(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (context.category && std::strcmp(context.category, "velmora") == 0) {
    const std::lock_guard lock(recorderMutex);
    recordedLines.append(message);
  } else if (handlerBefore) {
    handlerBefore(type, context, message);
  }
}

}  // namespace

LogRecorder::LogRecorder() {
  clear();
  handlerBefore = qInstallMessageHandler(record);
}

LogRecorder::~LogRecorder() { qInstallMessageHandler(handlerBefore); }

QStringList LogRecorder::lines() const {
  const std::lock_guard lock(recorderMutex);
  return recordedLines;
}

void LogRecorder::clear() {
  const std::lock_guard lock(recorderMutex);
  recordedLines.clear();
}

}  // namespace velmora::testkit
