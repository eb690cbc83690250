// SPDX-License-Identifier: LGPL-3.0-or-later
#include "testing/standins/LogRecorder.h"

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>

namespace velmora::testkit {

namespace {

std::mutex recorderMutex;
std::condition_variable lineAdded;
QStringList recordedLines;
QtMessageHandler handlerBefore = nullptr;

void record(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (context.category && std::strcmp(context.category, "velmora") == 0) {
    const std::lock_guard lock(recorderMutex);
    recordedLines.append(message);
    lineAdded.notify_all();
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

bool LogRecorder::waitFor(const QString& part, qsizetype times) const {
  std::unique_lock lock(recorderMutex);
  return lineAdded.wait_for(lock, std::chrono::seconds(30),
                            [&] { return recordedLines.filter(part).size() >= times; });
}

void LogRecorder::clear() {
  const std::lock_guard lock(recorderMutex);
  recordedLines.clear();
}

}  // namespace velmora::testkit
