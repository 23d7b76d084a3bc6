#pragma once

#include <string>

// What others ask of a program: to end. On Unix that is a signal; on Windows QProcess::terminate() sends a
// message, which has to be fetched.

static const int EXIT_CODE_ON_REQUEST = 7;

/** From now on be deaf to requests. */
void ignoreRequests();
/** From now on make the file \a path when asked to end, and exit with EXIT_CODE_ON_REQUEST. */
void makeFileOnRequest(const std::string &path);
/** Call this once at the start and then often. */
void heedRequests();
/** Ends as a broken program does. */
[[noreturn]] void crash();
