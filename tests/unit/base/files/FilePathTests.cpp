// SPDX-License-Identifier: LGPL-3.0-or-later
#include "base/files/FileManager.h"
#include "testing/files/EnvironmentVariable.h"
#include "testing/main/Shown.h"

using velmora::base::abbreviatingWithTildeInPath;
using velmora::base::appendingPathExtension;
using velmora::base::deletingPathExtension;
using velmora::base::expandingTildeInPath;
using velmora::base::pathExtension;

namespace {

TEST(FilePaths, ExpandTheTildeAtTheBeginningOnly) {
  const velmora::testkit::EnvironmentVariable home("HOME", "/home/ada");
  struct Case {
    const char* path;
    const char* expanded;
  };
  const Case cases[] = {
      {"~", "/home/ada"},
      {"~/", "/home/ada"},
      {"~/Desktop/", "/home/ada/Desktop"},
      {"~/Documents/Growth Data", "/home/ada/Documents/Growth Data"},
      {"/data/~/x", "/data/~/x"},
      {"~other/x", "~other/x"},
      {"a~", "a~"},
      {"/", "/"},
      {"/data//", "/data"},
      {"", ""},
  };
  for (const Case& each : cases) EXPECT_EQ(expandingTildeInPath(each.path), each.expanded) << each.path;
}

TEST(FilePaths, AbbreviateTheHomeFolder) {
  const velmora::testkit::EnvironmentVariable home("HOME", "/home/ada");
  struct Case {
    const char* path;
    const char* abbreviated;
  };
  const Case cases[] = {
      {"/home/ada", "~"},
      {"/home/ada/Desktop", "~/Desktop"},
      {"/home/adam/Desktop", "/home/adam/Desktop"},
      {"/mnt/home/ada", "/mnt/home/ada"},
      {"~/Desktop", "~/Desktop"},
      {"", ""},
  };
  for (const Case& each : cases)
    EXPECT_EQ(abbreviatingWithTildeInPath(each.path), each.abbreviated) << each.path;
}

TEST(FilePaths, AbbreviateAndExpandToTheSamePath) {
  const velmora::testkit::EnvironmentVariable home("HOME", "/home/ada");
  for (const char* path : {"/home/ada", "/home/ada/Documents/Growth Data", "/srv/records"}) {
    EXPECT_EQ(expandingTildeInPath(abbreviatingWithTildeInPath(path)), path);
  }
}

TEST(FilePaths, FindTheExtensionAfterTheLastDotOfTheName) {
  struct Case {
    const char* path;
    const char* extension;
    const char* stem;
  };
  const Case cases[] = {
      {"12-345.growth", "growth", "12-345"},
      {"/data/12-345.growth", "growth", "/data/12-345"},
      {"/data.old/12-345", "", "/data.old/12-345"},
      {"a.b.c", "c", "a.b"},
      {".hidden", "", ".hidden"},
      {"/data/.hidden", "", "/data/.hidden"},
      {".hidden.growth", "growth", ".hidden"},
      {"name.", "", "name"},
      {"UPPER.GROWTH", "GROWTH", "UPPER"},
      {"", "", ""},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(pathExtension(each.path), QString(each.extension)) << each.path;
    EXPECT_EQ(deletingPathExtension(each.path), QString(each.stem)) << each.path;
  }
}

TEST(FilePaths, AppendAnExtensionWithItsDot) {
  EXPECT_EQ(appendingPathExtension("/data/12-345", "growth"), "/data/12-345.growth");
  EXPECT_EQ(appendingPathExtension("/data/v1.2", "growth"), "/data/v1.2.growth");
  EXPECT_EQ(appendingPathExtension("/data/12-345", ""), "/data/12-345");
}

}  // namespace
