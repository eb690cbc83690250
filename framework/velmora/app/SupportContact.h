// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

namespace velmora::platform {
class Bundle;
class Workspace;
}  // namespace velmora::platform

namespace velmora {

/// Opens the web site and the mail address of the application's maker with the user's own programs.
class SupportContact {
 public:
  SupportContact(platform::Workspace& workspace, const platform::Bundle& application)
      : workspace_(workspace), application_(application) {}

  void openWebSite();
  /// Begins a mail to the support address, its subject naming the application and its version.
  void beginMail();

 private:
  platform::Workspace& workspace_;
  const platform::Bundle& application_;
};

}  // namespace velmora
