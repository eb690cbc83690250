// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

namespace velmora::base {
class FileManager;
}  // namespace velmora::base

namespace velmora::platform {

class UserDefaults;
class NotificationCenter;
class DistributedNotificationCenter;
class Alerts;
class Panels;
class Workspace;
class RunLoop;
class Bundle;
class Printer;
class Feedback;
class GraphicsContext;
class InterfaceFiles;
class Application;
class Scripts;
class Web;
class DocumentController;
struct PrintInfo;

/// What the desktop offers a program, made once: the real things in `main`, stand-ins in a test. It is passed
/// to constructors; there are no other globals.
struct Services {
  UserDefaults& defaults;
  NotificationCenter& notificationCenter;
  DistributedNotificationCenter& distributedCenter;
  Alerts& alerts;
  Panels& panels;
  Workspace& workspace;
  base::FileManager& fileManager;
  RunLoop& runLoop;
  const Bundle& mainBundle;
  Printer& printer;
  PrintInfo& sharedPrintInfo;
  Feedback& feedback;
  GraphicsContext& graphics;
  InterfaceFiles& interfaceFiles;
  Application& application;
  Scripts& scripts;
  Web& web;
  /// Set by the document controller itself when it is made, cleared when it goes.
  DocumentController* documentController = nullptr;
};

}  // namespace velmora::platform
