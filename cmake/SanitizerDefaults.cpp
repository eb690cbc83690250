// SPDX-License-Identifier: LGPL-3.0-or-later
//
// What every sanitized program is started with, however it is started: by ctest, by another program, by hand.

extern "C" const char* __asan_default_options();

// GCC 12's leak checker follows its own records of thread-local storage into addresses that are none, and
// crashes ("Tracer caught signal 11"), on some processors at every end of a program that loaded a Qt plugin.
// Without those records it finds leaks all the same.
extern "C" const char* __asan_default_options() { return "intercept_tls_get_addr=0"; }
